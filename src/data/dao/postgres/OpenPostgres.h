#pragma once

#include "data/dao/Connection.h"

#include <memory>

/// What a database on a server is opened for. For Create, texts get their type on the server when
/// it does not have it yet.
enum class ServerAccess { Create, ReadOnly, ReadWrite };

/// Connects to a PostgreSQL server. Throws DaoError, also where the program has been built without
/// the library for it.
std::unique_ptr<Connection> OpenPostgres(const QString &settings, ServerAccess access);
