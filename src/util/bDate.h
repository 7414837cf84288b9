#pragma once

#include <QString>

/// Dates are texts in one of three forms: stored "YYYYMMDD", typed "YYMMDD" and shown "YY/MM/DD".
/// The date kind says which forms a conversion is between:
/// 0 month and day only ("MMDD", "MM/DD"); 1 typed and shown; 2 like 1 but shown without the year;
/// 3 stored and shown. A text that does not fit the kind comes back unchanged.

/// Typed form (stored form for kind 3) to shown form. Digits and range are not checked.
QString FormatDateText(const QString &text, int kind);

/// Shown form back to typed form; for kinds 2 and 3 an unslashed text gains its century instead.
QString UnformatDateText(const QString &text, int kind);

/// "YY/MM/DD" to "YYMMDD"; a text of another length unchanged.
QString StripDateSlashes(const QString &text);

/// "YYMMDD" to "YYYYMMDD": 00 to 50 are 20xx, 51 to 99 are 19xx. Empty for fewer than 2 characters.
QString AddCentury(const QString &text);

/// "YYYYMMDD" to "YYMMDD": the text from its third character on. Empty for fewer than 2 characters.
QString DropCentury(const QString &text);

/// True for a stored-form date that the calendar has, from 1900 to 3000.
bool IsValidDate(const QString &text);

/// True for exactly six digits that are the typed form of a date that the calendar has.
bool IsTypedDate(const QString &typed);

/// The same, or the shown form of such a date: what a box may hold when it is read.
bool IsTypedOrShownDate(const QString &text);

/// Typed or shown form to stored form: what every reader of a date box or cell uses.
QString StoredDate(const QString &text);

/// Stored form to shown form.
QString ShownDate(const QString &stored);

/// The date some days before a stored-form date, in stored form; empty when the date is not valid.
QString DateBefore(const QString &stored, int days);

/// The clock's date as "YY/MM/DD" and time as "HH:MM:SS".
QString NowDateText();
QString NowTimeText();
