#include "output/Surprises.h"

#include "output/AnswerRun.h"

#include <map>

namespace {

/// What the operator is told of each, by letters.
const std::map<QChar, QString> Kinds = {
    {'U', "変更したが選択していない行（登録します。選択した注文のほかは回答しません）"},
    {'A', "回答済で、この一覧では変更していない注文（もう一度送ります）"},
    {'H', "一覧に出ていないが、回答に入る行"},
    {'C', "一覧を表示した後に、ほかの人が変更した行（鉛筆の付いた行はここの回答を、ほかの行は今の内"
          "容を送ります）"},
    {'M', "回答数量の合計が、注残数を超える注文"},
    {'P', "回答納期が過去の行"},
};

/// The question about "A 1 PO-1;P 1 PO-2".
QString Asked(const QString &findings)
{
    QString text = "このまま納期回答を作成してもよろしいですか\r";
    for (const QString &found : findings.split(';'))
        text += QString("\r・%1： %2 件\r　 注文№ %3")
                    .arg(Kinds.at(found[0]), found.section(' ', 1, 1), found.section(' ', 2));
    return text;
}

constexpr auto No = "";
constexpr auto MarkFirst = "UPDATE TLSP0010 SET AnsLimUmu = 3 WHERE AccNo = 1 AND ShpSubNo = 1";
constexpr auto MarkTwo = "UPDATE TLSP0010 SET AnsLimUmu = 3 WHERE AccNo < 3";
constexpr auto Reveal = "UPDATE TLSP0010 SET DpoFlg = 0";
constexpr auto Change = "UPDATE TLSP0010 SET AnsVal = 8, AnsLimDate = '20261208'";
constexpr auto ChangeSecond
    = "UPDATE TLSP0010 SET AnsVal = 8, AnsLimDate = '20261208' WHERE ShpSubNo = 2";

class SurprisesTest : public AnswerRun
{
protected:
    SurprisesTest()
    {
        AddCustomer("C1");
        AddOrders();
    }

