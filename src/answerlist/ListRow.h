#pragma once

#include "util/Decimal.h"

#include <QString>
#include <array>

/// The columns of the answer list. Only this file and ListRow.cpp know where a value stands in a
/// row.
enum class ListColumn {
    Marks = 1,       ///< EDI mark; mark of a date that differs from the specified one
    Order,           ///< order number, product code, product name, material
    OrderQuantities, ///< ordered; still open
    LineQuantities,  ///< instructed; shipped
    AnswerQuantity,
    AnswerDate,    ///< shown form
    SpecifiedDate, ///< shown form; delivery number
    States,        ///< answered; shipped
    Contract,      ///< contract kind; section code
    AccNo,
    AccSubNo,
    ShpSubNo,       ///< empty for a split line that is not stored yet
    LoadedDate,     ///< the stored answered date, stored form
    LoadedQuantity, ///< the stored quantity as far as it counts, shown form
    LinKBN,
    OutputPath,
    Skipped,    ///< empty on load; a row with a text here is not answered
    Error = 21, ///< what the checks before the output found
};

inline constexpr int ListColumnCount = int(ListColumn::Error);

/// How a visible column looks.
struct ListColumnLook
{
    const char *heading;    ///< lines separated by CR LF; empty: the column is hidden
    const char *widestText; ///< a text that the column must have room for
    bool isNumber;
};

const ListColumnLook &LookOf(ListColumn column);

inline constexpr auto CellLineBreak = "\r\n";
inline constexpr auto DoneMark = "済";
inline constexpr auto WideBlank = "　";

/// What stands in one row of the list, read from the row's text (cells joined by tabs).
class ListRow
{
public:
    explicit ListRow(const QString &rowText);

    QString Cell(ListColumn column) const;
    QString Line(ListColumn column, int line) const; ///< 0 is the first

    // The same without a copy, for as long as the row's text lives.
    QStringView View(ListColumn column) const;
    QStringView LineView(ListColumn column, int line) const;

    bool IsEdi() const;
    bool IsShipped() const;  ///< the last character of the states is the done mark
    bool IsAnswered() const; ///< the first is
    bool IsStored() const { return !View(ListColumn::ShpSubNo).isEmpty(); }

    QString OrderNo() const { return Line(ListColumn::Order, 0); }
    Decimal OpenQuantity() const; ///< of the whole order
    Decimal InstructedQuantity() const;
    Decimal AnsweredQuantity() const;
    QString AnsweredDate() const;  ///< shown form, trimmed
    QString SpecifiedDate() const; ///< shown form
    int LinKBN() const;
    qint64 AccNo() const { return View(ListColumn::AccNo).toLongLong(); }
    int AccSubNo() const { return View(ListColumn::AccSubNo).toInt(); }
    int ShpSubNo() const { return View(ListColumn::ShpSubNo).toInt(); }

    /// True when the answered date or quantity is not the one that is stored.
    bool IsChanged() const;

    /// The answerable rule: a quantity, and for customers that ask for it a date.
    bool IsAnswerable() const;

private:
    QString m_text;
    std::array<qsizetype, ListColumnCount + 1> m_starts; ///< one past the end of the text: no cell
};

/// What a line's row is made of.
struct ListLine
{
    bool isEdi = false;
    bool hasOtherDate = false;
    QString orderNo, productCode, productName, material;
    Decimal ordered, open, instructed, shipped, answered, loaded;
    QString answeredDate;  ///< stored form
    QString specifiedDate; ///< stored form
    QString deliveryNo;
    bool isAnswered = false;
    bool isShipped = false;
    QString contractKind, sectionCode;
    QString accNo, accSubNo, shpSubNo;
    QString linKBN, outputPath;
};

/// The row's text.
QString RowText(const ListLine &line);

/// The row's text with another answered date (shown form) and the mark that tells whether it
/// differs from the specified one.
QString WithAnswerDate(const QString &rowText, const QString &shownDate);

/// The row's text for a split of it: the same order, no answer yet but `remainder` to be answered.
QString SplitRowText(const ListRow &source, const Decimal &remainder);
