#include "tldb/Commands.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "tldb/DatabaseCheck.h"
#include "tldb/NewDatabase.h"
#include "tldb/OldDatabase.h"
#include "util/VbText.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <sqlite3.h>

namespace {

QString QuotedName(QString name)
{
    return '"' + name.replace('"', "\"\"") + '"';
}

/// Writes the rows of one old table into a new one.
class TableImport
{
public:
    /// `definition` is null for a table that the system does not know. Throws DaoError.
    TableImport(Database &database, const TableDefinition *definition, OldTable &rows,
                const QString &name)
        : m_connection(database.Connection())
        , m_rows(rows)
        , m_name(definition ? definition->name : name)
        , m_isKnown(definition != nullptr)
    {
        QStringList names;
        QStringList values;
        QStringList unknown;
        for (const OldColumn &column : rows.Columns()) {
            names += QuotedName(column.name);
            values += "?";
            if (!FindColumn(definition, column.name))
                unknown += QuotedName(column.name) + ' ' + column.sqlType;
        }
        if (!definition)
            database.ExecuteNative("CREATE TABLE " + QuotedName(m_name) + " (" + unknown.join(", ")
                                   + ')');
        else
            for (const QString &column : unknown)
                database.ExecuteNative("ALTER TABLE " + QuotedName(m_name) + " ADD COLUMN "
                                       + column);
        // What the old file lacks is blank, as every program of the suite writes it.
        if (definition)
            for (const ColumnDefinition &column : definition->columns)
                if (!names.contains(QuotedName(column.name), Qt::CaseInsensitive)) {
                    names += QuotedName(column.name);
                    values += column.IsText() ? "''" : "0";
                }
        const QString sql = "INSERT INTO " + QuotedName(m_name) + " (" + names.join(", ")
                            + ") VALUES (" + values.join(", ") + ')';
        if (sqlite3_prepare_v2(m_connection, sql.toUtf8(), -1, &m_statement, nullptr) != SQLITE_OK)
            throw DaoErrors::FromSqlite(m_connection, "tldb");
    }
    ~TableImport() { sqlite3_finalize(m_statement); }
    TableImport(const TableImport &) = delete;
    TableImport &operator=(const TableImport &) = delete;

    /// Writes every row; one that the new table does not take is a finding.
    void Run(const FindingSink &found)
    {
        while (m_rows.Next()) {
            ++m_read;
            for (int column = 0; column < int(m_rows.Columns().size()); ++column)
                Bind(column, m_rows.Value(column));
            const int result = sqlite3_step(m_statement);
            if (result == SQLITE_DONE)
                ++m_written;
            else if ((result & 0xff) == SQLITE_CONSTRAINT)
                found({m_name,
                       Key(),
                       {},
                       QString("the row is left out: ") + sqlite3_errmsg(m_connection)});
            else
                throw DaoErrors::FromSqlite(m_connection, "tldb");
            sqlite3_reset(m_statement);
        }
        if (m_read != m_rows.DeclaredRows())
            found({m_name,
                   {},
                   {},
                   QString("the old file tells of %1 rows").arg(m_rows.DeclaredRows())});
    }

    QString Summary() const
    {
        return QString("%1: %2 rows read, %3 written%4")
            .arg(m_name)
            .arg(m_read)
            .arg(m_written)
            .arg(m_isKnown ? "" : " (a table that the system does not know)");
    }

private:
    static bool FindColumn(const TableDefinition *definition, const QString &name)
    {
        if (definition)
            for (const ColumnDefinition &column : definition->columns)
                if (name.compare(QLatin1String(column.name), Qt::CaseInsensitive) == 0)
                    return true;
        return false;
    }

    void Bind(int column, const OldValue &value)
    {
        const int at = column + 1;
        if (const auto *whole = std::get_if<qint64>(&value))
            sqlite3_bind_int64(m_statement, at, *whole);
        else if (const auto *number = std::get_if<double>(&value))
            sqlite3_bind_double(m_statement, at, *number);
        else if (const auto *bytes = std::get_if<QByteArray>(&value))
            sqlite3_bind_blob64(m_statement, at, bytes->constData(), sqlite3_uint64(bytes->size()),
                                SQLITE_TRANSIENT);
        else if (const auto *text = std::get_if<QString>(&value)) {
            // The system compares texts without the blanks at their end.
            const QByteArray utf8 = (m_isKnown ? RTrim(*text) : *text).toUtf8();
            sqlite3_bind_text64(m_statement, at, utf8.constData(), sqlite3_uint64(utf8.size()),
                                SQLITE_TRANSIENT, SQLITE_UTF8);
        } else {
            sqlite3_bind_null(m_statement, at);
        }
    }

    /// The row by its first columns, which are the key in every table that has one.
    QString Key()
    {
        char *sql = sqlite3_expanded_sql(m_statement);
        const QString values = QString::fromUtf8(sql).section(") VALUES (", 1).left(60);
        sqlite3_free(sql);
        return "row " + QString::number(m_read) + " (" + values + "...)";
    }

    sqlite3 *m_connection;
    sqlite3_stmt *m_statement = nullptr;
    OldTable &m_rows;
    QString m_name;
    bool m_isKnown;
    qint64 m_read = 0;
    qint64 m_written = 0;
};

/// Brings every table over. Throws DaoError.
void ImportTables(OldDatabase &old, Database &database, QTextStream &out, const FindingSink &found)
{
    QStringList missing;
    for (const TableDefinition &table : Tables())
        missing += table.name;
    database.ExecuteNative("BEGIN");
    for (const QString &name : old.TableNames()) {
        const TableDefinition *definition = FindTable(name);
        OldTable rows(old, name);
        TableImport import(database, definition, rows, name);
        import.Run(found);
        out << import.Summary() << '\n';
        missing.removeIf(
            [&](const QString &table) { return table.compare(name, Qt::CaseInsensitive) == 0; });
    }
    for (const QString &table : missing)
        found({table, {}, {}, "the old file has no such table; the new one is empty"});
    const QString version = old.AccessVersion();
    if (!version.isNull())
        database.SetProperty("AccessVersion", version);
    database.ExecuteNative("COMMIT");
}

} // namespace

int RunImport(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err)
{
    const QString oldPath = arguments.positionalArguments().value(0);
    const QString folder = arguments.positionalArguments().value(1);
    qint64 findings = 0;
    const FindingSink found = [&](const Finding &finding) {
        out << ToLine(finding) << '\n';
        ++findings;
    };
    QString failing = oldPath;
    try {
        OldDatabase old(oldPath);
        failing = DatabasePath(folder);
        if (QFileInfo(failing).canonicalFilePath() == QFileInfo(oldPath).canonicalFilePath())
            return Complain(err, oldPath
                                     + ": the new database would have this name; give the old "
                                       "file another one first");
        NewDatabase database(folder);
        ImportTables(old, database.Content(), out, found);
        CheckProperties(database.Content(), found);
        for (const TableDefinition &table : Tables())
            CheckValues(database.Content(), table, found);
        CheckRelations(database.Content(), found);
        database.Finish();
    } catch (const DaoError &error) {
        return Complain(err, failing + ": " + ErrorText(error));
    }
    out << QString("%1: made from %2, %3 findings\n").arg(failing, oldPath).arg(findings);
    return findings == 0 ? ExitCode::Ok : ExitCode::Found;
}
