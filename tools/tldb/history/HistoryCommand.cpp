#include "tldb/Commands.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "data/dao/SqlText.h"
#include "tldb/NewDatabase.h"
#include "tldb/check/DatabaseCheck.h"

#include <QCommandLineParser>
#include <algorithm>
#include <vector>

namespace {

/// A column as it is shown, and what it shows in SQL.
struct HistoryColumn
{
    const char *heading;
    const char *sql;
};

constexpr HistoryColumn Columns[] = {
    {"date", "UpdDate"},
    {"time", "UpdTime"},
    {"user", "UserName"},
    {"machine", "MachineName"},
    {"customer", "CustCD"},
    {"order", "OdrNo"},
    {"line", "AccNo || '/' || AccSubNo || '/' || ShpSubNo"},
    {"delivery", "PayNo"},
    {"wanted", "LimDate"},
    {"answered", "AnsLimDate"},
    {"quantity", "AnsVal"},
    {"mark", "AnsMark"},
    {"kind", "AnsKBN"},
    {"record", "RecNo"},
    {"file", "RecPath"},
};

std::unique_ptr<Recordset> OpenHistory(Database &database, const QString &order)
{
    QStringList columns;
    for (const HistoryColumn &column : Columns)
        columns += column.sql;
    return database.OpenRecordset(
        "SELECT " + columns.join(", ") + " FROM " + HistoryTable
        + (order.isEmpty() ? QString() : " WHERE OdrNo = '" + SqlText(order) + '\'')
        + " ORDER BY UpdDate, UpdTime, AccNo, AccSubNo, ShpSubNo, AnsNo");
}

/// A field in one line.
QString Shown(const Record &row, int field)
{
    QString text = row.Text(field);
    std::replace_if(
        text.begin(), text.end(), [](QChar c) { return c.category() == QChar::Other_Control; },
        QChar(' '));
    return text.isEmpty() ? "-" : text;
}

/// Every row in columns as wide as their longest text.
void Print(const Recordset &rows, QTextStream &out)
{
    std::vector<qsizetype> widths;
    for (int field = 0; field < rows.FieldCount(); ++field) {
        qsizetype width = QLatin1String(Columns[field].heading).size();
        for (int row = 0; row < rows.RecordCount(); ++row)
            width = std::max(width, Shown(rows.At(row), field).size());
        widths.push_back(width);
    }
    const auto print = [&](const auto &text) {
        QString line;
        for (size_t field = 0; field < widths.size(); ++field)
            line += text(int(field)).leftJustified(widths[field] + 2);
        out << line.trimmed() << '\n';
    };
    print([](int field) { return QString(Columns[field].heading); });
    for (int row = 0; row < rows.RecordCount(); ++row)
        print([&](int field) { return Shown(rows.At(row), field); });
}

} // namespace

int RunHistory(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err)
{
    const QString path = DatabasePath(arguments.positionalArguments().first());
    const QString order = arguments.positionalArguments().value(1);
    try {
        Database database = OpenToRead(path);
        if (ColumnsInFile(database, HistoryTable).isEmpty())
            return Complain(err, path + ": the database keeps no history; see tldb upgrade --help");
        Print(*OpenHistory(database, order), out);
    } catch (const DaoError &error) {
        return Complain(err, path + ": " + ErrorText(error));
    }
    return ExitCode::Ok;
}
