#pragma once

#include "output/AnswerRecord.h"
#include "util/bValue.h"

#include <array>
#include <span>
#include <variant>

/// The fields of an answer record in the order of its bytes, for who writes records and for who
/// reads them.

enum class FieldKind {
    Text,   ///< left-aligned in blanks
    Date,   ///< YYMMDD
    Number, ///< digits without a point, by a digit spec
};

/// A field and the member that it is packed from.
template <typename Structure>
struct RecordField
{
    const char *name; ///< as a decoded record is shown with it
    int length;       ///< in bytes
    FieldKind kind;
    std::variant<QString Structure::*, Decimal Structure::*> member;
    const char *digitSpec = nullptr; ///< of a number

    /// What a receiver understands: of a text the only values, if there are any; of a date what
    /// stands in its place. Nothing is held against these when a record is packed.
    std::array<const char *, 3> values = {};
};

inline constexpr auto BlankPackedDate = "000000";
inline constexpr auto NoPackedDate = "999999";

template <typename Structure>
constexpr int LengthOf(std::span<const RecordField<Structure>> fields)
{
    int length = 0;
    for (const RecordField<Structure> &field : fields)
        length += field.length;
    return length;
}

/// A record: fields, AnswerSlotCount times the fields of a slot, fields.
struct RecordLayout
{
    std::span<const RecordField<AnswerRecord>> head;
    std::span<const RecordField<AnswerSlot>> slot;
    std::span<const RecordField<AnswerRecord>> tail;

    constexpr int SlotsStart() const { return LengthOf(head); } ///< 0 is the record's first byte
    constexpr int SlotLength() const { return LengthOf(slot); }
    constexpr int TailStart() const { return SlotsStart() + AnswerSlotCount * SlotLength(); }
    constexpr int Length() const { return TailStart() + LengthOf(tail); }
};

namespace RecordFields {

using enum FieldKind;

inline constexpr RecordField<AnswerRecord> Head[] = {
    {"recordNumber", 5, Number, &AnswerRecord::recordNumber, DigitSpec::RecordNumber},
    {"informationKind", 4, Text, &AnswerRecord::infoKind, {}, {"0702"}},
    {"processingDate", 6, Date, &AnswerRecord::processingDate},
    {"vanCode", 12, Text, &AnswerRecord::vanCode},
    {"customerSideCode", 12, Text, &AnswerRecord::customerSideCode},
    {"customerSectionCode", 8, Text, &AnswerRecord::customerSectionCode},
    {"orderNumber", 23, Text, &AnswerRecord::orderNo},
    {"makerNumber", 19, Text, &AnswerRecord::makerNo},
    {"answerKind", 1, Text, &AnswerRecord::answerKind, {}, {"1", "2"}},
    {"deliveryKind", 1, Text, &AnswerRecord::deliveryKind},
    {"unit", 3, Text, &AnswerRecord::unit},
    {"orderQuantity", 12, Number, &AnswerRecord::orderQuantity, DigitSpec::Quantity},
    {"buyerInCharge", 7, Text, &AnswerRecord::buyer},
    {"customerProductCode", 25, Text, &AnswerRecord::customerProductCode},
    {"ownProductCode", 25, Text, &AnswerRecord::ownProductCode},
};

inline constexpr RecordField<AnswerSlot> Slot[] = {
    {"specifiedDate", 6, Date, &AnswerSlot::specifiedDate, {}, {BlankPackedDate}},
    {"deliveryNumber", 8, Text, &AnswerSlot::deliveryNo},
    {"answeredDate", 6, Date, &AnswerSlot::answeredDate, {}, {BlankPackedDate, NoPackedDate}},
    {"answeredQuantity", 12, Number, &AnswerSlot::quantity, DigitSpec::Quantity},
    {"answerMark", 1, Text, &AnswerSlot::mark, {}, {"1", "2", " "}},
};

inline constexpr RecordField<AnswerRecord> ShortTail[] = {
    {"reserve1", 30, Text, &AnswerRecord::reserve1},
    {"customerSectionName", 20, Text, &AnswerRecord::customerSectionName},
};

inline constexpr RecordField<AnswerRecord> LongTail[] = {
    ShortTail[0],
    ShortTail[1],
    {"reserve2", 14, Text, &AnswerRecord::reserve2},
    {"reserve3", 60, Text, &AnswerRecord::reserve3},
    {"reserve4", 40, Text, &AnswerRecord::reserve4},
};

} // namespace RecordFields

inline constexpr RecordLayout ShortLayout
    = {RecordFields::Head, RecordFields::Slot, RecordFields::ShortTail};
inline constexpr RecordLayout LongLayout
    = {RecordFields::Head, RecordFields::Slot, RecordFields::LongTail};

/// Every layout, told apart by their lengths.
inline constexpr const RecordLayout *RecordLayouts[] = {&ShortLayout, &LongLayout};

static_assert(ShortLayout.Length() == ShortRecordLength);
static_assert(LongLayout.Length() == LongRecordLength);
