#include "output/Desks.h"

#include <map>

namespace {

class SharingTest : public AnswerRun
{
};

} // namespace

TEST_F(SharingTest, OrdersThatChangeUnderTheOperator)
{
    // The status text at which it happens: before the question, after it, and after the
    // registration.
    const QString loaded = "回答数が 0でないかチェックしています…";
    const QString agreed = RegistrationText;
    const QString registered = "納期回答情報を作成しています…";

    // What the other program does to the second order of three.
    const QString remove = "DELETE FROM TLSP0010 WHERE AccNo = 2";
    const QString ship = "UPDATE TLSP0010 SET ShpSts = 3 WHERE AccNo = 2";
    const QString mark = "UPDATE TLSP0010 SET AnsLimUmu = 3 WHERE AccNo = 2";
    const QString redate = "UPDATE TLSP0010 SET AnsLimDate = '20261209' WHERE AccNo = 2";
    const QString split
        = "INSERT INTO TLSP0010 (AccNo, AccSubNo, ShpSubNo, CustCD, OdrNo, AnsVal, AnsLimDate, "
          "ShpSts, DpoFlg) VALUES (2, 1, 2, 'C1', 'PO-2', 3, '20261209', 1, 0)";

    const std::map<QChar, QString> beginnings = {
        {'?', "このまま納期回答を"},
        {'L', "作成できませんでした\r注文№ PO-2 は、ほかの人が変更しています"},
        {'S', "納期回答作成処理が終了"},
    };
    const struct
    {
        const QString &when;
        const QString &change;
        QString boxes;  ///< by their letters
        QString orders; ///< in the answer file
        QString states;
        QString shown; ///< the second row's answer
    } cases[] = {
        {loaded, remove, "?LS", "PO-1 PO-3", "済- -- 済-", "20261205"},
        {loaded, ship, "?S", "PO-1 PO-3", "済- -済 済-", "20261202"},
        {loaded, mark, "?S", "PO-1 PO-2 PO-3", "済- 済- 済-", "20261205"},
        {agreed, redate, "LS", "PO-1 PO-3", "済- -- 済-", "20261209"},
        {agreed, mark, "LS", "PO-1 PO-3", "済- 済- 済-", "20261202"},
        {agreed, split, "LS", "PO-1 PO-3", "済- -- 済-", "20261202"},
        {registered, remove, "LS", "PO-1 PO-3", "済- -- 済-", "20261205"},
        {registered, redate, "LS", "PO-1 PO-3", "済- -- 済-", "20261209"},
        {registered, ship, "LS", "PO-1 PO-3", "済- -済 済-", "20261205"},
    };
    AddCustomer("C1");
    saysYes = true;
    for (const auto &[when, change, shownBoxes, orders, states, shown] : cases) {
        SCOPED_TRACE(when.toStdString() + change.toStdString());
        Clear();
        for (const int order : {1, 2, 3}) {
            AddOrder(order, "C1");
            AddLine(order, 1);
        }
        Load();
        SelectAll();
        for (int row = 1; row <= 3; ++row)
            list.At(row).SetDate("20261205");
        onStatus = [&](const QString &text) {
            if (text == when)
                file.Run(change);
        };
        Make();
        const auto texts = boxes.TakeTexts();
        ASSERT_EQ(texts.size(), size_t(shownBoxes.size())) << texts.front().toStdString();
        for (qsizetype at = 0; at < shownBoxes.size(); ++at)
            EXPECT_TRUE(texts[size_t(at)].startsWith(beginnings.at(shownBoxes[at])))
                << texts[size_t(at)].toStdString();
        EXPECT_EQ(texts.back().endsWith("\r\rほかの人が変更したため、1 "
                                        "件の注文を回答していません\r注文№ PO-2"),
                  shownBoxes.endsWith("LS"));
        EXPECT_EQ(Orders("C1.TXT"), orders);
        EXPECT_EQ(States(), states);
        EXPECT_EQ(list.At(2).Now().date, shown);
        const bool isOnceMore = change == mark && when == loaded;
        EXPECT_EQ(Records("C1.TXT").value(1).mid(89, 1) == "2", isOnceMore);
    }
}

TEST_F(Desks, AnswerTheSameOrders)
{
    const int wanted = qEnvironmentVariableIntValue("SHARING_ROUNDS");
    const int rounds = wanted > 0 ? wanted : 5;
    qsizetype leftOut = 0;
    for (int round = 1; round <= rounds && !HasFailure(); ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        AddOrders();
        QProcess first;
        QProcess second;
        Start(first, 2 * round, 3);
        Start(second, 2 * round + 1, 3);
        const QStringList said = SaidBy(first) + SaidBy(second);
        leftOut += said.filter("作成できませんでした").size();
        CheckOrders(said);
        if (HasFailure())
            std::printf("%s\n", said.join('\n').toUtf8().constData());
    }
    EXPECT_GT(leftOut, 0) << "the desks never met";
}
