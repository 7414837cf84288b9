#pragma once

#include <QString>

struct sqlite3;

/// True when the text fits the pattern: "*" any characters, "?" one, "#" one digit, "[a-z]" one of
/// a list, "[!a-z]" one outside of it. ASCII letters match without case. A "[" that no "]" closes
/// fits nothing.
bool FitsLikePattern(QStringView text, QStringView pattern);

/// Adds the functions that translated statements call: like_pattern(pattern, text) and
/// left_text(text, n).
void AddSqlFunctions(sqlite3 *connection);
