#include "answerlist/AnswerDetail.h"

#include "data/bDAO.h"
#include "messages/bMessage.h"
#include "platform/Log.h"
#include "platform/MsgBox.h"
#include "util/VbText.h"
#include "util/bDate.h"
#include "util/bTLKBN.h"
#include "util/bValue.h"

#include <utility>

namespace {

constexpr int Shipped = 3;
constexpr int AnswerOutput = 3; ///< AnsLimUmu
constexpr int Padded = 0;       ///< FormatBySpec's mode

QString Where(const LineKey &key)
{
    return "ACCNO = " + QString::number(key.accNo) + " AND "
           + "AccSubNo = " + QString::number(key.accSubNo) + " AND "
           + "ShpSubNo = " + QString::number(key.shpSubNo) + " AND " + "DPOFLG = 0;";
}

} // namespace

QString BuildDetailSql(const LineKey &key)
{
    return QString("SELECT "
                   " TLSP0010.CustCD "
                   " ,TLSP0010.CustSecCD "
                   " ,TLSP0010.CustSecName "
                   " ,TLSP0010.AccHinCD "
                   " ,TLSP0010.HinCD "
                   " ,TLSP0010.OdrNo "
                   " ,TLSP0010.MfactNo "
                   " ,TLSP0010.PayNo "
                   " ,TLSP0010.AccVal "
                   " ,TLSP0010.IndVal "
                   " ,TLSP0010.AnsVal "
                   " ,TLSP0010.LimDate "
                   " ,TLSP0010.AnsLimDate "
                   " ,TLSP0010.Biko "
                   " ,TLSP0010.ContractKBN "
                   " ,TLSP0010.ShpSts "
                   " ,TLEI0010.KobaiTanto "
                   " ,TLEI0011.F055 "
                   " ,TLEI0011.F082 "
                   " ,TLAC0010.AccTan "
                   " ,TLAC0010.TanKBN "
                   " ,TLAC0010.Unit "
                   " ,TLAC0010.F019 "
                   " ,TLAC0010.ZanVal "
                   " ,TLAC0010.AccHinName "
                   " ,TLMT0020.ReadTime "
                   " ,TLMT0040.CustName "
                   " ,TLMT0040.CustKBN "
                   " From (((((TLSP0010"
                   " Left    Join TLEI0011"
                   " On      TLSP0010.AccNo = TLEI0011.AccNo)"
                   " Left    Join TLEI0010"
                   " On      TLSP0010.AccNo = TLEI0010.AccNo)"
                   " Inner    Join TLAC0010"
                   " On      TLSP0010.AccNo = TLAC0010.AccNo)"
                   " Inner   Join TLMT0020"
                   " On      TLSP0010.AccHinCD = TLMT0020.AccHinCD)"
                   " Inner   Join TLMT0040"
                   " On      TLAC0010.CustCD = TLMT0040.CustCD)")
           + " Where TLSP0010.AccNo    = " + QString::number(key.accNo)
           + " And   TLSP0010.AccSubNo = " + QString::number(key.accSubNo)
           + " And   TLSP0010.ShpSubNo = " + QString::number(key.shpSubNo);
}

QString ShownQuantity(const Decimal &quantity)
{
    return FormatBySpec(quantity, DigitSpec::Quantity, Padded, true);
}

std::optional<DetailTexts> ReadDetail(bDAO &db, const LineKey &key, bool &isFailed)
{
    const auto rows = db.OpenRS(BuildDetailSql(key));
    isFailed = !rows;
    if (db.IsEOF(rows.get()))
        return std::nullopt;
    const auto text = [&](QStringView column) { return db.NullToRTrim(*rows, column); };
    const auto number
        = [&](QStringView column) { return Decimal::FromDouble(db.NullToZero(*rows, column)); };
    DetailTexts detail;
    detail.custCD = text(u"CustCD");
    detail.custName = text(u"CustName");
    detail.custSecCD = text(u"CustSecCD");
    detail.custSecName = text(u"CustSecName");
    detail.kobaiTanto = text(u"KobaiTanto");
    detail.accHinCD = text(u"AccHinCD");
    detail.hinCD = text(u"HinCD");
    detail.hinName = text(u"AccHinName");
    detail.accTan = FormatBySpec(number(u"AccTan"), DigitSpec::LargeQuantity, Padded, true);
    detail.tanKBN = text(u"TanKBN");
    detail.tanKBNName = InfoStateName(detail.tanKBN, 0);
    detail.unit = text(u"Unit");
    detail.readTime = FormatBySpec(number(u"ReadTime"), DigitSpec::Counter, Padded, true);
    detail.odrNo = text(u"OdrNo");
    detail.contractKBN = ContractKindName(text(u"ContractKBN"), 1);
    detail.mfactNo = text(u"MfactNo");
    detail.payNo = text(u"PayNo");
    detail.zanVal = ShownQuantity(number(u"ZanVal"));
    detail.indVal = ShownQuantity(number(u"IndVal"));
    detail.accVal = ShownQuantity(number(u"AccVal"));
    detail.limDate = ShownDate(text(u"LimDate"));
    detail.f082 = text(u"F082");
    detail.f082Name = PaymentTermsName(detail.f082);
    detail.f019 = text(u"F019");
    detail.biko = text(u"Biko");
    return detail;
}

