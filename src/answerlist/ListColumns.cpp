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

QString SpokenMarks(const Line &line)
{
    QStringList marks;
    if (line.IsEdi())
        marks += "EDI";
    if (line.HasDateMark())
        marks += "指定納期と異なる";
    return marks.join("、");
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

QString SpokenStates(const Line &line)
{
    QStringList states{line.IsAnswered() ? "回答済" : "未回答"};
    if (line.IsShipped())
        states += "出荷済";
    return states.join("、");
}

QString Contract(const Line &line)
{
    return InLine(ContractKindName(line.Text(LineField::ContractKBN), 1)) + LineBreak
           + InLine(line, LineField::CustSecCD);
}

constexpr ListColumn Columns[] = {
    {"EDI\r\nﾏｰｸ", "", Marks, false, CellTyping::No, SpokenMarks},
    {"注文№\r\n商品ｺｰﾄﾞ\r\n商品名\r\n材質･規格･寸法", "", Order},
    {"注文数\r\n注残数", "", OrderQuantities, true},
    {"納入指示数\r\n出荷数", "", LineQuantities, true},
    {"回答数量", "9,999,999.000", AnswerQuantity, true, CellTyping::Quantity},
    {"回答納期", "88/88/88", AnswerDate, false, CellTyping::Date},
    {"納期\r\n納入№", "", SpecifiedDate},
    {"回答\r\n出荷", "", States, false, CellTyping::No, SpokenStates, true},
    {"契約条件区分\r\n部門ｺｰﾄﾞ", "", Contract},
};

} // namespace

QString SpokenState(const Line &line)
{
    QStringList states;
    if (line.IsShipped())
        states += "出荷済";
    if (line.IsDefective())
        states += "不良品";
    return states.join("、");
}

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
