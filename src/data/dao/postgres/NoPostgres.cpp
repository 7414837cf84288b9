#include "data/dao/DaoError.h"
#include "data/dao/postgres/OpenPostgres.h"

// In place of the engine, where the library libpq is not installed.

std::unique_ptr<Connection> OpenPostgres(const QString &, ServerAccess)
{
    throw DaoErrors::Make(DaoErrors::NoDriver, DaoErrors::DatabaseSource,
                          "このプログラムは libpq なしで作られているため、PostgreSQL サーバーの"
                          "データベースを開けません");
}
