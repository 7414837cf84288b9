#include "tldb/check/DatabaseCheck.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "util/VbText.h"

#include <algorithm>

namespace {

constexpr QLatin1String PropertyTable("DBProperty");

void CheckColumn(const TableDefinition &table, const StoredColumn &stored,
                 const StoredColumn &wanted, const FindingSink &found)
{
    const auto report = [&](const QString &what) { found({table.name, {}, wanted.name, what}); };
    if (stored.type != wanted.type)
        report("is " + stored.type + ", not " + wanted.type);
    else if (!wanted.collation.isEmpty() && stored.collation != wanted.collation)
        report("compares as " + stored.collation + ", not as " + wanted.collation);
    if (stored.isKey != wanted.isKey)
        report(wanted.isKey ? "is not part of the key" : "is part of the key");
    if (wanted.isKey && !stored.isNotNull)
        report("allows null in the key");
}

void CheckTable(Database &database, const TableDefinition &table, const FindingSink &found,
                const FindingSink &noted)
{
    std::vector<StoredColumn> columns = database.Engine().Columns(table.name);
    if (columns.empty()) {
        if (!table.isOptional)
            found({table.name, {}, {}, "the table is missing"});
        return;
    }
    for (const ColumnDefinition &column : table.columns) {
        const auto stored = std::ranges::find_if(columns, [&](const StoredColumn &of) {
            return of.name.compare(QLatin1String(column.name), Qt::CaseInsensitive) == 0;
        });
        if (stored == columns.end()) {
            found({table.name, {}, column.name, "the column is missing"});
            continue;
        }
        CheckColumn(table, *stored, database.Engine().Wanted(column), found);
        columns.erase(stored);
    }
    for (const StoredColumn &unknown : columns)
        noted({table.name, {}, unknown.name, "an unknown column"});
    const QStringList indexed = database.Engine().IndexedColumns(table.name);
    for (const char *column : table.indexes)
        if (!indexed.contains(column, Qt::CaseInsensitive))
            found({table.name, {}, column, "the index is missing"});
}

/// The value of a property; a null text when the database does not have it.
QString PropertyOrNull(Database &database, const QString &name)
{
    try {
        return database.Property(name);
    } catch (const DaoError &error) {
        if (error.number == DaoErrors::PropertyNotFound)
            return {};
        throw;
    }
}

} // namespace

QStringList ColumnsInFile(Database &database, const QString &table)
{
    QStringList names;
    for (const StoredColumn &column : database.Engine().Columns(table))
        names += column.name;
    return names;
}

void CheckIntegrity(Database &database, const FindingSink &found)
{
    for (const QString &damage : database.Engine().FindDamage())
        found({{}, {}, {}, damage});
}

void CheckProperties(Database &database, const FindingSink &found)
{
    const QString access = PropertyOrNull(database, "AccessVersion");
    if (access.isNull())
        found({PropertyTable, {}, "AccessVersion", "is missing"});
    else if (Val(access) < OldestAccessVersion)
        found({PropertyTable, {}, "AccessVersion", access + " is older than 8.0"});

    const QString schema = PropertyOrNull(database, "SchemaVersion");
    if (schema.isNull())
        found({PropertyTable, {}, "SchemaVersion", "is missing"});
    else if (schema != QString::number(SchemaVersion))
        found({PropertyTable,
               {},
               "SchemaVersion",
               QString("is %1, not %2").arg(schema).arg(SchemaVersion)});
}

void CheckSchema(Database &database, const FindingSink &found, const FindingSink &noted)
{
    for (const TableDefinition &table : Tables())
        CheckTable(database, table, found, noted);
    for (const QString &name : database.Engine().TableNames())
        if (!FindTable(name) && name.compare(PropertyTable, Qt::CaseInsensitive) != 0)
            noted({name, {}, {}, "an unknown table"});
}
