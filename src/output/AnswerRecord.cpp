#include "output/AnswerRecord.h"

#include "output/RecordLayout.h"
#include "platform/ShiftJis.h"
#include "util/VbText.h"
#include "util/bValue.h"

#include <algorithm>

namespace {

/// Fills a record's bytes field by field. A text comes from a member of the structure, which holds
/// as many characters as its field has bytes; both cut what is longer.
class FieldWriter
{
public:
    explicit FieldWriter(AnswerBuffer &buffer)
        : m_at(buffer.data())
    {
    }

    template <typename Structure>
    void PutFields(const Structure &from, std::span<const RecordField<Structure>> fields)
    {
        for (const RecordField<Structure> &field : fields) {
            if (field.kind == FieldKind::Number)
                PutNumber(from.*std::get<1>(field.member), field);
            else if (field.kind == FieldKind::Date)
                PutDate(from.*std::get<0>(field.member), field.length);
            else
                PutText(from.*std::get<0>(field.member), field.length);
        }
    }

    /// True while every character has been one of Shift-JIS.
    bool IsComplete() const { return m_isComplete; }

private:
    void PutText(QStringView text, int length)
    {
        const QStringView member = text.left(length);
        const bool isAscii
            = std::all_of(member.begin(), member.end(), [](QChar c) { return c < u'\x80'; });
        if (isAscii) {
            Put(member, length);
            return;
        }
        bool isComplete = true;
        QByteArray bytes = ToShiftJis(member, &isComplete);
        if (!isComplete)
            bytes = ToShiftJis(ToCodePage(text.toString()).left(length), &m_isComplete);
        Put(QByteArrayView(bytes).first(std::min<qsizetype>(bytes.size(), length)), length);
    }

    /// "YYMMDD" of a stored-form date; zeros for one with fewer than two characters.
    void PutDate(QStringView stored, int length)
    {
        constexpr int Century = 2;
        if (Trimmed(stored.left(Century + length)).size() < Century)
            Put(QByteArrayView(BlankPackedDate), length);
        else
            PutText(stored.mid(Century), length);
    }

    template <typename Field>
    void PutNumber(const Decimal &number, const Field &field)
    {
        Put(QStringView(ZeroFillBySpec(number, field.digitSpec)), field.length);
    }

    /// Left-aligned in blanks. A NUL would end the record for some receivers and is one, too.
    template <typename Characters>
    void Put(Characters characters, int length)
    {
        char *const end = m_at + length;
        for (const auto c : characters)
            *m_at++ = ByteOf(c) == '\0' ? ' ' : ByteOf(c);
        std::fill(m_at, end, ' ');
        m_at = end;
    }

    static char ByteOf(char byte) { return byte; }
    static char ByteOf(QChar ascii) { return ascii.toLatin1(); }

    char *m_at;
    bool m_isComplete = true;
};

} // namespace

void ClearAnswerRecord(AnswerRecord &record)
{
    record = AnswerRecord();
}

bool PackAnswerRecord(const AnswerRecord &record, const RecordLayout &layout, AnswerBuffer &buffer)
{
    FieldWriter writer(buffer);
    writer.PutFields(record, layout.head);
    for (const AnswerSlot &slot : record.lines)
        writer.PutFields(slot, layout.slot);
    writer.PutFields(record, layout.tail);
    return writer.IsComplete();
}

bool PackAnswerRecord(const AnswerRecord &record, AnswerBuffer &buffer)
{
    return PackAnswerRecord(record, LongLayout, buffer);
}

namespace {

bool IsHalfWidthKana(QChar c)
{
    return c >= QChar(0xFF61) && c <= QChar(0xFF9F);
}

/// Half-width kana in full width; a voiced mark joins the character before it.
QString WideKana(QStringView kana)
{
    QString wide = kana.toString().normalized(QString::NormalizationForm_KC);
    // A mark that nothing took is left as a combining one.
    return wide.replace(QChar(0x3099), QChar(0x309B)).replace(QChar(0x309A), QChar(0x309C));
}

} // namespace

QString ToWideText(const QString &text, int bytes)
{
    const QString narrow = QString(text).replace('\\', "￥") + QString(bytes, ' ');
    QString wide;
    for (qsizetype at = 0; at < narrow.size(); ++at) {
        const qsizetype start = at;
        while (at < narrow.size() && IsHalfWidthKana(narrow[at]))
            ++at;
        wide += WideKana(QStringView(narrow).sliced(start, at - start));
        if (at == narrow.size())
            break;
        const QChar c = narrow[at];
        if (c == ' ')
            wide += QChar(0x3000);
        else if (c > u' ' && c <= u'~')
            wide += QChar(c.unicode() - u'!' + 0xFF01);
        else
            wide += c;
    }
    return wide.left(bytes / 2);
}
