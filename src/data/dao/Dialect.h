#pragma once

#include <QString>

/// Turns a statement of the system's SQL dialect into SQLite's, token by token; nothing inside a
/// literal is touched except the pattern after LIKE.
///
///   'A' & Chr(124) & 'B'                constant text joined into one literal; other & become ||
///   "text"                              a literal
///   Chr(n), Chr$(n), Left$(t, n)        char(n), left_text(t, n)
///   x LIKE 'ab*', 'a[#]b*', 'ab'        a native LIKE, which an index can serve
///   x LIKE other pattern                like_pattern(pattern, x), a function of ours
///   SELECT TOP n ...                    ... LIMIT n
///   UPDATE t INNER JOIN u ON c SET ..   UPDATE t SET .. FROM u WHERE (c) AND (..)
///
/// A statement that is not of the dialect is passed on as it is, for SQLite to refuse.
QString ToSqlite(const QString &statement);
