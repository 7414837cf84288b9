#pragma once

#include <span>

/// The layout of a delivery-date answer record, the one in which the customers' files are read.
/// Positions count from 1. A file's records are all of one length: the short ones are the first
/// 1236 bytes of the long ones.

enum class AnswerFieldKind {
    Text,
    Counter,         ///< digits
    Quantity,        ///< 9 integer digits and 3 decimals, no point
    Date,            ///< YYMMDD
    DateOrBlank,     ///< YYMMDD, or 000000 for a blank date
    AnsweredDate,    ///< as DateOrBlank, or 999999 for a line answered without a date
    InformationKind, ///< "0702"
    AnswerKind,      ///< "1" first answer, "2" answered again
    AnswerMark,      ///< "1" the specified date, "2" another one, or blank
};

struct AnswerFieldLayout
{
    const char *name;
    int start;
    int length;
    AnswerFieldKind kind;
};

inline constexpr int ShortAnswerLength = 1236;
inline constexpr int LongAnswerLength = 1350;

inline constexpr int AnswerSlotCount = 31;
inline constexpr int AnswerSlotsStart = 164;
inline constexpr int AnswerSlotLength = 33;

/// The fields of a record besides its answer slots, in the order of their positions.
std::span<const AnswerFieldLayout> AnswerFields();

/// The fields of one answer slot; their positions count from the slot's first byte.
std::span<const AnswerFieldLayout> AnswerSlotFields();
