#include "output/AnswerRun.h"
#include "output/ExpectedRecord.h"
#include "support/LogLines.h"

#include <QApplication>
#include <QKeyEvent>
#include <QThread>

namespace {

class AnswerCreationTest : public AnswerRun
{
protected:
    /// The delivery numbers in the slots of a record.
    static QString Slots(const QByteArray &record)
    {
        QStringList numbers;
        for (int slot = 0; slot < 31; ++slot)
            numbers += record.mid(163 + 33 * slot + 6, 8).trimmed();
        return numbers.join(' ').trimmed();
    }

    QString Marked()
    {
        return file.Rows("SELECT AccNo, ShpSubNo FROM TLSP0010 WHERE AnsLimUmu = 3 "
                         "ORDER BY AccNo, ShpSubNo");
    }
};

} // namespace

TEST_F(AnswerCreationTest, AWholeRun)
{
    AddCustomer("C1");
    AddCustomer("C2", "HenpVerPath = 'X1 SIDE', CustKBN = 2, LinKBN = 2");
    AddCustomer("C3", "VanCD = NULL, HenpVerPath = NULL");
    AddOrder(1, "C1");
    AddLine(1, 1, "Unit = 'PCS', CustSecCD = 'SEC', CustSecName = '資材', MfactNo = 'MAKER'");
    AddLine(1, 2, "AnsVal = 2.5, AnsLimDate = '        ', AnsMark = ' ', IndVal = 5");
    AddOrder(2, "C2", 100, true);
    AddLine(
        2, 1,
        "HinCD = 'A\r\nB\tC', AccVal = 1234.5678, AnsLimDate = '20261201', MfactNo = '①髙～한😀'");
    AddOrder(3, "C3");
    AddLine(3, 1, "OdrNo = NULL, CustSecName = NULL, PayNo = NULL, AnsLimDate = NULL, Unit = NULL");
    Load();
    SelectAll();
    list.At(3).SetDate("20261203");
    file.Run("UPDATE TLMT0040 SET NokiInfPath = 'C:\\NEW.TXT' WHERE CustCD = 'C3'");
    const auto counts = Make();

    EXPECT_EQ(counts.records, 3);
    ASSERT_EQ(AnswerFiles(), (QStringList{"C1.TXT", "C2.TXT", "NEW.TXT"}));
    ExpectedRecord first;
    first.At(1, "000010702261124VANC1       SIDEC1      SEC     PO-1")
        .At(71, "MAKER              1 PCS000000100000")
        .At(114, "1")
        .At(139, "OWN")
        .Slot(1, "261201P1      2612020000000100002")
        .Slot(2, "261201P2      9999990000000025002")
        .At(1217, "\x8e\x91\x8d\xde");
    ExpectSameBytes(Records("C1.TXT").value(0), first.Short());
    ExpectedRecord second;
    second.At(1, "000010702261124VANC2       SIDE                KEY-2")
        .At(71, "\x87\x40\xfb\xfc\x81\x60??")
        .At(90, "1K   000001234567TANTO  2")
        .At(139, "A  B\tC")
        .Slot(1, "261201P1      2612030000000100002")
        .WideReserves();
    ExpectSameBytes(Records("C2.TXT").value(0), second.bytes);
    ExpectedRecord ofNulls;
    ofNulls.At(1, "000010702261124")
        .At(90, "1    000000100000")
        .At(114, "3")
        .At(139, "OWN")
        .Slot(1, "261201        9999990000000100002")
        .WideReserves();
    ExpectSameBytes(Records("NEW.TXT").value(0), ofNulls.bytes);

    EXPECT_EQ(file.Rows("SELECT DISTINCT AnsLimUmu, UpdPGName, UpdDate, UpdTime FROM TLSP0010"),
              "3|TL030101|20261124|093000");
    EXPECT_EQ(States(), "済- 済- 済- 済-");
    EXPECT_EQ(list.UnregisteredCount(), 0);
    ASSERT_EQ(boxes.Shown().size(), 2u);
    EXPECT_TRUE(boxes.Shown()[1].text.endsWith("「?」で出力しました。\r\r注文№ PO-2"));
    EXPECT_TRUE(boxes.Shown()[0].text.contains("追加された件数\t\t： 0 件\r"
                                               "変更された件数\t\t： 1 件\r"
                                               "行を選択された件数\t\t： 4 件\r"
                                               "納期回答処理件数\t\t： 4 件\r"
                                               "―――――――――――――――――――――――――――――\r"
                                               "納期回答情報作成件数\t\t： 3 件\r"));
}

