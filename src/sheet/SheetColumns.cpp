#include "sheet/SheetColumns.h"

#include "util/VbText.h"
#include "util/bDate.h"
#include "util/bTLKBN.h"

#include <QList>
#include <algorithm>

namespace {

constexpr auto NoWord = "-";
constexpr auto OpenText = "未";

/// Texts of the database keep to their cell: a control character in them becomes a blank.
QString InCell(QString text)
{
    std::replace_if(
        text.begin(), text.end(), [](QChar c) { return c < u' ' || c >= u'\ufffe'; }, QChar(u' '));
    return text;
}

template <LineField Field>
QString TextOf(const Line &line)
{
    return InCell(line.Text(Field));
}

template <LineField Field>
Decimal NumberOf(const Line &line)
{
    return line.Quantity(Field);
}

QString DateText(const QString &stored)
{
    if (!IsValidDate(stored))
        return InCell(stored);
    return stored.left(4) + '/' + stored.mid(4, 2) + '/' + stored.mid(6, 2);
}

constexpr SheetColumn Columns[] = {
    {SheetHeading::AccNo, SheetKind::Key, 10,
     [](const Line &line) { return QString::number(line.Key().accNo); }},
    {SheetHeading::AccSubNo, SheetKind::Key, 6,
     [](const Line &line) { return QString::number(line.Key().accSubNo); }},
    {SheetHeading::ShpSubNo, SheetKind::Key, 9,
     [](const Line &line) {
         return line.IsStored() ? QString::number(line.Key().shpSubNo) : QString();
     }},
    {"EDI", SheetKind::Text, 5, [](const Line &line) { return QString(line.IsEdi() ? "*" : ""); }},
    {"ﾏｰｸ", SheetKind::Text, 5,
     [](const Line &line) { return QString(line.HasDateMark() ? "*" : ""); }},
    {SheetHeading::OrderNo, SheetKind::Code, 22, TextOf<LineField::OdrNo>},
    {"商品ｺｰﾄﾞ", SheetKind::Code, 20, TextOf<LineField::HinCD>},
    {"商品名", SheetKind::Text, 36, TextOf<LineField::AccHinName>},
    {"材質･規格･寸法", SheetKind::Text, 24, TextOf<LineField::F019>},
    {"注文数", SheetKind::Number, 15, nullptr, NumberOf<LineField::AccVal>},
    {"注残数", SheetKind::Number, 15, nullptr, NumberOf<LineField::ZanVal>},
    {"納入指示数", SheetKind::Number, 15, nullptr, NumberOf<LineField::IndVal>},
    {"出荷数", SheetKind::Number, 15, nullptr, NumberOf<LineField::ShpVal>},
    {SheetHeading::AnswerQuantity, SheetKind::AnswerQuantity, 15, nullptr,
     [](const Line &line) { return line.Now().quantity; }},
    {SheetHeading::AnswerDate, SheetKind::AnswerDate, 12,
     [](const Line &line) { return DateText(line.Now().date); }},
    {"納期", SheetKind::Date, 12, [](const Line &line) { return DateText(line.SpecifiedDate()); }},
    {"納入№", SheetKind::Code, 10,
     [](const Line &line) { return InCell(line.Text(LineField::PayNo)).trimmed(); }},
    {SheetHeading::Answered, SheetKind::Text, 6,
     [](const Line &line) { return QString(line.IsAnswered() ? DoneText : ""); }},
    {"出荷", SheetKind::Text, 6,
     [](const Line &line) { return QString(line.IsShipped() ? DoneText : ""); }},
    {"契約条件区分", SheetKind::Text, 24,
     [](const Line &line) {
         return InCell(ContractKindName(line.Text(LineField::ContractKBN), 1));
     }},
    {"部門ｺｰﾄﾞ", SheetKind::Code, 12, TextOf<LineField::CustSecCD>},
    {SheetHeading::Written, SheetKind::Written, 36},
};

/// Which one of the unstored splits of its source a row is, from the top and from 1.
int NumberOfSplit(const LineList &list, int row)
{
    const LineKey source = list.At(row).Source();
    int number = 0;
    for (const int other : list.RowsOfOrder(source.accNo))
        number += other <= row && !list.At(other).IsStored() && list.At(other).Source() == source;
    return number;
}

} // namespace

std::span<const SheetColumn> SheetColumns()
{
    return Columns;
}

QString SheetText(const LineList &list, int row, const SheetColumn &column)
{
    if (column.number)
        return column.number(list.At(row)).ToText();
    if (column.text)
        return column.text(list.At(row));
    return WrittenState::Of(list, row).ToText();
}

QString WrittenWord(const QString &date)
{
    if (date.isEmpty())
        return NoWord;
    return InCell(date).replace(' ', '_');
}

WrittenState WrittenState::Of(const LineList &list, int row)
{
    const Line &line = list.At(row);
    WrittenState state;
    state.key = line.IsStored() ? line.Key() : line.Source();
    state.split = line.IsStored() ? 0 : NumberOfSplit(list, row);
    state.isAnswered = line.IsAnswered();
    state.storedQuantity = line.Stored().quantity.ToText();
    state.storedDate = WrittenWord(line.Stored().date);
    state.shownQuantity = line.Now().quantity.ToText();
    state.shownDate = WrittenWord(line.Now().date);
    return state;
}

QString WrittenState::ToText() const
{
    QString text = QString::number(key.accNo) + '-' + QString::number(key.accSubNo) + '-'
                   + QString::number(key.shpSubNo);
    if (split > 0)
        text += '+' + QString::number(split);
    return text + ' ' + (isAnswered ? DoneText : OpenText) + ' ' + storedQuantity + ' ' + storedDate
           + ' ' + shownQuantity + ' ' + shownDate;
}

std::optional<WrittenState> WrittenState::FromText(QStringView text)
{
    const auto words = text.trimmed().split(u' ');
    if (words.size() != 6 || (words[1] != QString(DoneText) && words[1] != QString(OpenText)))
        return std::nullopt;
    const auto numbers = words[0].split(u'-');
    if (numbers.size() != 3)
        return std::nullopt;
    WrittenState state;
    const qsizetype plus = numbers[2].indexOf(u'+');
    bool isNumber[] = {false, false, false, true};
    state.key.accNo = numbers[0].toLongLong(&isNumber[0]);
    state.key.accSubNo = numbers[1].toInt(&isNumber[1]);
    state.key.shpSubNo = (plus < 0 ? numbers[2] : numbers[2].left(plus)).toInt(&isNumber[2]);
    if (plus >= 0)
        state.split = numbers[2].sliced(plus + 1).toInt(&isNumber[3]);
    if (!std::ranges::all_of(isNumber, std::identity()) || state.split < 0)
        return std::nullopt;
    state.isAnswered = words[1] == QString(DoneText);
    state.storedQuantity = words[2].toString();
    state.storedDate = words[3].toString();
    state.shownQuantity = words[4].toString();
    state.shownDate = words[5].toString();
    return state;
}
