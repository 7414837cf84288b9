#pragma once

#include <QString>

struct sqlite3;
struct sqlite3_stmt;

/// A prepared statement, finalized when it goes out of scope. Throws DaoError, also for a text with
/// more than one statement.
struct SqliteStatement
{
    SqliteStatement(sqlite3 *connection, const QString &sql);
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement &) = delete;
    SqliteStatement &operator=(const SqliteStatement &) = delete;

    sqlite3_stmt *handle = nullptr;
};
