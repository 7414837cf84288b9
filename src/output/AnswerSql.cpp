#include "output/AnswerSql.h"

#include "data/ProgramState.h"
#include "data/Tables.h"
#include "data/bDAO.h"
#include "util/VbText.h"

#include <QStringList>

namespace {

/// Customers of answer rule 1 answer every line with a quantity, those of rule 2 only lines that
/// have a date too.
constexpr auto AnswerableRule = " ( ( TLMT0040.LinKBN = 1 AND TLSP0010.AnsVal <> 0 ) OR "
                                " ( TLMT0040.LinKBN = 2 AND TLSP0010.AnsLimDate <> '"
                                "' AND TLSP0010.AnsVal <> 0 ) ) AND ";

} // namespace

QString BuildAnswerSelectSql(qint64 accNo, bool isEdi)
{
    const auto onlyEdi = [isEdi](const char *piece) { return QString(isEdi ? piece : ""); };
    return QString("SELECT ") + " TLSP0010.CustCD " + ",TLSP0010.CustSecCD " + ",TLSP0010.OdrNo "
           + ",TLSP0010.MfactNo " + ",TLSP0010.Unit " + ",TLSP0010.AccVal " + ",TLSP0010.HinCD "
           + ",TLSP0010.AccHinCD " + ",TLSP0010.LimDate " + ",TLSP0010.PayNo "
           + ",TLSP0010.AnsLimDate " + ",TLSP0010.AnsVal " + ",TLSP0010.AnsMark "
           + ",TLSP0010.CustSecName " + ",TLSP0010.AnsLimUmu " + ",TLSP0010.PayKeyNo "
           + ",TLMT0040.CustKBN " + onlyEdi(",TLEI0010.CockKBN ,TLEI0010.KobaiTanto ")
           + ",TLMT0040.VanCD " + ",TLMT0040.NokiInfPath " + ",TLMT0040.NokiInfKBN "
           + ",TLMT0040.HenpVerPath " + " FROM TLSP0010,TLMT0040 " + onlyEdi(" ,TLEI0010 ")
           + "WHERE " + " TLSP0010.AccNo = " + QString::number(accNo) + " AND "
           + onlyEdi(" TLSP0010.AccNo = TLEI0010.AccNo AND ")
           + " TLSP0010.CustCD = TLMT0040.CustCD AND " + " TLSP0010.ShpSts < 3  AND "
           + AnswerableRule + " TLSP0010.DpoFlg = 0 AND " + onlyEdi(" TLEI0010.DpoFlg = 0 AND ")
           + " TLMT0040.DpoFlg = 0 " + " ORDER BY " + " TLSP0010.AccSubNo ASC"
           + ",TLSP0010.IndVal DESC" + ",TLSP0010.AnsLimDate ASC" + ";";
}

QString BuildMarkAnsweredSql(qint64 accNo, const WriteStamp &stamp)
{
    return QString("UPDATE TLSP0010 ") + " INNER JOIN TLMT0040 ON "
           + " TLSP0010.CustCD = TLMT0040.CustCD " + " SET " + " TLSP0010.AnsLimUmu = 3 "
           + ",TLSP0010.UpdPGName = '" + SqlText(ProgramId) + "'" + ",TLSP0010.UpdDate = '"
           + stamp.date + "'" + ",TLSP0010.UpdTime = '" + stamp.time + "' " + " WHERE "
           + " TLSP0010.AccNo = " + QString::number(accNo) + " AND " + " TLSP0010.ShpSts = 1 AND "
           + AnswerableRule + " TLSP0010.DpoFlg = 0 AND TLMT0040.DpoFlg = 0 " + ";";
}

QString BuildHistorySql(qint64 accNo, const AnswerTrace &trace, const WriteStamp &stamp)
{
    const auto fitted = [](const char *column, const QString &text) {
        return SqlQuoted(RTrim(text.left(FindColumn(*FindTable(HistoryTable), column)->width)));
    };
    const std::pair<const char *, QString> values[] = {
        {"AccNo", "TLSP0010.AccNo"},
        {"AccSubNo", "TLSP0010.AccSubNo"},
        {"ShpSubNo", "TLSP0010.ShpSubNo"},
        {"AnsNo", "(SELECT COALESCE(MAX(H.AnsNo), 0) + 1 FROM TLAH0010 H"
                  " WHERE H.AccNo = TLSP0010.AccNo AND H.AccSubNo = TLSP0010.AccSubNo"
                  " AND H.ShpSubNo = TLSP0010.ShpSubNo)"},
        {"CustCD", "RTRIM(TLSP0010.CustCD)"},
        {"OdrNo", "RTRIM(TLSP0010.OdrNo)"},
        {"PayNo", "RTRIM(TLSP0010.PayNo)"},
        {"LimDate", "RTRIM(TLSP0010.LimDate)"},
        {"AnsLimDate", "RTRIM(TLSP0010.AnsLimDate)"},
        {"AnsVal", "TLSP0010.AnsVal"},
        {"AnsMark", "RTRIM(TLSP0010.AnsMark)"},
        {"AnsKBN", fitted("AnsKBN", trace.answerKind)},
        {"RecNo", fitted("RecNo", trace.recordNumber)},
        {"RecPath", fitted("RecPath", trace.path)},
        {"UserName", fitted("UserName", trace.userName)},
        {"MachineName", fitted("MachineName", trace.machineName)},
        {"DpoFlg", "0"},
        {"UpdPGName", SqlQuoted(ProgramId)},
        {"UpdDate", SqlQuoted(stamp.date)},
        {"UpdTime", SqlQuoted(stamp.time)},
    };
    QStringList columns;
    QStringList sources;
    for (const auto &[column, source] : values) {
        columns += column;
        sources += source;
    }
    return QString("INSERT INTO %1 (%2) SELECT %3 FROM TLSP0010, TLMT0040 WHERE TLSP0010.AccNo = %4"
                   " AND TLSP0010.CustCD = TLMT0040.CustCD AND TLSP0010.ShpSts < 3 AND")
               .arg(HistoryTable, columns.join(", "), sources.join(", "), QString::number(accNo))
           + AnswerableRule + "TLSP0010.DpoFlg = 0 AND TLMT0040.DpoFlg = 0;";
}
