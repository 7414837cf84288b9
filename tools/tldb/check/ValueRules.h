#pragma once

#include "data/Tables.h"

#include <QString>

struct sqlite3_value;

/// What is wrong with a value of a column; an empty text when nothing is. A null is only wrong in a
/// key.
QString ValueFault(const ColumnDefinition &column, sqlite3_value *value);

/// A text between quotes, its control characters as escapes.
QString Quoted(const QString &text);