QString BuildDetailUpdateSql(const LineKey &key, const DetailEntry &entry,
                             const std::optional<WrittenAnswer> &dates, const WriteStamp &stamp)
{
    QString sql = QString("UPDATE TLSP0010 SET ") + "Biko = '" + SqlText(entry.remarks) + "',"
                  + "AnsLimDate = '" + SqlText(entry.answeredDate) + "'," + "AnsVal = '"
                  + entry.quantity.ToText() + "',";
    if (dates)
        sql += "ShpDate = '" + SqlText(dates->shipDate) + "'," + "ArvExpDate = '"
               + SqlText(dates->arrivalDate) + "',";
    return sql + "UpdPGName = '" + ProgramId + "'," + "UpdDate = '" + stamp.date + "',"
           + "UpdTime = '" + stamp.time + "' " + "WHERE " + Where(key);
}

QString BuildDetailMarkSql(const LineKey &key, bool isSpecifiedDate)
{
    return QString("UPDATE TLSP0010 SET ") + "AnsMark = '" + (isSpecifiedDate ? "1" : "2") + "' "
           + "WHERE " + Where(key);
}

namespace {

enum class Outcome { Saved, LineMissing, NotRead, NotWritten, ChangedElsewhere };

/// Saves the entry within the transaction. `known` becomes what is stored when that is another.
Outcome WriteDetail(bDAO &db, const LineKey &key, const DetailEntry &entry, StoredDetail &known,
                    const WriteStamp &stamp)
{
    const auto stored = db.OpenRS(
        QString("SELECT * FROM TLSP0010 WHERE ") + "ACCNO = " + QString::number(key.accNo) + " AND "
            + "ACCSUBNO = " + QString::number(key.accSubNo) + " AND "
            + "SHPSUBNO = " + QString::number(key.shpSubNo) + " AND " + "DPOFLG = 0;",
        false);
    if (!stored)
        return Outcome::NotRead;
    if (db.IsEOF(stored.get()))
        return Outcome::LineMissing;
    if (db.FieldsOf(*stored, {"AnsLimDate", "AnsVal", "Biko", "AnsLimUmu", "LimDate", "ShpSts",
                              "CustCD", "PayDstCD"})
            .empty())
        return Outcome::NotRead;
    const StoredDetail now{db.NullToRTrim(*stored, u"AnsLimDate"),
                           Decimal::FromDouble(db.NullToZero(*stored, u"AnsVal")),
                           db.NullToRTrim(*stored, u"Biko"),
                           db.NullToZero(*stored, u"AnsLimUmu") == AnswerOutput};
    if (std::exchange(known, now) != now)
        return Outcome::ChangedElsewhere;
    // A shipped line keeps its dates, and an answer without a date has none to give.
    std::optional<WrittenAnswer> dates;
    if (db.NullToZero(*stored, u"ShpSts") != Shipped && !entry.answeredDate.isEmpty()) {
        const auto shipDate = ShipDate(db, entry.answeredDate, db.NullToRTrim(*stored, u"CustCD"),
                                       db.NullToRTrim(*stored, u"PayDstCD"));
        if (!shipDate)
            return Outcome::NotRead;
        dates = WrittenAnswer();
        dates->shipDate = *shipDate;
        dates->arrivalDate = entry.answeredDate;
    }
    const bool isSpecifiedDate
        = ShownDate(entry.answeredDate) == ShownDate(db.NullToRTrim(*stored, u"LimDate"));
    return db.DBExecute(BuildDetailUpdateSql(key, entry, dates, stamp))
                   && db.DBExecute(BuildDetailMarkSql(key, isSpecifiedDate))
               ? Outcome::Saved
               : Outcome::NotWritten;
}

Outcome TrySave(bDAO &db, const LineKey &key, const DetailEntry &entry, StoredDetail &known,
                const WriteStamp &stamp)
{
    if (!db.BeginTrans())
        return Outcome::NotWritten;
    Outcome outcome = WriteDetail(db, key, entry, known, stamp);
    if (outcome == Outcome::Saved && !db.CommitTrans())
        outcome = Outcome::NotWritten;
    if (outcome != Outcome::Saved)
        db.Rollback();
    return outcome;
}

bool MayOverwrite()
{
    return MsgBox("ほかの人がこの明細を変更しています。上書きしますか",
                  BoxStyle::Question + BoxStyle::YesNo + BoxStyle::DefaultButton2, "確認")
           == BoxButton::Yes;
}

} // namespace

bool SaveDetail(bDAO &db, const LineKey &key, const DetailEntry &entry, StoredDetail known)
{
    const WriteStamp stamp = WriteStamp::Now();
    Outcome outcome;
    do
        outcome = TrySave(db, key, entry, known, stamp);
    while (outcome == Outcome::ChangedElsewhere && MayOverwrite());
    if (outcome == Outcome::Saved)
        qCInfo(LogAnswer).noquote() << "詳細で登録 " + key.ToText();
    else if (outcome == Outcome::LineMissing)
        ShowMessage(Message::NoData);
    else if (outcome == Outcome::NotWritten)
        ShowMessage(Message::NotRegistered);
    return outcome == Outcome::Saved;
}
