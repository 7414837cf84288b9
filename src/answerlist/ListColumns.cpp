#include "answerlist/ListColumns.h"

#include "util/bDate.h"
#include "util/bTLKBN.h"

#include <algorithm>

namespace {

constexpr auto LineBreak = "\r\n";

QString Mark(bool isSet)
{
    return isSet ? "*" : " ";
}

/// Texts of the database keep to their line: a tab or line break in them becomes a blank.
QString InLine(QString text)
{
    std::replace_if(
        text.begin(), text.end(), [](QChar c) { return c < u' '; }, QChar(u' '));
    return text;
}

QString InLine(const Line &line, LineField field)
{
    return InLine(line.Text(field));
}

QString Quantities(const Line &line, LineField first, LineField second)
{
    return FormatQuantity(line.Quantity(first)) + LineBreak + FormatQuantity(line.Quantity(second));
}

QString Marks(const Line &line)
{
    return Mark(line.IsEdi()) + LineBreak + Mark(line.HasDateMark());
}

QString Order(const Line &line)
{
    return InLine(line, LineField::OdrNo) + LineBreak + InLine(line, LineField::HinCD) + LineBreak
           + InLine(line, LineField::AccHinName) + LineBreak + InLine(line, LineField::F019);
}

QString OrderQuantities(const Line &line)
{
    return Quantities(line, LineField::AccVal, LineField::ZanVal);
}

QString LineQuantities(const Line &line)
{
    return Quantities(line, LineField::IndVal, LineField::ShpVal);
}

QString AnswerQuantity(const Line &line)
{
    return FormatQuantity(line.Now().quantity);
}

QString AnswerDate(const Line &line)
{
    return InLine(ShownDate(line.Now().date));
}

QString SpecifiedDate(const Line &line)
{
    return InLine(ShownDate(line.SpecifiedDate())) + LineBreak
           + InLine(line, LineField::PayNo).trimmed();
}

QString States(const Line &line)
{
    constexpr auto Done = "済";
    constexpr auto Blank = "　";
    if (line.IsAnsweredHere())
        return QString(Done) + LineBreak + ' ';
    return QString(line.IsAnswered() ? Done : Blank) + LineBreak
           + (line.IsShipped() ? Done : Blank);
}

QString Contract(const Line &line)
{
    return InLine(ContractKindName(line.Text(LineField::ContractKBN), 1)) + LineBreak
           + InLine(line, LineField::CustSecCD);
}

constexpr ListColumn Columns[] = {
    {"EDI\r\nﾏｰｸ", "ﾏｰｸ", Marks},
    {"注文№\r\n商品ｺｰﾄﾞ\r\n商品名\r\n材質･規格･寸法", "積層セラミックコンデンサ 0.1uF 50V", Order},
    {"注文数\r\n注残数", "999,999,999.000", OrderQuantities, true},
    {"納入指示数\r\n出荷数", "999,999,999.000", LineQuantities, true},
    {"回答数量", "999,999,999.000", AnswerQuantity, true, CellTyping::Quantity},
    {"回答納期", "88/88/88", AnswerDate, false, CellTyping::Date},
    {"納期\r\n納入№", "WWWWWWWW", SpecifiedDate},
    {"回答\r\n出荷", "出荷", States},
    {"契約条件区分\r\n部門ｺｰﾄﾞ", "H 期間注文型取引(月)", Contract},
};

} // namespace

std::span<const ListColumn> ListColumns()
{
    return Columns;
}

int ColumnTyped(CellTyping typing)
{
    return int(std::ranges::find(Columns, typing, &ListColumn::typing) - Columns) + 1;
}

int ColumnToMend(LineError error)
{
    return ColumnTyped(error == LineError::NoDate ? CellTyping::Date : CellTyping::Quantity);
}
