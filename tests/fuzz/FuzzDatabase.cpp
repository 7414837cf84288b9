#include "FuzzDatabase.h"

#include "data/Tables.h"

#include <sqlite3.h>

namespace {

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

int Interrupt(void *)
{
    return 1;
}

std::unique_ptr<Database> MakeDatabase()
{
    constexpr int MaxLength = 100'000;
    constexpr int MaxSteps = 200'000;
    auto database = Database::Create(":memory:", ConnectText);
    CreateTables(*database);
    database->ExecuteNative("PRAGMA query_only=ON");
    sqlite3_limit(database->Connection(), SQLITE_LIMIT_LENGTH, MaxLength);
    sqlite3_progress_handler(database->Connection(), MaxSteps, Interrupt, nullptr);
    sqlite3_set_authorizer(database->Connection(), AllowRows, nullptr);
    return database;
}

} // namespace

Database &FuzzDatabase()
{
    static const std::unique_ptr<Database> database = MakeDatabase();
    return *database;
}
