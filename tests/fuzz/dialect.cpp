// Any text as a statement, and as a pattern (the first line) with a text that it may fit. The
// engine runs the whole of a statement or throws its one error type; a LIKE finds the same
// whichever form it is translated to, and what an operator types is found as it was typed.

#include "Fuzzing.h"

#include "data/Tables.h"
#include "data/bDAO.h"
#include "data/dao/DaoError.h"
#include "data/dao/Dialect.h"
#include "data/dao/sqlite/SqlFunctions.h"
#include "data/dao/sqlite/SqliteConnection.h"

#include <sqlite3.h>

namespace {

/// Lets statements read rows and try to change them; the database itself takes no change.
int AllowRows(void *, int action, const char *, const char *, const char *, const char *)
{
    switch (action) {
    case SQLITE_SELECT:
    case SQLITE_READ:
    case SQLITE_FUNCTION:
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
        return SQLITE_OK;
    default:
        return SQLITE_DENY;
    }
}

sqlite3 *HandleOf(Database &database)
{
    return static_cast<SqliteConnection &>(database.Engine()).Handle();
}

/// A database in memory with every table and no rows, in which nothing runs for long.
std::unique_ptr<Database> MakeDatabase()
{
    constexpr int MaxLength = 100'000;
    constexpr int MaxSteps = 200'000;
    auto database = Database::Create(":memory:", ConnectText);
    CreateTables(*database);
    database->ExecuteNative("PRAGMA query_only=ON");
    sqlite3_limit(HandleOf(*database), SQLITE_LIMIT_LENGTH, MaxLength);
    sqlite3_progress_handler(
        HandleOf(*database), MaxSteps, [](void *) { return 1; }, nullptr);
    sqlite3_set_authorizer(HandleOf(*database), AllowRows, nullptr);
    return database;
}

/// Whether the library takes all of the statement as one.
bool IsOneStatement(Database &database, const QString &native)
{
    const QByteArray utf8 = native.toUtf8();
    sqlite3_stmt *statement = nullptr;
    const char *tail = nullptr;
    sqlite3_prepare_v2(HandleOf(database), utf8.data(), int(utf8.size()), &statement, &tail);
    sqlite3_finalize(statement);
    return statement && QByteArray(tail, utf8.data() + utf8.size() - tail).trimmed().isEmpty();
}

QString Quoted(QString text)
{
    return '\'' + text.replace("'", "''") + '\'';
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const std::unique_ptr<Database> database = MakeDatabase();
    const QString input = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString native = ToSqlite(input);
    Require(native.size() <= 4 * input.size() + 100, "the translation stays small", native);
    try {
        database->OpenRecordset(input);
        Require(IsOneStatement(*database, native), "no part of a statement is left out", native);
    } catch (const DaoError &error) {
        Require(error.number > 0 && !error.description.isEmpty(), "an error says what it is");
    }
    if (input.contains(QChar(0)))
        return 0; // no literal can hold it

    const auto asked = [](const QString &expression) {
        return database->OpenRecordset("SELECT TOP 1 " + expression)->Text(0);
    };
    Require(asked(Quoted(input) + " & Chr(124)") == input + '|', "literals are untouched", input);

    const QString pattern = input.section('\n', 0, 0);
    const QString text = input.section('\n', 1);
    const QString like = " LIKE " + Quoted(pattern);
    const bool fits = FitsLikePattern(text, pattern);
    Require(asked(Quoted(text) + like) == QString::number(fits), "both forms match alike", input);
    Require(asked(Quoted(text) + " NOT" + like) == QString::number(!fits), "NOT is the opposite");

    const QString begins = " LIKE '" + LiteralLikeText(SqlText(pattern)) + "*'";
    Require(asked(Quoted(pattern + text) + begins) == "1", "a beginning finds its text", input);
    const QString other = pattern.startsWith('x', Qt::CaseInsensitive) ? "y" : "x";
    Require(SqlText(pattern).isEmpty() || asked(Quoted(other + pattern) + begins) == "0",
            "another text is not found", input);
    return 0;
}
