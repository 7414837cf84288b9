#include "output/AnswerRun.h"
#include "tldb/answers/AnswerFile.h"

#include <QProcess>
#include <QRegularExpression>
#include <QThread>
#include <algorithm>
#include <array>
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

    /// Lets the other program lock the whole database for a short time, and act begin meanwhile.
    template <typename Act>
    void WhileLocked(Act &&act)
    {
        file.Run("BEGIN EXCLUSIVE");
        std::thread other([this] {
            QThread::msleep(300);
            file.Run("COMMIT");
        });
        act();
        other.join();
    }
};

} // namespace

TEST_F(SharingTest, AShortLockIsWaitedOut)
{
    file.Open(db);
    WhileLocked([this] { Reload(); });
    SelectAll();
    WhileLocked([this] { EXPECT_EQ(Make().records, 3); });
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
    const QString hide = "UPDATE TLSP0010 SET DpoFlg = 1 WHERE AccNo = 2";
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
        {loaded, hide, "?NR", "", "-- -- --", "20261205"},
        {loaded, ship, "?S", "PO-1 PO-3", "済- -済 済-", "20261205"},
        {loaded, mark, "?S", "PO-1 PO-2 PO-3", "済- 済- 済-", "20261205"},
        {loaded, redate, "?S", "PO-1 PO-2 PO-3", "済- 済- 済-", "20261205"},
        {agreed, remove, "LS", "PO-1 PO-3", "済- -- 済-", "20261205"},
        {agreed, redate, "LS", "PO-1 PO-3", "済- -- 済-", "20261209"},
        {agreed, mark, "LS", "PO-1 PO-3", "済- 済- 済-", "20261202"},
        {agreed, split, "LS", "PO-1 PO-3", "済- -- 済-", "20261202"},
        {registered, remove, "LS", "PO-1 PO-3", "済- -- 済-", "20261205"},
        {registered, redate, "LS", "PO-1 PO-3", "済- -- 済-", "20261209"},
        {registered, ship, "LS", "PO-1 PO-3", "済- -済 済-", "20261205"},
        {registered, split, "LS", "PO-1 PO-3", "済- -- 済-", "20261205"},
    };
    file.Open(db);
    saysYes = true;
    for (const auto &[when, change, shownBoxes, orders, states, shown] : cases) {
        SCOPED_TRACE(when.toStdString() + change.toStdString());
        Clear();
        AddThreeOrders();
        Reload();
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

/// A desk: a process of its own that answers all orders in the way of its number.
class DeskProcess
{
public:
    explicit DeskProcess(const QString &home)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(DESK, {home});
    }
    ~DeskProcess()
    {
        m_process.closeWriteChannel();
        EXPECT_TRUE(m_process.waitForFinished());
    }

    void Begin(int seed)
    {
        m_said.clear();
        m_process.write(QByteArray::number(seed) + '\n');
        m_process.waitForBytesWritten();
    }

    /// What it has said, to the end of the round; line breaks of boxes are "|".
    QStringList TakeLines()
    {
        while (!m_said.endsWith("done\n") && m_process.waitForReadyRead(60'000))
            m_said += m_process.readAll();
        EXPECT_TRUE(m_said.endsWith("done\n")) << m_said.constData();
        return QString::fromUtf8(m_said).split('\n', Qt::SkipEmptyParts);
    }

private:
    QProcess m_process;
    QByteArray m_said;
};

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

    static QString FileOf(int order) { return order == OrderCount ? "C2.TXT" : "C1.TXT"; }

    /// Orders of 100 pieces: open in one line or two, or answered by a part.
    void AddOrders()
    {
        for (int order = 1; order <= OrderCount; ++order) {
            AddOrder(order, FileOf(order).left(2), Open);
            const QString open = "AnsVal = 0, AnsLimDate = '', AnsMark = ' ', IndVal = %1";
            if (order == 2) {
                AddLine(order, 1, "AnsVal = 60, IndVal = 100");
            } else if (order == 3) {
                AddLine(order, 1, open.arg(30));
                AddLine(order, 2, open.arg(70));
            } else {
                AddLine(order, 1, open.arg(100));
            }
        }
    }

    struct Record
    {
        QString kind;
        QStringList deliveries; ///< "number|quantity|date"
        double sum = 0;
    };

    /// The records of every order; each is whole, and the short ones count from 1 without a gap.
    std::map<QString, std::vector<Record>> ReadRecords()
    {
        std::map<QString, std::vector<Record>> records;
        for (const QString &name : AnswerFiles()) {
            int number = 0;
            for (const DecodedAnswer &answer : DecodeAnswers(file.folder.Read(name))) {
                EXPECT_TRUE(answer.faults.empty()) << name.toStdString();
                ++number;
                EXPECT_EQ(answer.Value("recordNumber").toInt(), name == "C1.TXT" ? number : 1);
                Record &record = records[answer.Value("orderNumber")].emplace_back();
                record.kind = answer.Value("answerKind");
                for (const AnsweredDelivery &delivery : answer.deliveries) {
                    const auto value = [&](int at) { return delivery.values[size_t(at)].text; };
                    record.deliveries += value(1).trimmed() + '|' + value(3) + '|' + value(2);
                    record.sum += value(3).toDouble();
                }
            }
        }
        return records;
    }

    /// What both desks have said, and how it ended.
    void CheckRound(const QStringList &said)
    {
        auto records = ReadRecords();
        int sent = 0;
        const auto expectSent = [&](const QString &orderNo, const QString &delivery) {
            EXPECT_TRUE(std::ranges::any_of(
                records[orderNo],
                [&](const Record &record) { return record.deliveries.contains(delivery); }))
                << orderNo.toStdString() << ": " << delivery.toStdString() << " never went out";
        };
        for (int order = 1; order <= OrderCount; ++order) {
            const QString orderNo = QString("PO-%1").arg(order);
            SCOPED_TRACE(orderNo.toStdString());
            const std::vector<Record> &ofOrder = records[orderNo];
            sent += int(ofOrder.size());
            EXPECT_LE(std::ranges::count(ofOrder, "1", &Record::kind), 1);

            const QRegularExpression asked("注残数を超える注文： \\d+ 件[|]　 注文№ [^|]*"
                                           + orderNo);
            const bool isMoreAgreed = asked.match(said.join('\n')).hasMatch();
            for (const Record &record : ofOrder)
                EXPECT_TRUE(record.sum <= Open || isMoreAgreed) << record.sum << " were sent";
            EXPECT_TRUE(isMoreAgreed
                        || file.Rows(QString("SELECT TOTAL(AnsVal) FROM TLSP0010 WHERE AccNo = %1")
                                         .arg(order))
                                   .toDouble()
                               <= Open)
                << Stored(order).toStdString();

            const QString marked
                = file.Rows(QString("SELECT PayNo || '|' || CAST(AnsVal AS INTEGER) || '|' || "
                                    "AnsLimDate FROM TLSP0010 "
                                    "WHERE AccNo = %1 AND AnsLimUmu = 3")
                                .arg(order));
            for (const QString &delivery : marked.split(' ', Qt::SkipEmptyParts))
                expectSent(orderNo, delivery);
        }
        for (const QString &line : said.filter("sent "))
            expectSent(line.section(' ', 1, 1), line.section(' ', 2));
        EXPECT_GT(sent, 0);
    }
};

} // namespace

TEST_F(TwoDesks, AnswerTheSameOrders)
{
    const int wanted = qEnvironmentVariableIntValue("SHARING_ROUNDS");
    const int rounds = wanted > 0 ? wanted : 5;
    DeskProcess desks[] = {DeskProcess(file.folder.Path()), DeskProcess(file.folder.Path())};
    qsizetype leftOut = 0;
    qsizetype asked = 0;
    for (int round = 1; round <= rounds && !HasFailure(); ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        Clear();
        AddOrders();
        for (int desk = 0; desk < 2; ++desk)
            desks[desk].Begin(2 * round + desk);
        QStringList said;
        for (DeskProcess &desk : desks)
            said += desk.TakeLines();
        const QRegularExpression usual("^(done|sent |このまま|作成できませんでした[|]注文№ |"
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
    EXPECT_GT(leftOut + asked, 0) << "the desks never met";
}
