#include "answerlist/AnswerHistory.h"

#include "data/Tables.h"
#include "data/bDAO.h"
#include "util/VbText.h"
#include "util/bDate.h"
#include "util/bValue.h"

namespace {

QString HistorySql(const char *select, const LineKey &key)
{
    return select
           + QString(" UpdDate, UpdTime, UserName, MachineName, AnsLimDate, AnsVal, AnsKBN,"
                     " RecNo, RecPath FROM %1 WHERE AccNo = %2 AND AccSubNo = %3 AND ShpSubNo = %4"
                     " ORDER BY AnsNo DESC;")
                 .arg(HistoryTable)
                 .arg(key.accNo)
                 .arg(key.accSubNo)
                 .arg(key.shpSubNo);
}

QString KindName(const QString &kind)
{
    if (kind == "1")
        return kind + " 新規";
    return kind == "2" ? kind + " 変更" : kind;
}

/// The row of that statement.
PastAnswer AnswerOf(const Record &row)
{
    int field = 0;
    const auto next = [&] { return RTrim(row.Text(field++)); };
    PastAnswer answer;
    answer.when = ShownDate(next());
    if (const QString time = next(); !time.isEmpty())
        answer.when += ' ' + time.left(2) + ':' + time.mid(2, 2);
    answer.who = next();
    answer.who += "（" + next() + "）";
    answer.date = ShownDate(next());
    answer.quantity = FormatQuantity(Decimal::FromDouble(row.Number(field++)));
    answer.kind = KindName(next());
    const QString number = next();
    const QString path = next();
    if (!path.isEmpty())
        answer.record = "レコード番号 " + number + "　" + path;
    return answer;
}

} // namespace

std::vector<PastAnswer> ReadHistory(bDAO &db, const LineKey &key)
{
    std::vector<PastAnswer> answers;
    if (const auto rows = db.OpenRS(HistorySql("SELECT", key)))
        for (int row = 0; row < rows->RecordCount(); ++row)
            answers.push_back(AnswerOf(rows->At(row)));
    return answers;
}

QString LastAnswerTip(bDAO &db, const LineKey &key)
{
    const auto rows = db.TryOpenRS(HistorySql("SELECT TOP 1", key));
    if (db.IsEOF(rows.get()))
        return {};
    const PastAnswer answer = AnswerOf(rows->At(0));
    return QString("%1　%2が回答\n回答納期 %3　回答数量 %4")
        .arg(answer.when, answer.who, answer.date, Trim(answer.quantity));
}
