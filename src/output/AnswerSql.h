#pragma once

#include "lines/LineSql.h"

#include <QString>

inline constexpr auto AnswerInfoKind = "0702";

/// The lines of an order that are answered, in the order of their slots. Only orders received by
/// EDI are joined to their EIAJ row.
QString BuildAnswerSelectSql(qint64 accNo, bool isEdi);

/// What the history keeps of an order's answer, besides what its lines hold.
struct AnswerTrace
{
    QString userName;
    QString machineName;
    QString answerKind;
    QString recordNumber; ///< as the record has it; empty where none was written
    QString path;         ///< of the record's file, as the customer master has it
};

/// Adds the lines of an order that are answered, as they are stored, to the history. `stamp` is the
/// date and time of the answer.
QString BuildHistorySql(qint64 accNo, const AnswerTrace &trace, const WriteStamp &stamp);

/// Marks the lines of an order answered. It takes lines in state 1 only, though the selection also
/// takes those in state 2.
QString BuildMarkAnsweredSql(qint64 accNo, const WriteStamp &stamp);
