#pragma once

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

/// A line's key.
struct LineKey
{
    qint64 accNo = 0;
    int accSubNo = 0;
    int shpSubNo = 0;
};

/// What an answer writes to its line. Dates are in stored form.
struct LineAnswer
{
    QString answeredDate;
    QString shipDate;
    QString arrivalDate;
    Decimal quantity;
    QString mark; ///< "1": the date is the specified one, "2": it differs
};

/// "ACCNO = n AND ACCSUBNO = n AND SHPSUBNO = n AND DPOFLG = 0": the query for the stored line.
QString BuildLineSql(const LineKey &key);

QString BuildUpdateSql(const LineKey &key, const LineAnswer &answer, const WriteStamp &stamp);

/// The statement that stores a split line: every column of the table in the file's own order.
/// `source` is at the line that it was split from, with all its columns; they are taken over, those
/// that only other programs know among them, except those of the answer, the stamps, the shipment
/// sub-number, the pay key and the state of a new, open line.
QString BuildInsertSql(const Recordset &source, int shpSubNo, const QString &payKeyNo,
                       const LineAnswer &answer, const WriteStamp &stamp);

/// The day to ship for an answered date (shown or typed form): less the transport days of the
/// destination, or the date itself when there are none on record. Stored form; empty for no date;
/// nothing after a database error, which has been shown.
std::optional<QString> ShipDate(bDAO &db, const QString &answeredDate, const QString &customer,
                                const QString &destination);

/// The pay key of a split: that of its source, whose last four characters are a number from the
/// first split on (`payKeySubNp` above 0), with the next number that no line of the order has.
QString NextPayKey(const QString &sourceKey, int payKeySubNp,
                   const std::vector<QString> &keysOfOrder);
