#pragma once

#include "lines/LineKey.h"

#include <QString>
#include <vector>

class bDAO;

/// An answer that a line has been given, as the history keeps it: texts ready to show.
struct PastAnswer
{
    QString when; ///< "YY/MM/DD HH:MM"
    QString who;  ///< user and machine
    QString date;
    QString quantity;
    QString kind;
    QString record; ///< where it is: number and file; empty: none was written
};

/// The answers of a line, the latest first; none after an error, which has been shown. The database
/// must have the history's table.
std::vector<PastAnswer> ReadHistory(bDAO &db, const LineKey &key);

/// What a tooltip tells of a line's last answer; empty when there is none, or it can't be read.
QString LastAnswerTip(bDAO &db, const LineKey &key);
