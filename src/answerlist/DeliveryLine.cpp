#include "answerlist/DeliveryLine.h"

#include "data/ProgramState.h"
#include "data/Tables.h"
#include "data/bDAO.h"
#include "util/VbText.h"
#include "util/bDate.h"

#include <QHash>
#include <QStringList>
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

QString BuildUpdateSql(const LineKey &key, const LineAnswer &answer, const WriteStamp &stamp)
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

QString BuildInsertSql(const Recordset &source, int shpSubNo, const QString &payKeyNo,
                       const LineAnswer &answer, const WriteStamp &stamp)
{
    const int payKeySubNp = int(source.Number(source.FieldIndex(u"PayKeySubNp")));
    const QHash<QString, QString> anew = {
        {"ShpSubNo", QString::number(shpSubNo)},
        {"PayKeyNo", payKeyNo},
        {"PayKeySubNp", QString::number(payKeySubNp > 0 ? payKeySubNp + 1 : payKeySubNp)},
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
        const QString text = value == anew.cend() ? source.Text(field) : *value;
        if (column->IsText())
            values += Quoted(text);
        else
            values += text.isEmpty() ? QString("0") : text;
    }
    return "INSERT INTO TLSP0010 VALUES (" + values.join(',') + ");";
}

std::optional<QString> ShipDate(bDAO &db, const QString &answeredDate, const QString &customer,
                                const QString &destination)
{
    const QString answered = StoredDate(answeredDate);
    const auto rows = db.OpenRS(QString("SELECT PAYNEEDDAYS FROM TLMT0040,TLMT0050 WHERE ")
                                + "TLMT0040.CUSTCD = " + Quoted(customer) + " AND "
                                + "TLMT0050.CUSTCOCD = LEFT$(TLMT0040.VANCD,6) AND "
                                + "TLMT0050.PAYDSTCD = " + Quoted(destination) + " AND "
                                + "TLMT0040.DPOFLG = 0 AND " + "TLMT0050.DPOFLG = 0;");
    if (!rows)
        return std::nullopt;
    if (db.IsEOF(rows.get()) || !IsValidDate(answered))
        return answered;
    return DateBefore(answered, int(db.NullToZero(*rows, u"PayNeedDays")));
}

QString NextPayKey(const QString &sourceKey, int payKeySubNp,
                   const std::vector<QString> &keysOfOrder)
{
    constexpr int NumberLength = 4;
    const QString key = RTrim(sourceKey);
    if (payKeySubNp <= 0 || key.size() < NumberLength)
        return key;
    constexpr int Numbers = 10'000;
    const QString stem = key.chopped(NumberLength);
    const int own = int(Val(QStringView(key).right(NumberLength)));
    std::set<int> taken = {own};
    for (const QString &other : keysOfOrder)
        if (RTrim(other).size() == key.size() && other.startsWith(stem))
            taken.insert(int(Val(RTrim(other).right(NumberLength))));
    int next = (*taken.rbegin() + 1) % Numbers;
    while (taken.contains(next) && int(taken.size()) < Numbers)
        next = (next + 1) % Numbers;
    return stem + QString::number(next).rightJustified(NumberLength, '0');
}
