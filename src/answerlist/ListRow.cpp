#include "answerlist/ListRow.h"

#include "util/VbText.h"
#include "util/bDate.h"
#include "util/bTLKBN.h"
#include "util/bValue.h"

#include <algorithm>

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

constexpr QStringView LineBreak = u"\r\n";
constexpr QChar Done = u'済';

QStringView Mark(bool isSet)
{
    return isSet ? u"*" : u" ";
}

QStringView State(bool isDone)
{
    return isDone ? u"済" : u"　";
}

/// True when both texts, each in shown or typed form, stand for one date.
bool IsSameDate(QStringView a, QStringView b)
{
    constexpr auto isShown
        = [](QStringView date) { return date.size() == 8 && date[2] == u'/' && date[5] == u'/'; };
    if (a == b || (isShown(a) && isShown(b)))
        return a == b;
    return StoredDate(a.toString()) == StoredDate(b.toString());
}

/// Writes a row's text cell by cell. Texts of the database keep to their cell and line: a tab or
/// line break in them becomes a blank.
class RowWriter
{
public:
    RowWriter() { m_text.reserve(256); }

    RowWriter &Cell()
    {
        if (!m_isFirst)
            m_text += '\t';
        m_isFirst = false;
        return *this;
    }
    RowWriter &Text(QStringView text)
    {
        const auto isControl = [](QChar c) { return c < u' '; };
        const qsizetype start = m_text.size();
        m_text += text;
        if (std::any_of(text.begin(), text.end(), isControl))
            std::replace_if(m_text.begin() + start, m_text.end(), isControl, QChar(u' '));
        return *this;
    }
    RowWriter &Quantity(const Decimal &quantity)
    {
        m_text += FormatQuantity(quantity);
        return *this;
    }
    RowWriter &Raw(QStringView cell)
    {
        m_text += cell;
        return *this;
    }
    RowWriter &Break()
    {
        m_text += LineBreak;
        return *this;
    }

    /// The text in no more room than it takes: a million of them stay in memory.
    QString Result() const { return QString(m_text.constData(), m_text.size()); }

private:
    QString m_text;
    bool m_isFirst = true;
};

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

QStringView ListRow::View(ListColumn column) const
{
    const size_t cell = size_t(column) - 1;
    if (m_starts[cell] > m_text.size())
        return {};
    return QStringView(m_text).mid(m_starts[cell], m_starts[cell + 1] - 1 - m_starts[cell]);
}

QString ListRow::Cell(ListColumn column) const
{
    return View(column).toString();
}

QStringView ListRow::LineView(ListColumn column, int line) const
{
    QStringView rest = View(column);
    for (; line > 0; --line) {
        const qsizetype end = rest.indexOf(LineBreak);
        if (end < 0)
            return {};
        rest = rest.sliced(end + LineBreak.size());
    }
    const qsizetype end = rest.indexOf(LineBreak);
    return end < 0 ? rest : rest.first(end);
}

QString ListRow::Line(ListColumn column, int line) const
{
    return LineView(column, line).toString();
}

bool ListRow::IsEdi() const
{
    return View(ListColumn::Marks).startsWith(u'*');
}

bool ListRow::IsShipped() const
{
    return View(ListColumn::States).endsWith(Done);
}

bool ListRow::IsAnswered() const
{
    return View(ListColumn::States).startsWith(Done);
}

Decimal ListRow::OpenQuantity() const
{
    return QuantityOf(LineView(ListColumn::OrderQuantities, 1));
}

Decimal ListRow::InstructedQuantity() const
{
    return QuantityOf(LineView(ListColumn::LineQuantities, 0));
}

Decimal ListRow::AnsweredQuantity() const
{
    return QuantityOf(View(ListColumn::AnswerQuantity));
}

QString ListRow::AnsweredDate() const
{
    return Trim(View(ListColumn::AnswerDate));
}

QString ListRow::SpecifiedDate() const
{
    return Line(ListColumn::SpecifiedDate, 0);
}

int ListRow::LinKBN() const
{
    return IntVal(View(ListColumn::LinKBN));
}

bool ListRow::IsChanged() const
{
    return Trimmed(View(ListColumn::AnswerQuantity)) != Trimmed(View(ListColumn::LoadedQuantity))
           || StoredDate(AnsweredDate()) != Trimmed(View(ListColumn::LoadedDate));
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
    row.Cell().Raw(Mark(line.isEdi)).Break().Raw(Mark(line.hasOtherDate));
    row.Cell().Text(line.orderNo).Break().Text(line.productCode).Break();
    row.Text(line.productName).Break().Text(line.material);
    row.Cell().Quantity(line.ordered).Break().Quantity(line.open);
    row.Cell().Quantity(line.instructed).Break().Quantity(line.shipped);
    row.Cell().Quantity(line.answered);
    row.Cell().Text(Trimmed(line.answeredDate).isEmpty() ? QString()
                                                         : ShownDate(line.answeredDate));
    row.Cell().Text(ShownDate(line.specifiedDate)).Break().Text(line.deliveryNo);
    row.Cell().Raw(State(line.isAnswered)).Break().Raw(State(line.isShipped));
    row.Cell().Text(ContractKindName(line.contractKind, 1)).Break().Text(line.sectionCode);
    row.Cell().Raw(line.accNo).Cell().Raw(line.accSubNo).Cell().Raw(line.shpSubNo);
    row.Cell().Text(line.answeredDate);
    row.Cell().Quantity(line.loaded);
    row.Cell().Text(line.linKBN).Cell().Text(line.outputPath);
    return row.Result();
}

QString WithAnswerDate(const QString &rowText, const QString &shownDate)
{
    const ListRow row(rowText);
    const QStringView marks = row.View(ListColumn::Marks);
    const QStringView date = row.View(ListColumn::AnswerDate);
    const bool isSame = IsSameDate(shownDate, row.LineView(ListColumn::SpecifiedDate, 0));
    const auto positionOf = [&](QStringView cell) { return cell.data() - rowText.constData(); };
    QString changed = rowText;
    changed.replace(positionOf(date), date.size(), shownDate);
    if (!marks.isEmpty())
        changed[positionOf(marks) + marks.size() - 1] = isSame ? u' ' : u'*';
    return changed;
}

QString SplitRowText(const ListRow &source, const Decimal &remainder)
{
    const Decimal none;
    RowWriter row;
    const auto copy = [&](ListColumn column) { row.Cell().Raw(source.Cell(column)); };
    row.Cell().Raw(Mark(source.IsEdi())).Break().Raw(Mark(false));
    copy(ListColumn::Order);
    copy(ListColumn::OrderQuantities);
    row.Cell().Quantity(none).Break().Quantity(none);
    row.Cell().Quantity(remainder.IsNegative() ? none : remainder);
    row.Cell();
    copy(ListColumn::SpecifiedDate);
    row.Cell().Raw(State(false)).Break().Raw(State(false));
    copy(ListColumn::Contract);
    copy(ListColumn::AccNo);
    copy(ListColumn::AccSubNo);
    row.Cell().Cell(); // neither a number nor a date is stored yet
    row.Cell().Quantity(none);
    copy(ListColumn::LinKBN);
    copy(ListColumn::OutputPath);
    copy(ListColumn::Skipped);
    return row.Result();
}
