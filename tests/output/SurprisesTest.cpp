#include "output/Surprises.h"

#include "lines/LineSplit.h"
#include "output/AnswerRun.h"

namespace {

constexpr auto Unselected = "変更したが選択していない行（登録します。選択した注文のほかは回答しません）";
constexpr auto SentAgain = "回答済で、その後変更のない注文（もう一度送ります）";
constexpr auto Unseen = "一覧に出ていないが、回答に入る行";
constexpr auto ChangedElsewhere
    = "一覧を表示した後に、ほかの人が変更した行（一覧の回答で上書きします）";
constexpr auto MoreThanOpen = "回答数量の合計が、注残数を超える注文";
constexpr auto Past = "回答納期が過去の行";

constexpr auto MarkFirst = "UPDATE TLSP0010 SET AnsLimUmu = 3 WHERE AccNo = 1 AND ShpSubNo = 1";

QString Asked(const char *kind, int count, const QString &orders)
{
    return QString("\r・%1： %2 件\r　 注文№ %3").arg(QString(kind)).arg(count).arg(orders);
}

/// Three orders of a line each; the first two are selected.
class SurprisesTest : public AnswerRun
{
protected:
    SurprisesTest() { AddCustomer("C1"); }

    void AddOrders(int from, int to)
    {
        for (int order = from; order <= to; ++order) {
            AddOrder(order, "C1");
            AddLine(order, 1);
        }
    }

    /// All that a run could write.
    QString Written()
    {
        QString written = file.Rows("SELECT * FROM TLSP0010");
        for (const QString &name : AnswerFiles())
            written += name + file.folder.Read(name);
        return written;
    }

    /// The answers in a record, as "10/02": whole pieces and the day.
    static QString Sent(const QByteArray &record)
    {
        QStringList sent;
        for (int slot = 163; record.mid(slot, 6).toInt() > 0; slot += 33)
            sent += QString::number(record.mid(slot + 20, 9).toInt()) + '/'
                    + record.mid(slot + 18, 2);
        return sent.join(' ');
    }
};

} // namespace

