#pragma once

#include "lines/LineSql.h"

#include <QString>

inline constexpr auto AnswerInfoKind = "0702";

/// The lines of an order that are answered, in the order of their slots. Only orders received by
/// EDI are joined to their EIAJ row.
QString BuildAnswerSelectSql(qint64 accNo, bool isEdi);

/// Marks the lines of an order answered. It takes lines in state 1 only, though the selection also
/// takes those in state 2.
QString BuildMarkAnsweredSql(qint64 accNo, const WriteStamp &stamp);