TEST_F(AnswerCreationTest, OneRecordForRowsNextToEachOther)
{
    AddCustomer("C1");
    AddOrder(1, "C1");
    AddLine(1, 1, "AccHinCD = 'A'");
    AddLine(1, 2, "AccHinCD = 'B'");
    AddLine(1, 3, "AccHinCD = 'D'");
    AddOrder(2, "C1");
    AddLine(2, 1, "AccHinCD = 'C'");
    Load();
    SelectAll();
    auto counts = Make();
    EXPECT_EQ(Orders("C1.TXT"), "PO-1 PO-2 PO-1") << "apart from each other: answered again";
    EXPECT_EQ(counts.lines, 7);

    EXPECT_TRUE(selected.IsEmpty());
    Select({2}); // one selected row answers all of the order's lines
    saysYes = true;
    counts = Make();
    EXPECT_EQ(counts.participants, 1);
    EXPECT_EQ(counts.lines, 3);
    const auto records = Records("C1.TXT");
    EXPECT_EQ(Slots(records.last()), "P1 P2 P3");
    EXPECT_EQ(records[2].left(5) + records[2].mid(89, 1), "000032");
    EXPECT_EQ(records[3].left(5) + records[3].mid(89, 1), "000042");
}

TEST_F(AnswerCreationTest, WhichLinesAreAnsweredAndMarked)
{
    const struct
    {
        const char *customer;
        const char *second;
        QString answered; ///< in the slots of the record; empty: no record
        QString marked;
        QString states;
        const char *first = "IndVal = 10";
    } cases[] = {
        {"LinKBN = 1", "IndVal = 11", "P2 P1", "1|1 1|2", "済- 済-"}, // more wanted goes first
        {"LinKBN = 1", "AnsLimDate = ''", "P2 P1", "1|1 1|2", "済- 済-"},
        {"LinKBN = 2", "AnsLimDate = ''", "P1", "1|1", "-- 済-"},
        {"LinKBN = 1", "AnsVal = 0", "P1", "1|1", "済- --"}, // proposed, not stored
        {"LinKBN = 1", "ShpSts = 3", "P1", "1|1", "済- -済"},
        {"LinKBN = 1", "ShpSts = 2", "P1 P2", "1|1", "済- --"}, // on its way
        {"LinKBN = 1", "ShpSts = 2", "P1 P2", "", "-- --", "ShpSts = 2"},
        {"LinKBN = 1", "DpoFlg = 1", "P1", "1|1", "済-"},
        {"NokiInfKBN = 0", "IndVal = 10", "", "1|1 1|2", "済- 済-"},
    };
    AddCustomer("C1");
    for (const auto &[customer, second, answered, marked, states, first] : cases) {
        SCOPED_TRACE(std::string(customer) + ", " + second);
        Clear();
        file.Run("UPDATE TLMT0040 SET NokiInfKBN = 1");
        file.Run(QString("UPDATE TLMT0040 SET ") + customer);
        AddOrder(1, "C1");
        AddLine(1, 1, first);
        AddLine(1, 2, second);
        Load();
        // The first line alone: a row without an answer would stop the run.
        Select({list.RowOf({1, 1, 1})});
        const auto counts = Make();
        EXPECT_EQ(boxes.TakeTexts().size(), 1u) << "the summary";
        EXPECT_EQ(counts.records, answered.isEmpty() ? 0 : 1);
        EXPECT_EQ(counts.lines, states.count("済-"));
        EXPECT_EQ(Slots(Records("C1.TXT").value(0)), answered);
        EXPECT_EQ(Marked(), marked);
        EXPECT_EQ(States(), states);
        EXPECT_TRUE(selected.IsEmpty());
    }
}

