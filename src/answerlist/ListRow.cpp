#include "answerlist/ListRow.h"

#include "util/VbText.h"
#include "util/bDate.h"
#include "util/bTLKBN.h"
#include "util/bValue.h"

#include <QStringList>

namespace {

constexpr ListColumnLook Looks[] = {
    {"EDI\r\nﾏｰｸ", "ﾏｰｸ", false},
    {"注文№\r\n商品ｺｰﾄﾞ\r\n商品名\r\n材質･規格･寸法", "積層セラミックコンデンサ 0.1uF 50V", false},
    {"注文数\r\n注残数", "999,999,999.000", true},
    {"納入指示数\r\n出荷数", "999,999,999.000", true},
    {"回答数量", "999,999,999.000", true},
    {"回答納期", "88/88/88", false},
    {"納期\r\n納入№", "WWWWWWWW", false},
    {"回答\r\n出荷", "出荷", false},
    {"契約条件区分\r\n部門ｺｰﾄﾞ", "H 期間注文型取引(月)", false},
};

constexpr ListColumnLook Hidden = {"", "", false};

QString TwoLines(const QString &first, const QString &second)
{
    return first + CellLineBreak + second;
}

QString Mark(bool isSet)
{
    return isSet ? "*" : " ";
}

QString State(bool isDone)
{
    return isDone ? DoneMark : WideBlank;
}

/// Cells joined to a row's text; a tab or line break in a text of the database would break the row.
class RowWriter
{
public:
    RowWriter() { m_text.reserve(256); }

    void Add(const QString &cell)
    {
        if (!m_isFirst)
            m_text += '\t';
        m_isFirst = false;
        m_text += cell;
    }
    const QString &Text() const { return m_text; }

private:
    QString m_text;
    bool m_isFirst = true;
};

QString OneLine(QString text)
{
    for (QChar &c : text)
        if (c == '\t' || c == '\r' || c == '\n')
            c = ' ';
    return text;
}

} // namespace

const ListColumnLook &LookOf(ListColumn column)
{
    const size_t at = size_t(column) - 1;
    return at < std::size(Looks) ? Looks[at] : Hidden;
}

ListRow::ListRow(const QString &rowText)
    : m_text(rowText)
{
    m_starts.fill(m_text.size() + 1);
    m_starts[0] = 0;
    size_t cell = 0;
    for (qsizetype tab = m_text.indexOf('\t'); tab >= 0 && cell + 1 < m_starts.size();
         tab = m_text.indexOf('\t', tab + 1))
        m_starts[++cell] = tab + 1;
}

QStringView ListRow::CellView(ListColumn column) const
{
    const size_t cell = size_t(column) - 1;
    if (m_starts[cell] > m_text.size())
        return {};
    return QStringView(m_text).mid(m_starts[cell], m_starts[cell + 1] - 1 - m_starts[cell]);
}

QString ListRow::Cell(ListColumn column) const
{
    return CellView(column).toString();
}

QString ListRow::Line(ListColumn column, int line) const
{
    return Cell(column).split(CellLineBreak).value(line);
}

bool ListRow::IsEdi() const
{
    return CellView(ListColumn::Marks).startsWith(u'*');
}

bool ListRow::IsShipped() const
{
    return CellView(ListColumn::States).endsWith(QString(DoneMark));
}

bool ListRow::IsAnswered() const
{
    return CellView(ListColumn::States).startsWith(QString(DoneMark));
}

Decimal ListRow::OpenQuantity() const
{
    return QuantityOf(Line(ListColumn::OrderQuantities, 1));
}

Decimal ListRow::InstructedQuantity() const
{
    return QuantityOf(Line(ListColumn::LineQuantities, 0));
}

Decimal ListRow::AnsweredQuantity() const
{
    return QuantityOf(Cell(ListColumn::AnswerQuantity));
}

QString ListRow::AnsweredDate() const
{
    return Trim(CellView(ListColumn::AnswerDate));
}

QString ListRow::SpecifiedDate() const
{
    return Line(ListColumn::SpecifiedDate, 0);
}

int ListRow::LinKBN() const
{
    return IntVal(CellView(ListColumn::LinKBN));
}

bool ListRow::IsChanged() const
{
    return StoredDate(AnsweredDate()) != Trim(CellView(ListColumn::LoadedDate))
           || Trim(CellView(ListColumn::AnswerQuantity))
                  != Trim(CellView(ListColumn::LoadedQuantity));
}

bool ListRow::IsAnswerable() const
{
    if (AnsweredQuantity().IsZero())
        return false;
    return LinKBN() == 1 || (LinKBN() == 2 && !AnsweredDate().isEmpty());
}

QString RowText(const ListLine &line)
{
    RowWriter row;
    row.Add(TwoLines(Mark(line.isEdi), Mark(line.hasOtherDate)));
    row.Add(QStringList{OneLine(line.orderNo), OneLine(line.productCode), OneLine(line.productName),
                        OneLine(line.material)}
                .join(CellLineBreak));
    row.Add(TwoLines(FormatQuantity(line.ordered), FormatQuantity(line.open)));
    row.Add(TwoLines(FormatQuantity(line.instructed), FormatQuantity(line.shipped)));
    row.Add(FormatQuantity(line.answered));
    row.Add(Trim(line.answeredDate).isEmpty() ? QString() : OneLine(ShownDate(line.answeredDate)));
    row.Add(TwoLines(OneLine(ShownDate(line.specifiedDate)), OneLine(line.deliveryNo)));
    row.Add(TwoLines(State(line.isAnswered), State(line.isShipped)));
    row.Add(TwoLines(ContractKindName(OneLine(line.contractKind), 1), OneLine(line.sectionCode)));
    row.Add(line.accNo);
    row.Add(line.accSubNo);
    row.Add(line.shpSubNo);
    row.Add(OneLine(line.answeredDate));
    row.Add(FormatQuantity(line.loaded));
    row.Add(line.linKBN);
    row.Add(OneLine(line.outputPath));
    return row.Text();
}

QString SplitRowText(const ListRow &source, const Decimal &remainder)
{
    const Decimal none;
    RowWriter row;
    row.Add(TwoLines(Mark(source.IsEdi()), Mark(false)));
    row.Add(source.Cell(ListColumn::Order));
    row.Add(source.Cell(ListColumn::OrderQuantities));
    row.Add(TwoLines(FormatQuantity(none), FormatQuantity(none)));
    row.Add(FormatQuantity(remainder.IsNegative() ? none : remainder));
    row.Add({});
    row.Add(source.Cell(ListColumn::SpecifiedDate));
    row.Add(TwoLines(State(false), State(false)));
    row.Add(source.Cell(ListColumn::Contract));
    row.Add(source.Cell(ListColumn::AccNo));
    row.Add(source.Cell(ListColumn::AccSubNo));
    row.Add({});
    row.Add({});
    row.Add(FormatQuantity(none));
    row.Add(source.Cell(ListColumn::LinKBN));
    row.Add(source.Cell(ListColumn::OutputPath));
    row.Add(source.Cell(ListColumn::Skipped));
    return row.Text();
}
