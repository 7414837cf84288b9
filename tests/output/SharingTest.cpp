#include "output/AnswerRun.h"
#include "tldb/answers/AnswerFile.h"

#include <QProcess>
#include <QRegularExpression>
#include <QThread>
#include <map>
#include <thread>

namespace {

class SharingTest : public AnswerRun
{
protected:
    SharingTest()
    {
        AddCustomer("C1");
        AddThreeOrders();
    }

    void AddThreeOrders()
    {
        for (const int order : {1, 2, 3}) {
            AddOrder(order, "C1");
            AddLine(order, 1);
        }
    }
};

} // namespace

TEST_F(SharingTest, AShortLockIsWaitedOut)
{
    const auto answer = [this] {
        SelectAll();
        EXPECT_EQ(Make().records, 3);
    };
    for (const std::function<void()> &act : {std::function([this] { Load(); }), {answer}}) {
        file.Run("BEGIN EXCLUSIVE");
        std::thread other([this] {
            QThread::msleep(300);
            file.Run("COMMIT");
        });
        act();
        other.join();
    }
    EXPECT_EQ(boxes.TakeTexts().size(), 1u) << "the summary";
    EXPECT_EQ(file.Rows("SELECT COUNT(*) FROM TLSP0010 WHERE AnsLimUmu = 3"), "3");
}

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
        {'L', "作成できませんでした\r" + QString(ChangedElsewhereText).arg("PO-2")},
        {'S', "納期回答作成処理が終了"},
        {'N', "データが存在しません"},
        {'R', "登録されませんでした\r注文№ PO-2"},
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
        {loaded, remove, "?NR", "", "-- -- --", "20261205"},
        {loaded, ship, "?S", "PO-1 PO-3", "済- -済 済-", "20261205"},
        {loaded, mark, "?S", "PO-1 PO-2 PO-3", "済- 済- 済-", "20261205"},
        {loaded, redate, "?S", "PO-1 PO-2 PO-3", "済- 済- 済-", "20261205"},
        {agreed, redate, "LS", "PO-1 PO-3", "済- -- 済-", "20261209"},
        {agreed, mark, "LS", "PO-1 PO-3", "済- 済- 済-", "20261202"},
        {agreed, split, "LS", "PO-1 PO-3", "済- -- 済-", "20261202"},
        {registered, remove, "LS", "PO-1 PO-3", "済- -- 済-", "20261205"},
        {registered, redate, "LS", "PO-1 PO-3", "済- -- 済-", "20261209"},
        {registered, ship, "LS", "PO-1 PO-3", "済- -済 済-", "20261205"},
    };
    saysYes = true;
    for (const auto &[when, change, shownBoxes, orders, states, shown] : cases) {
        SCOPED_TRACE(when.toStdString() + change.toStdString());
        Clear();
        AddThreeOrders();
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

namespace {

class TwoDesks : public AnswerRun
{
protected:
    static constexpr int OrderCount = 5;
    static constexpr int Open = 100;

    TwoDesks()
    {
        file.folder.Write("TALVEN.INI", "[DRIVES]\r\nC=" + file.folder.Path().toUtf8() + "\r\n");
        AddCustomer("C1", "LinKBN = 2");
        AddCustomer("C2", "LinKBN = 2, HenpVerPath = '11SIDE'");
    }

    /// Orders of 100 pieces: open in one line or two, or answered by a part.
    void AddOrders()
    {
        const QString open = "AnsVal = 0, AnsLimDate = '', AnsMark = ' ', IndVal = %1";
        for (int order = 1; order <= OrderCount; ++order) {
            AddOrder(order, order == OrderCount ? "C2" : "C1", Open);
            AddLine(order, 1, order == 2 ? "AnsVal = 60" : open.arg(order == 3 ? 30 : 100));
            if (order == 3)
                AddLine(order, 2, open.arg(70));
        }
    }

    /// How it ended, when this is what both desks have said.
    void CheckRound(const QStringList &said)
    {
        const auto isMoreAgreed = [&](const QString &orderNo) {
            const QRegularExpression asked("注残数を超える注文： \\d+ 件[|]　 注文№ [^|]*"
                                           + orderNo);
            return asked.match(said.join('\n')).hasMatch();
        };
        QStringList sent; // "order|delivery|quantity|date"
        std::map<QString, int> firstAnswers;
        for (const QString &name : AnswerFiles()) {
            int number = 0;
            for (const DecodedAnswer &answer : DecodeAnswers(file.folder.Read(name))) {
                EXPECT_TRUE(answer.faults.empty()) << name.toStdString();
                ++number; // the short records count without a gap
                EXPECT_EQ(answer.Value("recordNumber").toInt(), name == "C1.TXT" ? number : 1);
                const QString orderNo = answer.Value("orderNumber");
                firstAnswers[orderNo] += answer.Value("answerKind") == "1";
                double sum = 0;
                for (const AnsweredDelivery &delivery : answer.deliveries) {
                    const auto &values = delivery.values;
                    sent += QStringList{orderNo, values[1].text, values[3].text, values[2].text}
                                .join('|');
                    sum += values[3].text.toDouble();
                }
                EXPECT_TRUE(sum <= Open || isMoreAgreed(orderNo)) << orderNo.toStdString() << sum;
            }
        }
        EXPECT_FALSE(sent.isEmpty());
        for (const auto &[orderNo, count] : firstAnswers)
            EXPECT_LE(count, 1) << orderNo.toStdString();
        const QString marked = file.Rows("SELECT OdrNo, PayNo, CAST(AnsVal AS INTEGER), AnsLimDate "
                                         "FROM TLSP0010 WHERE AnsLimUmu = 3");
        QStringList claimed = marked.split(' ', Qt::SkipEmptyParts);
        for (const QString &line : said.filter("sent "))
            claimed += line.section(' ', 1);
        for (const QString &delivery : claimed)
            EXPECT_TRUE(sent.contains(delivery)) << delivery.toStdString() << " never went out";
        const QString above
            = file.Rows("SELECT OdrNo FROM TLSP0010 GROUP BY AccNo HAVING SUM(AnsVal) > "
                        + QString::number(Open));
        for (const QString &orderNo : above.split(' ', Qt::SkipEmptyParts))
            EXPECT_TRUE(isMoreAgreed(orderNo)) << orderNo.toStdString();
    }
};

} // namespace

TEST_F(TwoDesks, AnswerTheSameOrders)
{
    const int wanted = qEnvironmentVariableIntValue("SHARING_ROUNDS");
    const int rounds = wanted > 0 ? wanted : 5;
    qsizetype leftOut = 0;
    qsizetype asked = 0;
    for (int round = 1; round <= rounds && !HasFailure(); ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        Clear();
        AddOrders();
        QProcess desks[2];
        for (int desk = 0; desk < 2; ++desk)
            desks[desk].start(DESK, {file.folder.Path(), QString::number(2 * round + desk)});
        QStringList said;
        for (QProcess &desk : desks) {
            EXPECT_TRUE(desk.waitForFinished(60'000) && desk.exitCode() == 0)
                << desk.readAllStandardError().constData();
            said += QString(desk.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
        }
        const QRegularExpression usual("^(sent |このまま|作成できませんでした[|]注文№ |"
                                       "納期回答作成処理が|有効な行を)");
        for (const QString &line : said)
            EXPECT_TRUE(usual.match(line).hasMatch()) << line.toStdString();
        leftOut += said.filter("作成できませんでした").size();
        asked += said.filter("このまま").size();
        CheckRound(said);
        if (HasFailure())
            std::printf("%s\n", said.join('\n').toUtf8().constData());
    }
    std::printf("%lld orders left to the other desk, %lld questions\n", leftOut, asked);
    EXPECT_GT(leftOut, 0) << "the desks never met";
}