    void AddOrders()
    {
        for (const int order : {1, 2, 3}) {
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

    /// The answers in a record, as "10/2": whole pieces and the day's last digit.
    static QString Sent(const QByteArray &record)
    {
        QStringList sent;
        for (int slot = 163; record.mid(slot, 6).toInt() > 0; slot += 33)
            sent += QString("%1/%2").arg(record.mid(slot + 20, 9).toInt()).arg(record[slot + 19]);
        return sent.join(' ');
    }
};

} // namespace

TEST_F(SurprisesTest, AreAskedAboutOnceBeforeAnythingIsWritten)
{
    const struct
    {
        const char *added;                             ///< as a second line of order 1
        const char *before;                            ///< the list is loaded
        const char *after;                             ///< by somebody else
        std::vector<std::pair<int, const char *>> set; ///< by the operator: rows and dates
        const char *asked;                             ///< nothing: no box
        const char *stored;                            ///< after Yes
    } cases[] = {
        {No, No, No, {{1, "20261125"}}, No, "10/5/3 10/2/3 10/2/0"}, // today
        {No, No, No, {{1, "20261124"}, {2, "99999999"}}, "P 1 PO-1", "10/4/3 10/9/3 10/2/0"},
        {No, No, No, {{3, "20261209"}}, "U 1 PO-3", "10/2/3 10/2/3 10/9/0"},
        {No, MarkTwo, No, {{2, "20261209"}}, "A 1 PO-1", "10/2/3 10/9/3 10/2/0"},
        {"ShpSts = 2", MarkFirst, No, {}, "A 1 PO-1", "10/2/3 10/2/0 10/2/3 10/2/0"}, // on its way
        {"ShpSts = 1", MarkFirst, No, {}, No, "10/2/3 10/2/3 10/2/3 10/2/0"},
        {"DenKBN = 3", No, No, {}, "H 1 PO-1", "10/2/3 10/2/3 10/2/3 10/2/0"},
        {"AnsVal = 5, DpoFlg = 1", No, Reveal, {}, "H 1 PO-1", "10/2/3 5/2/3 10/2/3 10/2/0"},
        {"ShpSts = 3, DpoFlg = 1", No, Reveal, {}, No, "10/2/3 10/2/0 10/2/3 10/2/0"},
        // Overwritten where it is changed here as well, else taken over.
        {No, No, Change, {{1, "20261207"}}, "C 2 PO-1、PO-2", "10/7/3 8/8/3 8/8/0"},
        // A hidden line keeps no order from being registered.
        {"DenKBN = 3, AccNo = 3",
         No,
         No,
         {{3, "20261209"}},
         "U 1 PO-3",
         "10/2/3 10/2/3 10/9/0 10/2/0"},
        {"ShpSts = 1", No, ChangeSecond, {}, "C 1 PO-1", "10/2/3 8/8/3 10/2/3 10/2/0"},
        {"AnsVal = 90.001", No, No, {}, "M 1 PO-1", "10/2/3 90.001/2/3 10/2/3 10/2/0"},
        {"AnsVal = 90.0004", No, No, {}, No, "10/2/3 90.0004/2/3 10/2/3 10/2/0"},
        {"AnsVal = 95",
         No,
         No,
         {{2, "20261124"}},
         "M 1 PO-1;P 1 PO-2",
         "10/2/3 95/2/3 10/4/3 10/2/0"},
    };
    for (const auto &[added, before, after, set, asked, stored] : cases) {
        SCOPED_TRACE(std::string(added) + '|' + asked + '|' + stored);
        Clear();
        AddOrders();
        if (*added)
            AddLine(1, 2, QString("AccHinCD = '9', ") + added);
        file.Run(before);
        Load();
        Select({1, 2});
        for (const auto &[row, date] : set)
            list.At(row).SetDate(date);
        file.Run(after);

        const QString written = Written();
        const int unregistered = list.UnregisteredCount();
        const auto ranges = selected.Ranges();
        if (*asked) {
            boxes.Press(BoxButton::No);
            EXPECT_EQ(Make().records, 0);
            ASSERT_EQ(boxes.Shown().size(), 1u);
            const MessageBoxRequest &box = boxes.Shown().front();
            EXPECT_EQ(box.style,
                      BoxStyle::Exclamation + BoxStyle::YesNo + BoxStyle::DefaultButton2);
            EXPECT_EQ(box.text, Asked(asked));
            EXPECT_EQ(Written(), written);
            EXPECT_EQ(list.UnregisteredCount(), unregistered);
            EXPECT_EQ(selected.Ranges(), ranges);
            boxes.Press(BoxButton::Yes);
        }
        Make();
        EXPECT_EQ(boxes.TakeTexts().size(), *asked ? 3u : 1u) << "and the summary";
        EXPECT_EQ(file.Rows("SELECT AnsVal, SUBSTR(AnsLimDate, 8), AnsLimUmu FROM TLSP0010"
                            " ORDER BY AccNo, ShpSubNo")
                      .replace(".0|", "/")
                      .replace('|', '/'),
                  stored);
        EXPECT_EQ(
            Sent(Records("C1.TXT").value(0)),
            file.Rows("SELECT CAST(AnsVal AS BIGINT) || '/' || SUBSTR(AnsLimDate, 8) FROM TLSP0010 "
                      "WHERE AccNo = 1 AND ShpSts < 3 ORDER BY ShpSubNo"));
        EXPECT_TRUE(selected.IsEmpty());
        EXPECT_EQ(list.UnregisteredCount(), 0);
        LineList fresh;
        LoadList(db, SearchConditions(), fresh);
        const Line &last = list.At(list.RowsOfOrder(1).back());
        EXPECT_EQ(last.Now().date, fresh.At(fresh.RowOf(last.Key())).Now().date);
    }
}

TEST_F(SurprisesTest, ARunThatCannotReadItsOrdersSaysThatItHasCreatedNothing)
{
    Load();
    Select({1, 2});
    file.Run("ALTER TABLE TLAC0010 RENAME TO Gone");
    Make();
    const auto texts = boxes.TakeTexts();
    EXPECT_EQ(texts.size(), 2U);
    EXPECT_EQ(texts.back(), "作成できませんでした\r");
}

TEST_F(SurprisesTest, PressingTwiceSendsNothingTwice)
{
    Load();
    Select({1, 2});
    Make();
    boxes.TakeTexts();
    Make();
    EXPECT_TRUE(boxes.TakeTexts().at(0).startsWith("有効な行を選択してください"));

    // One of them gets another answer, which is registered on the way.
    list.At(2).SetDate("20261210");
    RegistrationCounts counts;
    Registration(db, list, selected).RegisterAnswers(counts);
    Select({1, 2});
    boxes.Press(BoxButton::Yes);
    Make();
    EXPECT_EQ(boxes.TakeTexts().front(), Asked("A 1 PO-1"));
    EXPECT_EQ(Orders("C1.TXT"), "PO-1 PO-2 PO-1 PO-2");
}
