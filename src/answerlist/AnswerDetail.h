#pragma once

#include "answerlist/DeliveryLine.h"
#include "data/ProgramState.h"

#include <QString>
#include <optional>

class AnswerList;

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

/// Reads the line; nothing when it is not there or the query failed (its error has been shown).
std::optional<DetailTexts> ReadDetail(bDAO &db, const LineKey &key);

/// A quantity as the dialog shows it.
QString ShownQuantity(const Decimal &quantity);

/// What the operator entered.
struct DetailEntry
{
    QString answeredDate; ///< stored form, or empty
    Decimal quantity;
    QString remarks;
};

QString BuildDetailUpdateSql(const LineKey &key, const DetailEntry &entry,
                             const std::optional<LineAnswer> &dates, const WriteStamp &stamp);

/// Saves the entry in a transaction of its own. False, with the line as it was and the reason
/// shown, when the line is not there any more or the database refuses.
bool SaveDetail(bDAO &db, const LineKey &key, const DetailEntry &entry);

/// Puts a saved answer into its row, which then counts as unchanged.
void ShowSavedDetail(AnswerList &list, int row, const DetailLine &saved);
