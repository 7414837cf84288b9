#include "data/dao/sqlite/SqliteConnection.h"

#include "data/Tables.h"
#include "data/dao/Dialect.h"
#include "data/dao/SqlText.h"
#include "data/dao/sqlite/SqlFunctions.h"
#include "data/dao/sqlite/SqliteStatement.h"

#include <atomic>
#include <chrono>
#include <sqlite3.h>
#include <thread>

namespace {

constexpr int BusyTimeoutMs = 10'000;

int OpenFlags(SqliteConnection::Access access)
{
    switch (access) {
    case SqliteConnection::Access::Create:
        return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    case SqliteConnection::Access::ReadOnly:
        return SQLITE_OPEN_READONLY;
    default:
        return SQLITE_OPEN_READWRITE;
    }
}

/// Hands the current row of a statement over.
void ReadRow(sqlite3_stmt *statement, int columns, RowReceiver &rows)
{
    for (int column = 0; column < columns; ++column) {
        // The connection has no locks, being one thread's own, and so its values are read directly.
        sqlite3_value *value = sqlite3_column_value(statement, column);
        switch (sqlite3_value_type(value)) {
        case SQLITE_NULL:
            rows.Null();
            break;
        case SQLITE_INTEGER:
            rows.Whole(sqlite3_value_int64(value));
            break;
        case SQLITE_FLOAT:
            rows.Real(sqlite3_value_double(value));
            break;
        case SQLITE_BLOB: {
            const auto *bytes = static_cast<const char *>(sqlite3_value_blob(value));
            rows.Bytes(bytes, size_t(sqlite3_value_bytes(value)));
            break;
        }
        default: {
            const auto *text = static_cast<const char *>(sqlite3_value_blob(value));
            rows.Text(text, size_t(sqlite3_value_bytes(value)));
        }
        }
    }
    rows.EndRow();
}

} // namespace

SqliteConnection::SqliteConnection(const QString &localPath, Access access)
{
    // One thread uses a database: its locks against others would cost a tenth of every load.
    const int result = sqlite3_open_v2(localPath.toUtf8(), &m_handle,
                                       OpenFlags(access) | SQLITE_OPEN_NOMUTEX, nullptr);
    if (result != SQLITE_OK) {
        const DaoError error = ErrorOf(m_handle);
        sqlite3_close(m_handle);
        throw error;
    }
    sqlite3_extended_result_codes(m_handle, 1);
    sqlite3_busy_timeout(m_handle, BusyTimeoutMs);
    AddSqlFunctions(m_handle);
    if (access == Access::Create)
        return;
    try {
        // A list of a hundred thousand lines fits into the cache and needs no file to be sorted; a
        // longer one is sorted beside the reading.
        ExecuteScript("PRAGMA synchronous=FULL; PRAGMA foreign_keys=OFF;"
                      "PRAGMA cache_size=-64000; PRAGMA threads=2;");
        // Texts are read as they stand in the file.
        if (FirstColumn("SELECT encoding FROM pragma_encoding") != QStringList("UTF-8"))
            throw DaoErrors::Make(DaoErrors::UnrecognizedFormat, DaoErrors::DatabaseSource,
                                  localPath);
    } catch (const DaoError &) {
        sqlite3_close(m_handle);
        throw;
    }
}

SqliteConnection::~SqliteConnection()
{
    sqlite3_close(m_handle);
}

QString SqliteConnection::Translated(const QString &statement) const
{
    return ToSqlite(statement);
}

void SqliteConnection::Read(const QString &sql, RowReceiver &rows)
{
    const SqliteStatement statement(m_handle, sql);
    // The first step looks at the tables anew, should another program have changed them.
    int result = sqlite3_step(statement.handle);
    const int columns = sqlite3_column_count(statement.handle);
    std::vector<QString> names;
    for (int column = 0; column < columns; ++column)
        names.push_back(QString::fromUtf8(sqlite3_column_name(statement.handle, column)));
    rows.Columns(std::move(names));
    for (; result == SQLITE_ROW; result = sqlite3_step(statement.handle))
        ReadRow(statement.handle, columns, rows);
    if (result != SQLITE_DONE)
        throw ErrorOf(m_handle);
}

int SqliteConnection::Execute(const QString &sql)
{
    const SqliteStatement statement(m_handle, sql);
    int result = SQLITE_ROW;
    while (result == SQLITE_ROW)
        result = sqlite3_step(statement.handle);
    if (result != SQLITE_DONE)
        throw ErrorOf(m_handle);
    return sqlite3_stmt_readonly(statement.handle) ? 0 : sqlite3_changes(m_handle);
}

void SqliteConnection::ExecuteScript(const QString &sql)
{
    if (sqlite3_exec(m_handle, sql.toUtf8(), nullptr, nullptr, nullptr) != SQLITE_OK)
        throw ErrorOf(m_handle);
}

