#pragma once

#include <QString>

/// Text routines with the system's notion of a blank: U+0020 alone. A full-width space, a tab or a
/// line break is an ordinary character.

QString Trim(QStringView text);
QString Trim(QString text);
QString RTrim(QStringView text);
QString RTrim(QString text);

/// The same as views, for comparing without a copy.
QStringView Trimmed(QStringView text);

/// The number at the start of the text (blanks, a sign, digits, a point, digits); 0 when none.
double Val(QStringView text);

/// Val rounded to a 16-bit integer; 0 when it does not fit.
int IntVal(QStringView text);

/// The text in a buffer of `length` characters: blank-padded, or cut.
QString FixedText(const QString &text, int length);
