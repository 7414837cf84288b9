#include "tldb/check/DatabaseCheck.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "tldb/NewDatabase.h"
#include "tldb/check/ValueRules.h"

#include <QStringList>
#include <span>
#include <vector>

namespace {

/// A column that has to be found in another table.
struct Relation
{
    const char *table;
    const char *column; ///< of the same name in both tables
    const char *owner;
    const char *what;
};

constexpr Relation Relations[] = {
    {"TLSP0010", "AccNo", "TLAC0010", "the line's order is missing"},
    {"TLSP0010", "CustCD", "TLMT0040", "the line's customer is missing"},
    {"TLAC0010", "CustCD", "TLMT0040", "the order's customer is missing"},
    {"TLAC0020", "AccNo", "TLAC0010", "the sub-line's order is missing"},
    {"TLEI0010", "AccNo", "TLAC0010", "the row's order is missing"},
    {"TLEI0011", "AccNo", "TLAC0010", "the row's order is missing"},
};

using Row = std::span<const RowValue>;

QString TextOf(const RowValue &value)
{
    return value.IsNull() ? QString("null") : value.Text();
}

/// The columns by which a finding names a row: the key, or the row's number in a table without one.
QStringList KeyColumns(Database &database, const TableDefinition &table,
                       const QStringList &columnsInFile)
{
    QStringList keys;
    for (const ColumnDefinition &column : table.columns)
        if (column.isKey && columnsInFile.contains(column.name, Qt::CaseInsensitive))
            keys += column.name;
    return keys.isEmpty() ? QStringList{database.Engine().RowNumber()} : keys;
}

/// The key of a row, whose columns are the query's from `first` on.
QString KeyText(Row row, const QStringList &keys, size_t first)
{
    QStringList parts;
    for (const QString &key : keys)
        parts += key + '=' + TextOf(row[first++]);
    return parts.join(' ');
}

void CheckEqualKeys(Database &database, const TableDefinition &table, const QStringList &columns,
                    const FindingSink &found)
{
    const QStringList keys = KeyColumns(database, table, columns);
    if (columns.isEmpty() || keys.first() == database.Engine().RowNumber())
        return;
    const QString list = keys.join(", ");
    database.VisitRows(QString("SELECT %1, COUNT(*) FROM %2 GROUP BY %1 HAVING COUNT(*) > 1")
                           .arg(list, table.name),
                       [&](Row row) {
                           found({table.name,
                                  KeyText(row, keys, 0),
                                  {},
                                  TextOf(row.back()) + " rows have this key"});
                       });
}

void CheckRelation(Database &database, const Relation &relation, const FindingSink &found)
{
    const QStringList columns = ColumnsInFile(database, relation.table);
    const QStringList ownerColumns = ColumnsInFile(database, relation.owner);
    // A table that is missing is one finding, not one for each row that belongs to it.
    if (!columns.contains(relation.column, Qt::CaseInsensitive)
        || !ownerColumns.contains(relation.column, Qt::CaseInsensitive))
        return;
    const QStringList keys = KeyColumns(database, *FindTable(relation.table), columns);
    database.VisitRows(QString("SELECT %1, %2 FROM %3 AS t WHERE NOT EXISTS "
                               "(SELECT 1 FROM %4 AS o WHERE o.%2 = t.%2)")
                           .arg(keys.join(", "), relation.column, relation.table, relation.owner),
                       [&](Row row) {
                           found({relation.table, KeyText(row, keys, 0), relation.column,
                                  QString(relation.what) + ": " + Quoted(TextOf(row.back()))});
                       });
}

/// Runs one check; a file that can't be read further is a finding.
template <typename Check>
void Guarded(const QString &table, const FindingSink &found, Check &&check)
{
    try {
        check();
    } catch (const DaoError &error) {
        found({table, {}, {}, "can't be read: " + ErrorText(error)});
    }
}

} // namespace

QString ToLine(const Finding &finding)
{
    QStringList parts;
    for (const QString &part : {finding.table, finding.key, finding.column})
        if (!part.isEmpty())
            parts += part;
    const QString line = parts.join(' ') + (parts.isEmpty() ? "" : ": ") + finding.what;
    QString shown;
    for (const QChar c : line)
        shown += c.category() == QChar::Other_Control
                     ? QString("\\u%1").arg(c.unicode(), 4, 16, QChar('0'))
                     : QString(c);
    return shown;
}

FindingReport::FindingReport(QTextStream &out)
    : found([this, &out](const Finding &finding) {
        out << ToLine(finding) << '\n';
        ++findings;
    })
    , noted([this, &out](const Finding &note) {
        out << "note: " << ToLine(note) << '\n';
        ++notes;
    })
{
}

CheckedAmount CheckDatabase(Database &database, const FindingSink &found, const FindingSink &noted)
{
    Guarded({}, found, [&] { CheckIntegrity(database, found); });
    Guarded({}, found, [&] { CheckProperties(database, found); });
    Guarded({}, found, [&] { CheckSchema(database, found, noted); });
    CheckedAmount amount;
    for (const TableDefinition &table : Tables())
        Guarded(table.name, found, [&] {
            if (const auto rows = CheckValues(database, table, found)) {
                ++amount.tables;
                amount.rows += *rows;
            }
        });
    Guarded({}, found, [&] { CheckRelations(database, found); });
    return amount;
}

std::optional<qint64> CheckValues(Database &database, const TableDefinition &table,
                                  const FindingSink &found)
{
    const QStringList inFile = ColumnsInFile(database, table.name);
    std::vector<const ColumnDefinition *> columns;
    QStringList names;
    for (const ColumnDefinition &column : table.columns) {
        if (!inFile.contains(column.name, Qt::CaseInsensitive))
            continue;
        columns.push_back(&column);
        names += column.name;
    }
    if (columns.empty())
        return std::nullopt;
    const QStringList keys = KeyColumns(database, table, inFile);
    qint64 count = 0;
    database.VisitRows(QString("SELECT %1 FROM %2").arg((names + keys).join(", "), table.name),
                       [&](Row row) {
                           ++count;
                           for (size_t column = 0; column < columns.size(); ++column) {
                               const QString fault = ValueFault(*columns[column], row[column]);
                               if (!fault.isEmpty())
                                   found({table.name, KeyText(row, keys, columns.size()),
                                          columns[column]->name, fault});
                           }
                       });
    return count;
}

void CheckRelations(Database &database, const FindingSink &found)
{
    for (const TableDefinition &table : Tables())
        CheckEqualKeys(database, table, ColumnsInFile(database, table.name), found);
    for (const Relation &relation : Relations)
        CheckRelation(database, relation, found);

    constexpr auto companies = "TLMT0010";
    if (ColumnsInFile(database, companies).isEmpty())
        return;
    const auto count
        = database.OpenRecordset(QString("SELECT COUNT(*) FROM %1").arg(companies))->Text(0);
    if (count != "1")
        found({companies, {}, {}, count + " company rows, one is wanted"});
}
