#pragma once

#include "lines/LineKey.h"
#include "util/Decimal.h"

#include <QString>
#include <optional>
#include <vector>

class bDAO;
class Recordset;

/// Writing delivery lines to TLSP0010.

/// When a row was written: dates and times of one run.
struct WriteStamp
{
    QString date; ///< "YYYYMMDD"
    QString time; ///< "HHMMSS"

    static WriteStamp Now();
};

/// What an answer writes to its line. Dates are in stored form.
struct WrittenAnswer
{
    QString answeredDate;
    QString shipDate;
    QString arrivalDate;
    Decimal quantity;
    QString mark; ///< "1": the date is the specified one, "2": it differs
};

/// "ACCNO = n AND ACCSUBNO = n AND SHPSUBNO = n AND DPOFLG = 0": the query for the stored line.
QString BuildLineSql(const LineKey &key);

QString BuildUpdateSql(const LineKey &key, const WrittenAnswer &answer, const WriteStamp &stamp);

/// What a split has of its own, besides its answer.
struct SplitKey
{
    int shpSubNo;
    QString payKeyNo;
    int payKeySubNp;
};

/// The statement that stores a split: every column of the table in the file's own order. `source`
/// is at the line that it was split from, with all its columns; they are taken over, those that
/// only other programs know among them, except those of the answer, the stamps, the split's key and
/// the state of a new, open line. Nothing when a number column of the source holds no number.
std::optional<QString> BuildInsertSql(const Recordset &source, const SplitKey &key,
                                      const WrittenAnswer &answer, const WriteStamp &stamp);

/// The day to ship for an answered date (stored form): less the transport days of the destination.
/// The date itself when there are none on record, when it is no date, or when the days lead to no
/// date. Nothing after a database error, which bDAO shows.
std::optional<QString> ShipDate(bDAO &db, const QString &answeredDate, const QString &customer,
                                const QString &destination);

/// The pay key of a split: that of its source, whose last four characters are a number from the
/// first split on (`payKeySubNp` above 0), with the next number that no line of the order has.
QString NextPayKey(const QString &sourceKey, int payKeySubNp,
                   const std::vector<QString> &keysOfOrder);
