#include "lines/LineSql.h"

#include "data/ProgramState.h"
#include "data/Tables.h"
#include "data/bDAO.h"
#include "util/VbText.h"
#include "util/bDate.h"

#include <QHash>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <set>

namespace {

QString Quoted(const QString &text)
{
    return '\'' + SqlText(text) + '\'';
}

} // namespace

WriteStamp WriteStamp::Now()
{
    return {StoredDate(NowDateText()), NowTimeText().remove(':')};
}

QString BuildLineSql(const LineKey &key)
{
    return QString("SELECT * FROM TLSP0010 WHERE ") + "ACCNO = " + QString::number(key.accNo)
           + " AND " + "ACCSUBNO = " + QString::number(key.accSubNo) + " AND "
           + "SHPSUBNO = " + QString::number(key.shpSubNo) + " AND " + "DPOFLG = 0 " + ";";
}

QString BuildUpdateSql(const LineKey &key, const WrittenAnswer &answer, const WriteStamp &stamp)
{
    return QString("UPDATE TLSP0010 SET ") + "AnsLimDate = " + Quoted(answer.answeredDate) + ","
           + "ShpDate = " + Quoted(answer.shipDate) + "," + "ArvExpDate = "
           + Quoted(answer.arrivalDate) + "," + "AnsVal = " + answer.quantity.ToText() + ","
           + "AnsMark = " + Quoted(answer.mark) + "," + "UpdPGName = " + Quoted(ProgramId) + ","
           + "UpdDate = " + Quoted(stamp.date) + "," + "UpdTime = " + Quoted(stamp.time) + " "
           + "WHERE " + "ACCNO = " + QString::number(key.accNo) + " AND "
           + "AccSubNo = " + QString::number(key.accSubNo) + " AND "
           + "ShpSubNo = " + QString::number(key.shpSubNo) + " AND " + "DPOFLG = 0;";
}

std::optional<QString> BuildInsertSql(const Recordset &source, const SplitKey &key,
                                      const WrittenAnswer &answer, const WriteStamp &stamp)
{
    const QHash<QString, QString> anew = {
        {"ShpSubNo", QString::number(key.shpSubNo)},
        {"PayKeyNo", key.payKeyNo},
        {"PayKeySubNp", QString::number(key.payKeySubNp)},
        {"IndVal", "0"},
        {"AnsVal", answer.quantity.ToText()},
        {"ShpVal", "0"},
        {"AnsLimDate", answer.answeredDate},
        {"AnsMark", answer.mark},
        {"AnsLimUmu", "0"},
        {"ShpSts", "1"},
        {"ShpDate", answer.shipDate},
        {"ArvExpDate", answer.arrivalDate},
        {"UpdPGName", ProgramId},
        {"UpdDate", stamp.date},
        {"UpdTime", stamp.time},
    };
    QStringList values;
    for (int field = 0; field < source.FieldCount(); ++field) {
        const ColumnDefinition *column
            = FindColumn(*FindTable("TLSP0010"), source.FieldName(field));
        if (!column) {
            values += source.SqlLiteral(field);
            continue;
        }
        const auto value = anew.constFind(column->name);
        const auto literal
            = SqlLiteralOf(*column, value == anew.cend() ? source.Text(field) : *value);
        if (!literal)
            return std::nullopt;
        values += *literal;
    }
    return "INSERT INTO TLSP0010 VALUES (" + values.join(',') + ");";
}

std::optional<QString> ShipDate(bDAO &db, const QString &answeredDate, const QString &customer,
                                const QString &destination)
{
    const auto rows = db.OpenRS(QString("SELECT PAYNEEDDAYS FROM TLMT0040,TLMT0050 WHERE ")
                                + "TLMT0040.CUSTCD = " + Quoted(customer) + " AND "
                                + "TLMT0050.CUSTCOCD = LEFT$(TLMT0040.VANCD,6) AND "
                                + "TLMT0050.PAYDSTCD = " + Quoted(destination) + " AND "
                                + "TLMT0040.DPOFLG = 0 AND " + "TLMT0050.DPOFLG = 0;");
    if (!rows)
        return std::nullopt;
    if (db.IsEOF(rows.get()))
        return answeredDate;
    constexpr double MostDays = 1'000'000; // more lead out of the calendar anyway
    const double days = db.NullToZero(*rows, u"PayNeedDays");
    const QString shipDate
        = std::abs(days) < MostDays ? DateBefore(answeredDate, int(days)) : QString();
    return IsValidDate(shipDate) ? shipDate : answeredDate;
}

QString NextPayKey(const QString &sourceKey, int payKeySubNp,
                   const std::vector<QString> &keysOfOrder)
{
    constexpr int NumberLength = 4;
    constexpr int Numbers = 10'000;
    const QString key = RTrim(sourceKey);
    if (payKeySubNp <= 0 || key.size() < NumberLength)
        return key;
    const auto numberOf = [](const QString &of) {
        return std::max(0, int(Val(QStringView(of).right(NumberLength))));
    };
    const QString stem = key.chopped(NumberLength);
    std::set<int> taken = {numberOf(key)};
    for (const QString &other : keysOfOrder)
        if (RTrim(other).size() == key.size() && other.startsWith(stem))
            taken.insert(numberOf(RTrim(other)));
    int next = (*taken.rbegin() + 1) % Numbers;
    while (taken.contains(next) && int(taken.size()) < Numbers)
        next = (next + 1) % Numbers;
    return stem + QString::number(next).rightJustified(NumberLength, '0');
}