TEST_F(SurprisesTest, AreAskedAboutOnceBeforeAnythingIsWritten)
{
    const auto run = [this](const char *sql) { return [this, sql] { file.Run(sql); }; };
    const auto add
        = [this](const char *changes) { return [this, changes] { AddLine(1, 2, changes, "9"); }; };
    const struct
    {
        const char *what;
        std::function<void()> before; ///< before the list is loaded
        std::function<void()> after;  ///< by the operator or by somebody else
        QString asked;                ///< empty: no box
        QString stored;               ///< after Yes: all lines of the three orders
        QString sent = "10/02";       ///< of the first order
        QString shown = "02";         ///< the day of the list's last row
    } cases[] = {
        {"nothing: for today",
         {},
         [this] { list.At(1).SetDate("20261125"); },
         "",
         "10/25/3 10/02/3 10/02/0",
         "10/25"},
        {"changed, not selected",
         {},
         [this] {
             list.At(3).SetDate("20261209");
             list.At(3).SetQuantity(Decimal(4));
             CopyLine(list, 3);
         },
         Asked(Unselected, 2, "PO-3"),
         "10/02/3 10/02/3 4/09/0 6//0",
         "10/02",
         ""},
        {"sent again", run("UPDATE TLSP0010 SET AnsLimUmu = 3 WHERE AccNo <> 3"),
         [this] { list.At(2).SetQuantity(Decimal(9)); }, Asked(SentAgain, 1, "PO-1"),
         "10/02/3 9/02/3 10/02/0"},
        {"sent again, beside a line on its way",
         [this] { AddLine(1, 2, "ShpSts = 2", "9"), file.Run(MarkFirst); },
         {},
         Asked(SentAgain, 1, "PO-1"),
         "10/02/3 10/02/0 10/02/3 10/02/0",
         "10/02 10/02"},
        {"one line of the order was never answered",
         [this] { AddLine(1, 2, {}, "9"), file.Run(MarkFirst); },
         {},
         "",
         "10/02/3 10/02/3 10/02/3 10/02/0",
         "10/02 10/02"},
        {"hidden by the search",
         add("DenKBN = 3"),
         {},
         Asked(Unseen, 1, "PO-1"),
         "10/02/3 10/02/3 10/02/3 10/02/0",
         "10/02 10/02"},
        {"added since, beside what no record holds",
         {},
         [this] {
             AddLine(1, 2, "AnsLimDate = '20261203'");
             AddLine(1, 3, "ShpSts = 3");
             AddLine(2, 2, "AnsVal = 0");
             AddLine(3, 2);
         },
         Asked(Unseen, 1, "PO-1"),
         "10/02/3 10/03/3 10/02/0 10/02/3 0/02/0 10/02/0 10/02/0",
         "10/02 10/03"},
        {"changed by somebody else: overwritten where it takes part",
         {},
         [this] {
             list.At(1).SetDate("20261207");
             file.Run("UPDATE TLSP0010 SET AnsVal = 8, AnsLimDate = '20261208'");
         },
         Asked(ChangedElsewhere, 2, "PO-1、PO-2"),
         "10/07/3 10/02/3 8/08/0",
         "10/07"},
        {"and taken over where it does not", add(""),
         run("UPDATE TLSP0010 SET AnsVal = 8, AnsLimDate = '20261208' WHERE ShpSubNo = 2"),
         Asked(ChangedElsewhere, 1, "PO-1"), "10/02/3 8/08/3 10/02/3 10/02/0", "10/02 8/08", "08"},
        {"more than open",
         add("AnsVal = 90.001"),
         {},
         Asked(MoreThanOpen, 1, "PO-1"),
         "10/02/3 90.001/02/3 10/02/3 10/02/0",
         "10/02 90/02"},
        {"all that is open, to the third decimal",
         add("AnsVal = 90.0004"),
         {},
         "",
         "10/02/3 90.0004/02/3 10/02/3 10/02/0",
         "10/02 90/02"},
        {"in the past",
         {},
         [this] { list.At(1).SetDate("20261124"), list.At(2).SetDate("99999999"); },
         Asked(Past, 1, "PO-1"),
         "10/24/3 10/99/3 10/02/0",
         "10/24"},
        {"many orders", [this] { AddOrders(4, 7); },
         [this] {
             SelectAll();
             for (int row = 1; row <= 6; ++row)
                 list.At(row).SetDate("20261124");
         },
         Asked(Past, 6, "PO-1、PO-2、PO-3、PO-4、PO-5 など"), "10/24/3 10/24/3 10/24/3", "10/24"},
        {"all together",
         [this] { AddLine(1, 2, "DenKBN = 3, AnsVal = 95, AnsLimUmu = 3"), file.Run(MarkFirst); },
         [this] {
             file.Run("UPDATE TLSP0010 SET AnsVal = 8 WHERE AccNo = 2");
             list.At(2).SetDate("20261124");
             list.At(3).SetDate("20261209");
         },
         Asked(Unselected, 1, "PO-3") + Asked(SentAgain, 1, "PO-1") + Asked(Unseen, 1, "PO-1")
             + Asked(ChangedElsewhere, 1, "PO-2") + Asked(MoreThanOpen, 1, "PO-1")
             + Asked(Past, 1, "PO-2"),
         "10/02/3 95/02/3 10/24/3 10/09/0", "10/02 95/02", "09"},
    };
    file.Open(db);
    for (const auto &[what, before, after, asked, stored, sent, shown] : cases) {
        SCOPED_TRACE(what);
        Clear();
        AddOrders(1, 3);
        if (before)
            before();
        Reload();
        Select({1, 2});
        if (after)
            after();

        const QString written = Written();
        const int unregistered = list.UnregisteredCount();
        const auto ranges = selected.Ranges();
        if (!asked.isEmpty()) {
            boxes.Press(BoxButton::No);
            EXPECT_EQ(Make().records, 0);
            ASSERT_EQ(boxes.Shown().size(), 1u);
            const MessageBoxRequest &box = boxes.Shown().front();
            EXPECT_EQ(box.title, "確認");
            EXPECT_EQ(box.style,
                      BoxStyle::Exclamation + BoxStyle::YesNo + BoxStyle::DefaultButton2);
            EXPECT_EQ(box.text, "このまま納期回答を作成してもよろしいですか\r" + asked);
            EXPECT_EQ(Written(), written);
            EXPECT_EQ(list.UnregisteredCount(), unregistered);
            EXPECT_EQ(selected.Ranges(), ranges);
            EXPECT_EQ(status.last(), "");
            boxes.Press(BoxButton::Yes);
        }
        Make();
        EXPECT_EQ(boxes.TakeTexts().size(), asked.isEmpty() ? 1u : 3u) << "and the summary";
        EXPECT_EQ(file.Rows("SELECT PRINTF('%g/%s/%d', AnsVal, SUBSTR(AnsLimDate, 7), AnsLimUmu) "
                            "FROM TLSP0010 WHERE AccNo <= 3 ORDER BY AccNo, ShpSubNo"),
                  stored);
        EXPECT_EQ(Sent(Records("C1.TXT").value(0)), sent);
        EXPECT_EQ(list.At(list.Count()).Now().date.mid(6), shown);
        EXPECT_TRUE(selected.IsEmpty());
        EXPECT_EQ(list.UnregisteredCount(), 0);
    }
}

TEST_F(SurprisesTest, PressingTwiceSendsNothingTwice)
{
    AddOrders(1, 2);
    Load();
    SelectAll();
    Make();
    boxes.TakeTexts();
    Make();
    EXPECT_EQ(boxes.TakeTexts(),
              std::vector<QString>{"有効な行を選択してください\r"
                                   "※ 出荷済のものは、納期回答作成対象にはなりません"});

    // One of them gets another answer, which is registered on the way.
    list.At(2).SetDate("20261210");
    RegistrationCounts counts;
    Registration(db, list, selected).RegisterAnswers(counts);
    SelectAll();
    boxes.Press(BoxButton::Yes);
    Make();
    EXPECT_TRUE(boxes.TakeTexts().front().endsWith(Asked(SentAgain, 1, "PO-1")));
    EXPECT_EQ(Orders("C1.TXT"), "PO-1 PO-2 PO-1 PO-2");

    SelectAll();
    boxes.Press(BoxButton::No);
    Make();
    EXPECT_TRUE(boxes.TakeTexts().front().endsWith(Asked(SentAgain, 2, "PO-1、PO-2")));
    EXPECT_EQ(Orders("C1.TXT"), "PO-1 PO-2 PO-1 PO-2");
}
