#include "output/AnswerRecord.h"

#include "platform/ShiftJis.h"
#include "util/VbText.h"
#include "util/bDate.h"
#include "util/bValue.h"

#include <algorithm>
#include <functional>

namespace {

/// One field: how long it is in the record, and the text that is packed into it.
struct Field
{
    int length; ///< bytes
    std::function<QString(const AnswerRecord &)> text;
};

struct SlotField
{
    int length;
    std::function<QString(const AnswerSlot &)> text;
};

/// The text in its member of the structure, which holds so many characters.
QString Member(const QString &text, int characters)
{
    return FixedText(text, characters);
}

/// A date field: "YYMMDD", zeros for an empty date.
QString DateField(const QString &stored)
{
    return ("000000" + DropCentury(FixedText(stored, 8))).right(6);
}

const Field HeadFields[] = {
    {5, [](const auto &r) { return ZeroFillBySpec(r.recordNumber, DigitSpec::RecordNumber); }},
    {4, [](const auto &r) { return Member(r.infoKind, 4); }},
    {6, [](const auto &r) { return DateField(r.processingDate); }},
    {12, [](const auto &r) { return Member(r.vanCode, 12); }},
    {12, [](const auto &r) { return Member(r.customerSideCode, 12); }},
    {8, [](const auto &r) { return Member(r.customerSectionCode, 8); }},
    {23, [](const auto &r) { return Member(r.orderNo, 23); }},
    {19, [](const auto &r) { return Member(r.makerNo, 19); }},
    {1, [](const auto &r) { return Member(r.answerKind, 1); }},
    {1, [](const auto &r) { return Member(r.deliveryKind, 1); }},
    {3, [](const auto &r) { return Member(r.unit, 3); }},
    {12, [](const auto &r) { return ZeroFillBySpec(r.orderQuantity, DigitSpec::Quantity); }},
    {7, [](const auto &r) { return Member(r.buyer, 7); }},
    {25, [](const auto &r) { return Member(r.customerProductCode, 25); }},
    {25, [](const auto &r) { return Member(r.ownProductCode, 25); }},
};

const SlotField SlotFields[] = {
    {6, [](const auto &s) { return DateField(s.specifiedDate); }},
    {8, [](const auto &s) { return Member(s.deliveryNo, 8); }},
    {6, [](const auto &s) { return DateField(s.answeredDate); }},
    {12, [](const auto &s) { return ZeroFillBySpec(s.quantity, DigitSpec::Quantity); }},
    {1, [](const auto &s) { return Member(s.mark, 1); }},
};

const Field TailFields[] = {
    {30, [](const auto &r) { return Member(r.reserve1, 30); }},
    {20, [](const auto &r) { return Member(r.customerSectionName, 20); }},
    {14, [](const auto &r) { return Member(r.reserve2, 14); }},
    {60, [](const auto &r) { return Member(r.reserve3, 60); }},
    {40, [](const auto &r) { return Member(r.reserve4, 40); }},
};

/// Writes fields one after the other.
class FieldWriter
{
public:
    explicit FieldWriter(AnswerBuffer &buffer)
        : m_at(buffer.data())
    {
    }

    void PutFieldBytes(const QString &text, int length)
    {
        std::fill_n(m_at, length, ' ');
        const QByteArray bytes = ToShiftJis(text);
        std::copy_n(bytes.data(), std::min<qsizetype>(length, bytes.size()), m_at);
        m_at += length;
    }

private:
    char *m_at;
};

} // namespace

void ClearAnswerRecord(AnswerRecord &record)
{
    record = AnswerRecord();
}

void PackAnswerRecord(const AnswerRecord &record, AnswerBuffer &buffer)
{
    FieldWriter writer(buffer);
    for (const Field &field : HeadFields)
        writer.PutFieldBytes(field.text(record), field.length);
    for (const AnswerSlot &slot : record.lines)
        for (const SlotField &field : SlotFields)
            writer.PutFieldBytes(field.text(slot), field.length);
    for (const Field &field : TailFields)
        writer.PutFieldBytes(field.text(record), field.length);
}

QString ToWideText(const QString &text, int bytes)
{
    QString wide = QString(text).replace('\\', "￥") + QString(bytes, ' ');
    for (QChar &c : wide) {
        if (c == ' ')
            c = QChar(0x3000);
        else if (c > u' ' && c <= u'~')
            c = QChar(c.unicode() - u'!' + 0xFF01);
    }
    return wide.left(bytes / 2);
}
