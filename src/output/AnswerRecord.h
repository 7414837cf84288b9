#pragma once

#include "util/Decimal.h"

#include <QByteArray>
#include <QString>
#include <array>

/// The delivery-date answer of one order, and its fixed-width Shift-JIS record.

struct RecordLayout;

inline constexpr int AnswerSlotCount = 31;
inline constexpr int LongRecordLength = 1350;
inline constexpr int ShortRecordLength = 1236; ///< all up to the customer section name

struct AnswerSlot
{
    QString specifiedDate; ///< stored form
    QString deliveryNo;
    QString answeredDate; ///< stored form; "99999999": no date
    Decimal quantity;
    QString mark;
};

/// The values before packing. A text longer than its field's member is cut when packed.
struct AnswerRecord
{
    Decimal recordNumber;
    QString infoKind;
    QString processingDate; ///< stored form
    QString vanCode;
    QString customerSideCode;
    QString customerSectionCode;
    QString orderNo;
    QString makerNo;
    QString answerKind;
    QString deliveryKind;
    QString unit;
    Decimal orderQuantity;
    QString buyer;
    QString customerProductCode;
    QString ownProductCode;
    std::array<AnswerSlot, AnswerSlotCount> lines;
    QString reserve1;
    QString customerSectionName;
    QString reserve2;
    QString reserve3;
    QString reserve4;
};

/// Empties every text and sets every number to 0.
void ClearAnswerRecord(AnswerRecord &record);

using AnswerBuffer = std::array<char, LongRecordLength>;

/// Writes the record's bytes by a layout; the short one's are the first of the long one's. A
/// character that Shift-JIS has in another form is put into that, one that it does not have becomes
/// "?", a NUL becomes a blank. A double-byte character that does not fit at the end of its field
/// keeps only its lead byte there. False when a "?" was written.
bool PackAnswerRecord(const AnswerRecord &record, const RecordLayout &layout, AnswerBuffer &buffer);

/// The same by the long layout.
bool PackAnswerRecord(const AnswerRecord &record, AnswerBuffer &buffer);

/// The text in full-width characters, filled with full-width blanks to this many bytes.
QString ToWideText(const QString &text, int bytes);
