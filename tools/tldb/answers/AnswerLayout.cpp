#include "tldb/answers/AnswerLayout.h"

namespace {

using enum AnswerFieldKind;

constexpr AnswerFieldLayout RecordFields[] = {
    {"recordNumber", 1, 5, Counter},
    {"informationKind", 6, 4, InformationKind},
    {"processingDate", 10, 6, Date},
    {"vanCode", 16, 12, Text},
    {"customerSideCode", 28, 12, Text},
    {"customerSectionCode", 40, 8, Text},
    {"orderNumber", 48, 23, Text},
    {"makerNumber", 71, 19, Text},
    {"answerKind", 90, 1, AnswerKind},
    {"deliveryKind", 91, 1, Text},
    {"unit", 92, 3, Text},
    {"orderQuantity", 95, 12, Quantity},
    {"buyerInCharge", 107, 7, Text},
    {"customerProductCode", 114, 25, Text},
    {"ownProductCode", 139, 25, Text},
    {"reserve1", 1187, 30, Text},
    {"customerSectionName", 1217, 20, Text},
    {"reserve2", 1237, 14, Text},
    {"reserve3", 1251, 60, Text},
    {"reserve4", 1311, 40, Text},
};

constexpr AnswerFieldLayout SlotFields[] = {
    {"specifiedDate", 1, 6, DateOrBlank},  {"deliveryNumber", 7, 8, Text},
    {"answeredDate", 15, 6, AnsweredDate}, {"answeredQuantity", 21, 12, Quantity},
    {"answerMark", 33, 1, AnswerMark},
};

} // namespace

std::span<const AnswerFieldLayout> AnswerFields()
{
    return RecordFields;
}

std::span<const AnswerFieldLayout> AnswerSlotFields()
{
    return SlotFields;
}
