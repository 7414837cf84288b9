#pragma once

#include "lines/LineList.h"

#include <optional>
#include <span>

/// What stands in a column of the sheet: the list as a spreadsheet file.
enum class SheetKind {
    Key,            ///< one of the numbers that a line is found by
    Text,           ///< words
    Code,           ///< digits and letters that are no number
    Number,         ///< a quantity
    Date,           ///< "YYYY/MM/DD", or the text that stands in its place in the database
    AnswerQuantity, ///< to be filled in
    AnswerDate,     ///< to be filled in
    Written,        ///< the line as it was when the file was written (WrittenState)
};

/// A column of the sheet: one item of a cell of the list.
struct SheetColumn
{
    const char *heading;
    SheetKind kind;
    int width; ///< in half-width characters
    QString (*text)(const Line &line) = nullptr;
    Decimal (*number)(const Line &line) = nullptr; ///< of a Number or AnswerQuantity
};

/// The columns from left to right, the key ahead.
std::span<const SheetColumn> SheetColumns();

/// The headings that a reader asks for by name.
namespace SheetHeading {
inline constexpr auto AccNo = "受注№";
inline constexpr auto AccSubNo = "枝番";
inline constexpr auto ShpSubNo = "分納番号";
inline constexpr auto OrderNo = "注文№";
inline constexpr auto AnswerQuantity = "回答数量";
inline constexpr auto AnswerDate = "回答納期";
inline constexpr auto Answered = "回答";
inline constexpr auto Written = "出力時";
} // namespace SheetHeading

/// How the sheet says that something is done.
inline constexpr auto DoneText = "済";

/// What a row of the list shows in a column of the sheet, dates and numbers as texts.
QString SheetText(const LineList &list, int row, const SheetColumn &column);

/// A line as it was when it was written to a file, so that a file that comes back tells what was
/// edited in it and what has been done to the line since. A split that is not stored yet has no
/// number of its own: it is the n-th of its source.
///
/// As a text: "7-1-2 未 0 - 100 20261208", the line, whether it is answered, its stored answer and
/// the answer that the file shows; "7-1-2+1" is the first such split of the line.
struct WrittenState
{
    LineKey key;
    int split = 0; ///< 0: the line itself
    bool isAnswered = false;
    QString storedQuantity;
    QString storedDate;
    QString shownQuantity;
    QString shownDate; ///< stored form, or what stands in its place

    static WrittenState Of(const LineList &list, int row);

    /// Nothing for a text that is none.
    static std::optional<WrittenState> FromText(QStringView text);
    QString ToText() const;
};

/// A date of a line as a state has it: in one word, "-" for none.
QString WrittenWord(const QString &date);
