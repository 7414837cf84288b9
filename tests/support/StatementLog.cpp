#include "support/StatementLog.h"

#include <sqlite3.h>
#include <utility>

namespace {

QStringList statements;

int Keep(unsigned, void *, void *, void *sql)
{
    statements += QString::fromUtf8(static_cast<const char *>(sql));
    return 0;
}

int Listen(sqlite3 *connection, char **, const struct sqlite3_api_routines *)
{
    return sqlite3_trace_v2(connection, SQLITE_TRACE_STMT, Keep, nullptr);
}

// SQLite calls it with the parameters that it has above.
const auto Entry = reinterpret_cast<void (*)()>(Listen);

} // namespace

StatementLog::StatementLog()
{
    statements.clear();
    sqlite3_auto_extension(Entry);
}

StatementLog::~StatementLog()
{
    sqlite3_cancel_auto_extension(Entry);
}

QStringList StatementLog::Take()
{
    return std::exchange(statements, {});
}
