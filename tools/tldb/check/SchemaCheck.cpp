#include "tldb/check/DatabaseCheck.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "util/VbText.h"

#include <sqlite3.h>

namespace {

constexpr auto PropertyTable = "DBProperty";

struct ColumnInFile
{
    QString type;
    QString collation;
    bool isNotNull = false;
    bool isKey = false;
};

ColumnInFile ReadColumn(Database &database, const char *table, const char *column)
{
    const char *type = nullptr;
    const char *collation = nullptr;
    int isNotNull = 0;
    int isKey = 0;
    int isAutoNumber = 0;
    if (sqlite3_table_column_metadata(database.Connection(), "main", table, column, &type,
                                      &collation, &isNotNull, &isKey, &isAutoNumber)
        != SQLITE_OK)
        throw DaoErrors::FromSqlite(database.Connection(), "tldb");
    return {QString::fromUtf8(type).toUpper(), QString::fromUtf8(collation).toUpper(),
            isNotNull != 0, isKey != 0};
}

QString TypeName(const ColumnDefinition &column)
{
    if (column.IsText())
        return "TEXT";
    return column.type == ColumnType::Integer ? "INTEGER" : "REAL";
}

void CheckColumn(Database &database, const TableDefinition &table, const ColumnDefinition &column,
                 const FindingSink &found)
{
    const ColumnInFile inFile = ReadColumn(database, table.name, column.name);
    const auto report = [&](const QString &what) { found({table.name, {}, column.name, what}); };
    if (inFile.type != TypeName(column))
        report("is " + inFile.type + ", not " + TypeName(column));
    else if (column.IsText() && inFile.collation != "NOCASE")
        report("compares as " + inFile.collation + ", not as NOCASE");
    if (inFile.isKey != column.isKey)
        report(column.isKey ? "is not part of the key" : "is part of the key");
    if (column.isKey && !inFile.isNotNull)
        report("allows null in the key");
}

/// The columns that an index over all rows of the table begins with.
QStringList IndexedColumns(Database &database, const QString &table)
{
    const auto rows = database.OpenRecordset(
        QString("SELECT c.name FROM pragma_index_list('%1') AS i, "
                "pragma_index_info(i.name) AS c WHERE i.partial = 0 AND c.seqno = 0")
            .arg(table));
    QStringList columns;
    for (; !rows->IsEof(); rows->MoveNext())
        columns += rows->Text(0);
    return columns;
}

void CheckTable(Database &database, const TableDefinition &table, const FindingSink &found,
                const FindingSink &noted)
{
    QStringList columns = ColumnsInFile(database, table.name);
    if (columns.isEmpty()) {
        if (!table.isOptional)
            found({table.name, {}, {}, "the table is missing"});
        return;
    }
    for (const ColumnDefinition &column : table.columns) {
        const auto isIt = [&](const QString &name) {
            return name.compare(QLatin1String(column.name), Qt::CaseInsensitive) == 0;
        };
        if (columns.removeIf(isIt) == 0)
            found({table.name, {}, column.name, "the column is missing"});
        else
            CheckColumn(database, table, column, found);
    }
    for (const QString &unknown : columns)
        noted({table.name, {}, unknown, "an unknown column"});
    const QStringList indexed = IndexedColumns(database, table.name);
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
    const auto rows
        = database.OpenRecordset(QString("SELECT name FROM pragma_table_info('%1')").arg(table));
    QStringList columns;
    for (; !rows->IsEof(); rows->MoveNext())
        columns += rows->Text(0);
    return columns;
}

void CheckIntegrity(Database &database, const FindingSink &found)
{
    const auto rows = database.OpenRecordset("PRAGMA integrity_check");
    for (; !rows->IsEof(); rows->MoveNext())
        if (rows->Text(0) != "ok")
            found({{}, {}, {}, rows->Text(0)});
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
    const auto rows = database.OpenRecordset(
        "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
    for (; !rows->IsEof(); rows->MoveNext()) {
        const QString name = rows->Text(0);
        if (!FindTable(name) && name != PropertyTable && !name.startsWith("sqlite_"))
            noted({name, {}, {}, "an unknown table"});
    }
}