TEST_F(AnswerCreationTest, WhoIsInTheWayOfTheMarkIsMetBeforeTheRecord)
{
    AddCustomer("C1");
    AddOrder(1, "C1");
    AddLine(1, 1);
    Load();
    SelectAll();
    SetLockTimeout(db, file, 1);
    onStatus = [&](const QString &text) {
        if (text == "納期回答情報を作成しています…") // a reader is, with a file; who has chosen
                                                     // lines, on a server
            file.Run(QString("BEGIN; SELECT * FROM TLSP0010")
                     + (file.IsOnServer() ? " FOR UPDATE" : ""));
    };
    boxes.OnBox([&](const MessageBoxRequest &) {
        if (onStatus)
            file.Run("ROLLBACK");
        onStatus = nullptr;
    });
    Make();
    EXPECT_TRUE(boxes.TakeTexts().front().contains("3260"));
    EXPECT_EQ(AnswerFiles(), QStringList());
    EXPECT_EQ(States(), "--");
}

TEST_F(AnswerCreationTest, ARegistrationThatFailsTellsOfOrdersChangedElsewhere)
{
    AddCustomer("C1");
    for (const int order : {1, 2}) {
        AddOrder(order, "C1");
        AddLine(order, 1);
    }
    Load();
    SelectAll();
    file.Refuse("UPDATE", "NEW.AccNo = 2");
    onStatus = [&](const QString &text) {
        if (text == RegistrationText)
            file.Run("UPDATE TLSP0010 SET AnsLimDate = '20261209' WHERE AccNo = 1");
    };
    Make();
    const auto texts = boxes.TakeTexts();
    EXPECT_EQ(texts.size(), 3U);
    EXPECT_EQ(texts.at(1), "登録されませんでした\r注文№ PO-2");
    EXPECT_TRUE(texts.at(2).startsWith("作成できませんでした\r注文№ PO-1 は"));
}

TEST_F(AnswerCreationTest, AFailingOrderEndsTheRun)
{
    const QString notMade = "作成できませんでした\r";
    const struct
    {
        std::function<void()> arrange;
        QStringList boxes;       ///< how each begins
        const char *failed = ""; ///< the record of the failing order
    } cases[] = {
        {[&] { file.Run("DELETE FROM TLEI0010"); }, {"データが存在しません\r", notMade}},
        {[&] {
             for (int line = 2; line <= 32; ++line)
                 AddLine(2, line, "AnsVal = 1");
         },
         {"実行時エラー '9':\r\rインデックスが有効範囲にありません。", notMade}},
        {[&] { file.Refuse("UPDATE OF AnsLimUmu", "NEW.AccNo = 2"); },
         {"ｴﾗｰｺｰﾄﾞ：", "更新されませんでした\r", notMade},
         "PO-2"},
        {[&] {
             file.RefuseNothing();
             file.Refuse("INSERT", "NEW.AccNo = 2", "TLAH0010");
         },
         {"ｴﾗｰｺｰﾄﾞ：", "更新されませんでした\r", notMade}},
    };
    AddCustomer("C1");
    AddCustomer("C2");
    for (const auto &[arrange, expected, failed] : cases) {
        SCOPED_TRACE(expected[0].toStdString());
        Clear();
        for (const int order : {1, 3, 2}) {
            AddOrder(order, order == 2 ? "C2" : "C1", 100, order == 2);
            AddLine(order, 1);
        }
        arrange();
        Load();
        SelectAll();
        const auto counts = Make();
        const auto texts = boxes.TakeTexts();
        ASSERT_EQ(texts.size(), size_t(expected.size())) << texts.front().toStdString();
        for (qsizetype at = 0; at < expected.size(); ++at)
            EXPECT_TRUE(texts[size_t(at)].startsWith(expected[at]))
                << texts[size_t(at)].toStdString();
        EXPECT_EQ(Orders("C1.TXT"), "PO-1") << "before the failing order, not after it";
        EXPECT_EQ(Orders("C2.TXT"), failed);
        EXPECT_EQ(Marked(), "1|1");
        EXPECT_EQ(file.Rows("SELECT AccNo FROM TLAH0010"), "1");
        EXPECT_EQ(States(), "済-" + QString(" --").repeated(list.Count() - 1));
        EXPECT_EQ(selected.First(), 2) << "the rows that are still to be answered";
        EXPECT_EQ(counts.records, 1);
        EXPECT_TRUE(db.BeginTrans() && db.Rollback()) << "no transaction is left open";
    }
}

