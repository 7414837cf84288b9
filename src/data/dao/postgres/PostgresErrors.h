#pragma once

#include "data/dao/DaoError.h"

struct pg_result;

namespace PostgresErrors {

/// The error that the server has reported; number 0 when the result is none.
DaoError Of(const pg_result *result);

/// The error of a connection that can't be made or that has broken, in the library's words.
DaoError OfNetwork(const QString &what, const char *message);

} // namespace PostgresErrors
