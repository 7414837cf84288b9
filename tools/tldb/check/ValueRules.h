#pragma once

#include "data/Tables.h"

#include <QString>

struct RowValue;

/// What is wrong with a value of a column; an empty text when nothing is. A null is only wrong in a
/// key.
QString ValueFault(const ColumnDefinition &column, const RowValue &value);

/// What is wrong with the characters of a text, and the text from the first wrong one on: a NUL,
/// another control character than a tab or line break, or one for which an answer record has but
/// "?". An empty text when nothing is.
QString CharacterFault(const QString &text);

/// A text between quotes, its control characters as escapes.
QString Quoted(const QString &text);
