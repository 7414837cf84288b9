#include "data/dao/sqlite/SqliteConnection.h"

#include <sqlite3.h>

namespace {

int NumberOf(int extendedCode)
{
    switch (extendedCode) {
    case SQLITE_CONSTRAINT_NOTNULL:
        return DaoErrors::NullNotAllowed;
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_ROWID:
        return DaoErrors::DuplicateKey;
    default:
        break;
    }
    switch (extendedCode & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return DaoErrors::Locked;
    case SQLITE_CONSTRAINT:
        return DaoErrors::RuleBroken; // of a trigger, a check, a reference
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return DaoErrors::CannotOpen;
    case SQLITE_READONLY:
        return DaoErrors::CannotUpdate;
    case SQLITE_FULL:
        return DaoErrors::DiskFull;
    case SQLITE_IOERR:
        return DaoErrors::DiskError;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return DaoErrors::CorruptFile;
    case SQLITE_INTERRUPT:
        return DaoErrors::Cancelled;
    case SQLITE_MISMATCH:
        return DaoErrors::TypeMismatch;
    case SQLITE_ERROR:
        return DaoErrors::SyntaxError;
    default:
        return DaoErrors::InternalError;
    }
}

} // namespace

DaoError SqliteConnection::ErrorOf(sqlite3 *handle)
{
    return DaoErrors::Make(NumberOf(sqlite3_extended_errcode(handle)), DaoErrors::DatabaseSource,
                           QString::fromUtf8(sqlite3_errmsg(handle)));
}
