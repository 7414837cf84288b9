// What the operator may type, a line for each condition, in the program's own statements. None of
// them fails, whatever is typed, and a prefix finds exactly the texts that begin with it.

#include "FuzzDatabase.h"
#include "Fuzzing.h"

#include "data/bDAO.h"
#include "data/dao/DaoError.h"
#include "data/dao/Dialect.h"
#include "lines/ListQuery.h"
#include "util/VbText.h"

#include <QStringList>

namespace {

SearchConditions ConditionsOf(const QStringList &lines)
{
    const auto line = [&lines](int number) { return lines.value(number); };
    SearchConditions conditions;
    conditions.customerCode = line(0);
    conditions.customerSectionCode = line(1);
    conditions.productCode = line(2);
    conditions.productName = line(3);
    conditions.orderNo = line(4);
    conditions.makerNo = line(5);
    conditions.payKeyNo = line(6);
    conditions.isProductNameLiteral = line(7).isEmpty();
    return conditions;
}

void CheckRuns(const QString &sql)
{
    try {
        FuzzDatabase().OpenRecordset(sql);
    } catch (const DaoError &error) {
        // Nothing can be changed here: an update gets no further.
        Require(error.number == DaoErrors::CannotUpdate, "the statement runs",
                error.description + '\n' + ToSqlite(sql));
    }
    // As the access layer hands a "|" on.
    const QString joined = QString(sql).replace("|", "' & Chr(124) & '");
    Require(ToSqlite(joined) == ToSqlite(sql), "a joined \"|\" is one that was typed", sql);
}

/// Whether a prefix, as the program asks for it, finds this stored text.
bool Finds(const QString &prefix, const QString &stored)
{
    return FuzzDatabase()
               .OpenRecordset("SELECT '" + SqlText(stored) + "' LIKE '" + prefix + "*'")
               ->Number(0)
           != 0;
}

/// A prefix that finds the texts that begin with `text`, and no others.
void CheckFinds(const QString &prefix, const QString &text)
{
    Require(Finds(prefix, text + "1"), "a text is found by its beginning", text);
    const QString other = (text.startsWith('x', Qt::CaseInsensitive) ? "y" : "x") + text;
    Require(RTrim(text).isEmpty() || !Finds(prefix, other), "another text is not", text);
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString input = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    if (input.contains(QChar(0)))
        return 0; // no box gives it
    const QStringList lines = input.split('\n');
    CheckRuns(BuildListSql(ConditionsOf(lines)));
    CheckRuns("UPDATE TLSP0010 INNER JOIN TLMT0040 ON TLSP0010.CustCD = TLMT0040.CustCD SET "
              "TLSP0010.Biko = '"
              + SqlText(input) + "',TLSP0010.AnsMark = '" + SqlText(lines[0])
              + "' WHERE TLSP0010.OdrNo LIKE '" + LikeText(SqlText(lines[0])) + "*' ;");

    const QString typed = lines[0];
    const bool hasWildcard = typed.contains('*') || typed.contains('?') || typed.contains('[');
    if (!hasWildcard)
        CheckFinds(LikeText(SqlText(typed)), typed);
    CheckFinds(LiteralLikeText(SqlText(typed)), typed);
    return 0;
}