void SqliteConnection::Begin(bool isExclusive)
{
    ExecuteScript(isExclusive ? "BEGIN EXCLUSIVE" : "BEGIN IMMEDIATE");
}

void SqliteConnection::Commit()
{
    ExecuteScript("COMMIT");
}

void SqliteConnection::Rollback()
{
    ExecuteScript("ROLLBACK");
}

bool SqliteConnection::IsInTransaction() const
{
    return sqlite3_get_autocommit(m_handle) == 0;
}

void SqliteConnection::SetProgress(std::function<bool()> goOn)
{
    constexpr int OperationsPerCall = 1'000;
    m_goOn = std::move(goOn);
    sqlite3_progress_handler(
        m_handle, m_goOn ? OperationsPerCall : 0,
        [](void *self) { return static_cast<SqliteConnection *>(self)->m_goOn() ? 0 : 1; }, this);
}

QStringList SqliteConnection::TableNames()
{
    return FirstColumn("SELECT name FROM sqlite_master WHERE type = 'table'"
                       " AND name NOT LIKE 'sqlite!_%' ESCAPE '!' ORDER BY name");
}

std::vector<StoredColumn> SqliteConnection::Columns(const QString &table)
{
    std::vector<StoredColumn> columns;
    for (const QString &name :
         FirstColumn("SELECT name FROM pragma_table_info(" + SqlQuoted(table) + ')')) {
        const char *type = nullptr;
        const char *collation = nullptr;
        int isNotNull = 0;
        int isKey = 0;
        int isAutoNumber = 0;
        // Of a view there is but the name.
        sqlite3_table_column_metadata(m_handle, "main", table.toUtf8(), name.toUtf8(), &type,
                                      &collation, &isNotNull, &isKey, &isAutoNumber);
        columns.push_back({name, QString::fromUtf8(type).toUpper(),
                           QString::fromUtf8(collation).toUpper(), isNotNull != 0, isKey != 0});
    }
    return columns;
}

QStringList SqliteConnection::IndexedColumns(const QString &table)
{
    return FirstColumn("SELECT c.name FROM pragma_index_list(" + SqlQuoted(table)
                       + ") AS i, pragma_index_info(i.name) AS c"
                         " WHERE i.partial = 0 AND c.seqno = 0");
}

StoredColumn SqliteConnection::Wanted(const ColumnDefinition &column) const
{
    const QString number = column.type == ColumnType::Integer ? "INTEGER" : "REAL";
    return {column.name, column.IsText() ? "TEXT" : number, column.IsText() ? "NOCASE" : "",
            column.isKey, column.isKey};
}

bool SqliteConnection::CopyTo(const QString &localPath)
{
    SqliteConnection copy(localPath, Access::Create);
    copy.ExecuteScript("PRAGMA synchronous=FULL");
    sqlite3_backup *const backup = sqlite3_backup_init(copy.m_handle, "main", m_handle, "main");
    if (backup)
        sqlite3_backup_step(backup, -1);
    if (!backup || sqlite3_backup_finish(backup) != SQLITE_OK)
        throw ErrorOf(copy.m_handle);
    return true;
}

QStringList SqliteConnection::FindDamage()
{
    QStringList damage = FirstColumn("PRAGMA integrity_check");
    damage.removeAll("ok");
    return damage;
}

std::optional<QStringList> SqliteConnection::FindDamage(const QString &table,
                                                        const std::function<bool()> &isToGiveWay)
{
    using namespace std::chrono_literals;
    constexpr auto Interval = 20ms; // about so long a writer may have to wait
    sqlite3_file *file = nullptr;
    sqlite3_file_control(m_handle, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    std::atomic<bool> hasGivenWay = false;
    const std::jthread watch([&](const std::stop_token &isDone) {
        for (; !isDone.stop_requested(); std::this_thread::sleep_for(Interval)) {
            // Somebody may hold or wait for the right to write and not have changed anything yet.
            int isReserved = 0;
            file->pMethods->xCheckReservedLock(file, &isReserved);
            if (!isToGiveWay() && isReserved == 0)
                continue;
            hasGivenWay = true;
            sqlite3_interrupt(m_handle);
        }
    });
    QStringList damage;
    try {
        damage = FirstColumn("PRAGMA quick_check(" + table + ')');
    } catch (const DaoError &error) {
        if (error.number == DaoErrors::Cancelled || error.number == DaoErrors::Locked)
            return std::nullopt;
        throw;
    }
    if (hasGivenWay) // what it found before it was interrupted means nothing
        return std::nullopt;
    QStringList found;
    for (const QString &reported : std::as_const(damage)) {
        // A heading and a line for each fault of the file's structure; other rows tell of a
        // column's values, with which no line is lost.
        const QStringList faults = reported.split('\n', Qt::SkipEmptyParts);
        if (faults.value(0).startsWith("*** in database"))
            found += faults.sliced(1);
    }
    return found;
}
