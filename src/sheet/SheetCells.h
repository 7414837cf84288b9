#pragma once

#include "util/Decimal.h"

#include <QString>
#include <optional>

/// What people and their spreadsheets write into a cell. Digits and signs may be in full width,
/// blanks around a text do not count.

/// A cell without what stands for nothing: blanks around it, full width of digits and signs, and
/// the form ="..." that keeps a text a text.
QString PlainCell(QStringView cell);

/// True for a text that no spreadsheet takes for anything else: it begins with a Japanese letter
/// or an asterisk.
bool IsSafeCell(const QString &text);

/// A number of a plain cell: digits, with thousands separators in their places or none, and a
/// point. Nothing for anything else, a sign included.
std::optional<Decimal> NumberOfCell(const QString &plain);

/// The same within the digits that an answered quantity has.
std::optional<Decimal> QuantityOfCell(const QString &plain);

/// The stored form of a date of a plain cell: "2026/12/8", "2026-12-08", "20261208", "261208",
/// "2026年12月8日"; a time of midnight behind it does not count. Nothing for a date that the
/// calendar lacks, for one without its year ("12月8日", "12/8"), and for one whose year might as
/// well be its day ("12/08/26").
std::optional<QString> DateOfCell(const QString &plain);
