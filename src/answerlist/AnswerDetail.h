#pragma once

#include "data/ProgramState.h"
#include "lines/LineSql.h"

#include <QString>
#include <optional>

/// What the detail dialog shows and saves of one delivery line, apart from its window.

/// The texts of the dialog's boxes, ready to show.
struct DetailTexts
{
    QString custCD, custName, custSecCD, custSecName, kobaiTanto;
    QString accHinCD, hinCD, hinName, accTan, tanKBN, tanKBNName, unit, readTime;
    QString odrNo, contractKBN, mfactNo, payNo;
    QString zanVal, indVal, accVal, limDate;
    QString f082, f082Name, f019, biko;
};

/// The joined query for the line.
QString BuildDetailSql(const LineKey &key);

/// Reads the line; nothing when it is not there, or when `isFailed`: then the query's error has
/// been shown.
std::optional<DetailTexts> ReadDetail(bDAO &db, const LineKey &key, bool &isFailed);

/// A quantity as the dialog shows it.
QString ShownQuantity(const Decimal &quantity);

/// What the operator entered.
struct DetailEntry
{
    QString answeredDate; ///< stored form, or empty
    Decimal quantity;
    QString remarks;
};

/// What the database has of what an entry overwrites.
struct StoredDetail
{
    QString answeredDate; ///< stored form, or whatever stands in its place; right-trimmed
    Decimal quantity;
    QString remarks;         ///< right-trimmed
    bool isAnswered = false; ///< the answer has been output

    bool operator==(const StoredDetail &) const = default;
};

QString BuildDetailUpdateSql(const LineKey &key, const DetailEntry &entry,
                             const std::optional<WrittenAnswer> &dates, const WriteStamp &stamp);

/// The statement that follows it: the mark that tells a date other than the specified one.
QString BuildDetailMarkSql(const LineKey &key, bool isSpecifiedDate);

/// Reads the line and saves the entry in one transaction. When the line is not stored as `known`
/// any more, the operator is asked first whether it is to be overwritten. False, with the line as
/// it was and the reason shown, when he says No, the line is gone or the database refuses.
bool SaveDetail(bDAO &db, const LineKey &key, const DetailEntry &entry, StoredDetail known);
