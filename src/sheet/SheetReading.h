#pragma once

#include "sheet/SheetColumns.h"

#include <QByteArrayView>
#include <QString>
#include <optional>
#include <vector>

/// Why nothing of a file can be taken.
enum class SheetFault {
    None,
    IsWorkbook,     ///< not a text, but what a spreadsheet saves by itself
    IsNoText,       ///< other bytes
    NoKeyColumns,   ///< there is no line of headings with the columns of the key
    NoAnswerColumn, ///< neither of the two
    HeadingTwice,   ///< of the columns that are read
};

/// The operator's text for it; empty for none.
QString FaultText(SheetFault fault);

/// A row of the file: plain cells, and nothing for a column that the file does not have.
struct SheetRow
{
    int line = 0;           ///< of the file, from 1
    bool isBroken = false;  ///< its quotes are wrong
    bool isTooLong = false; ///< it has cells beyond the headings
    QString accNo;
    QString accSubNo;
    QString shpSubNo;
    std::optional<QString> orderNo;
    std::optional<QString> quantity;
    std::optional<QString> date;
    std::optional<QString> answered;
    std::optional<QString> written;
};

/// What a file says, before it is looked at what it means for the list.
struct Sheet
{
    SheetFault fault = SheetFault::None;
    std::vector<SheetRow> rows; ///< those that are not empty
};

/// Reads a file of the list, whoever has written it last: its columns in any order and some of them
/// left out, between commas, tabs or semicolons.
Sheet ReadSheet(QByteArrayView bytes);
