#include "output/AnswerRecord.h"

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

    void PutText(QStringView text, int length)
    {
        const QStringView member = text.left(length);
        const bool isAscii
            = std::all_of(member.begin(), member.end(), [](QChar c) { return c < u'\x80'; });
        if (isAscii) {
            Put(member, length);
        } else {
            const QByteArray bytes = ToShiftJis(member, &m_isComplete);
            Put(QByteArrayView(bytes).first(std::min<qsizetype>(bytes.size(), length)), length);
        }
    }

    /// "YYMMDD" of a stored-form date; zeros for one with fewer than two characters.
    void PutDate(QStringView stored)
    {
        constexpr int Century = 2;
        constexpr int Length = 6;
        if (Trimmed(stored.left(Century + Length)).size() < Century)
            Put(QByteArrayView("000000"), Length);
        else
            PutText(stored.mid(Century), Length);
    }

    void PutNumber(const Decimal &number, const QString &spec)
    {
        const QString digits = ZeroFillBySpec(number, spec);
        Put(QStringView(digits), int(digits.size()));
    }

    /// True while every character has been one of Shift-JIS.
    bool IsComplete() const { return m_isComplete; }

private:
    /// Left-aligned in blanks.
    template <typename Characters>
    void Put(Characters characters, int length)
    {
        char *const end = m_at + length;
        for (const auto c : characters)
            *m_at++ = ByteOf(c);
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

bool PackAnswerRecord(const AnswerRecord &record, AnswerBuffer &buffer)
{
    static const QString quantity = DigitSpec::Quantity;
    static const QString recordNumber = DigitSpec::RecordNumber;
    FieldWriter writer(buffer);
    writer.PutNumber(record.recordNumber, recordNumber);
    writer.PutText(record.infoKind, 4);
    writer.PutDate(record.processingDate);
    writer.PutText(record.vanCode, 12);
    writer.PutText(record.customerSideCode, 12);
    writer.PutText(record.customerSectionCode, 8);
    writer.PutText(record.orderNo, 23);
    writer.PutText(record.makerNo, 19);
    writer.PutText(record.answerKind, 1);
    writer.PutText(record.deliveryKind, 1);
    writer.PutText(record.unit, 3);
    writer.PutNumber(record.orderQuantity, quantity);
    writer.PutText(record.buyer, 7);
    writer.PutText(record.customerProductCode, 25);
    writer.PutText(record.ownProductCode, 25);
    for (const AnswerSlot &slot : record.lines) {
        writer.PutDate(slot.specifiedDate);
        writer.PutText(slot.deliveryNo, 8);
        writer.PutDate(slot.answeredDate);
        writer.PutNumber(slot.quantity, quantity);
        writer.PutText(slot.mark, 1);
    }
    writer.PutText(record.reserve1, 30);
    writer.PutText(record.customerSectionName, 20);
    writer.PutText(record.reserve2, 14);
    writer.PutText(record.reserve3, 60);
    writer.PutText(record.reserve4, 40);
    return writer.IsComplete();
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
