#pragma once

#include <QString>

/// The text as a literal of SQL: between single quotes, quotes doubled inside, nothing trimmed.
QString SqlQuoted(const QString &text);

/// A text for use between single quotes in SQL: quotes doubled, trailing blanks removed.
QString SqlText(const QString &text);

/// A text for use in a LIKE pattern: every "#" as "[#]". The caller adds the wildcard.
QString LikeText(const QString &text);

/// The same for a text that is no pattern: it fits itself alone, "*", "?" and "[" included.
QString LiteralLikeText(const QString &text);