TEST_F(AnswerCreationTest, ARecordHoldsThirtyOneLines)
{
    AddCustomer("C1");
    AddOrder(1, "C1");
    QStringList numbers;
    for (int line = 1; line <= 31; ++line) {
        AddLine(1, line, QString("AnsVal = 1, IndVal = %1").arg(100 - line));
        numbers += QString("P%1").arg(line);
    }
    file.folder.Write("C1.TXT", QByteArray("99999").leftJustified(1236, 'x') + "\r\n");
    Load();
    SelectAll();
    EXPECT_EQ(Make().lines, 31);
    EXPECT_EQ(Slots(Records("C1.TXT").value(1)), numbers.join(' '));
    EXPECT_EQ(Records("C1.TXT").value(1).left(9), "000000702") << "numbers have five digits";
}

TEST_F(AnswerCreationTest, EscapeStopsBetweenTwoOrders)
{
    constexpr int OrderCount = 40;
    AddCustomer("C1");
    for (int order = 1; order <= OrderCount; ++order) {
        AddOrder(order, "C1");
        AddLine(order, 1, QString("AccHinCD = %1").arg(100 + order));
    }
    Load();
    SelectAll();
    onStatus = [](const QString &text) {
        if (text.startsWith("納期回答情報を作成しています…（"))
            QApplication::postEvent(
                qApp, new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
    };
    SetFileFault([](FileOp op, const QString &) {
        if (op == FileOp::Sync)
            QThread::msleep(5); // a slow disk, so that there is something to be told
        return 0;
    });
    const int done = Make().records;
    EXPECT_GT(done, 0);
    EXPECT_LT(done, OrderCount);
    EXPECT_TRUE(boxes.TakeTexts().at(0).endsWith(
        QString("\r\rEsc で中断しました。%1 件の注文を回答し、残りは回答していません").arg(done)));
    EXPECT_EQ(Records("C1.TXT").size(), done);
    EXPECT_EQ(Marked().count('|'), done);
    EXPECT_EQ(selected.First(), done + 1) << "the rest can be answered at once";
    EXPECT_EQ(selected.Count(), OrderCount - done);
}

TEST_F(AnswerCreationTest, TheLogTellsWhatBecameOfEachOrder)
{
    AddCustomer("C1");
    AddCustomer("C2", "NokiInfKBN = 0");
    for (const int accNo : {1, 2})
        AddOrder(accNo, "C1"), AddLine(accNo, 1);
    AddOrder(3, "C2");
    AddLine(3, 1);
    const LogLines log;
    Load();
    SelectAll();
    list.At(2).SetDate("20261203");
    Make();
    const QStringList loaded = log.Of("talven.list");
    ASSERT_EQ(loaded.size(), 1);
    EXPECT_TRUE(loaded[0].startsWith("一覧を表示 条件: 、3 行、")) << loaded[0].toStdString();
    EXPECT_EQ(log.Of("talven.answer"),
              (QStringList{"登録 注文№ PO-1（AccNo 1） 1 明細", "登録 注文№ PO-2（AccNo 2） 1 明細",
                           "登録 注文№ PO-3（AccNo 3） 1 明細",
                           "回答 注文№ PO-1（AccNo 1） レコード 1（区分 1） C:\\C1.TXT",
                           "回答 注文№ PO-2（AccNo 2） レコード 2（区分 1） C:\\C1.TXT",
                           "回答 注文№ PO-3（AccNo 3） レコードなし"}));
}
