#include "lines/LinesFixture.h"

#include "lines/LineSplit.h"
#include "lines/LineSql.h"
#include "lines/Registration.h"

namespace {

using Texts = std::vector<QString>;

class RegistrationTest : public LinesFixture
{
protected:
    bool Register(const std::vector<int> &selected = {})
    {
        const RowSelection rows = Rows(selected);
        Registration registration(state.db, list, rows);
        RegistrationCounts counted;
        const bool isRegistered = registration.RegisterAnswers(counted);
        counts = QString("%1 %2").arg(counted.added).arg(counted.changed);
        leftOut = registration.LeftOut();
        return isRegistered;
    }

    /// Three orders of one line each, every one with a date typed in; the second with a split.
    void LoadThreeOrders()
    {
        file.Run("DELETE FROM TLSP0010; DELETE FROM TLAC0010");
        for (const int accNo : {1, 2, 3}) {
            AddOrder(accNo);
            AddLine(accNo, 1, 1, "IndVal = 60");
        }
        Load();
        for (int row = 1; row <= 3; ++row)
            list.At(row).SetDate("20260601");
        CopyLine(edits, 2);
        list.At(3).SetQuantity(40);
    }

    QString counts; ///< added and changed
    OrdersLeftOut leftOut;
};

constexpr auto NoData = "データが存在しません\r";

const QString NotRegistered = "登録されませんでした\r注文№ ";

} // namespace

TEST_F(RegistrationTest, DatesAndMarkOfAnAnswer)
{
    const QString shipped = "ShpDate = '20260401', ArvExpDate = '20260404'";
    // What is written: answered, ship and arrival date, mark.
    const std::tuple<QString, const char *, const char *, const char *> cases[] = {
        {"LimDate = '20260602'", "20260602", "ShpSts = 1", "20260602|20260530|20260602|1"},
        {shipped + ", AnsLimDate = '20260601'", "", "ShpSts = 1", "|20260401|20260404|2"},
        {shipped, "20260602", "ShpSts = 3", "20260602|20260401|20260404|2"},
    };
    for (const auto &[line, date, meanwhile, written] : cases) {
        LoadLine(line);
        list.At(1).SetDate(date);
        Change("TLSP0010", "1 = 1", meanwhile);
        EXPECT_TRUE(Register()) << written;
        EXPECT_EQ(Stored("AnsLimDate, ShpDate, ArvExpDate, AnsMark"), written) << written;
        EXPECT_EQ(counts, "0 1") << written;
    }
}

TEST_F(RegistrationTest, AnUntouchedLineIsWrittenOnlyWhenSelectedAndAsItWas)
{
    for (const char *date : {"", "20260601", "99999999", "19260520", "20510101", "ABC"}) {
        LoadLine(QString("AnsLimDate = '%1', AnsVal = 25").arg(date));
        const QString before = Stored("*");
        EXPECT_TRUE(Register());
        EXPECT_EQ(Stored("*"), before) << date;
        EXPECT_TRUE(Register({1}));
        EXPECT_EQ(Stored("AnsLimDate, AnsVal, UpdPGName"), QString(date) + "|25.0|TL030101");
        EXPECT_EQ(counts, "0 0") << date;
    }
}

TEST_F(RegistrationTest, SplitsTakeOverTheLineThatWasCopied)
{
    AddOrder(1);
    AddLine(1, 1, 1, "PayKeyNo = 'KEY-0009', Biko = 'not the source'");
    AddLine(1, 1, 2,
            "PayKeyNo = 'KEY-0007', PayKeySubNp = 1, ShpVal = 40, AnsLimUmu = 3, ShpSts = 3,"
            "ShpDate = '20260401', ArvExpDate = '20260404', Biko = 'the source', AnsVal = 40,"
            "AnsLimDate = '20260404', AnsMark = '2', LimDate = '20260603', PayNo = 'P2'");
    AddLine(1, 2, 5, "PayKeyNo = 'KEYX0011', Biko = 'not this sub-line'");
    Load();
    CopyLine(edits, 2);
    CopyLine(edits, 3); // of the copy
    list.At(3).SetDate("20260603");
    list.At(3).SetQuantity(Decimal::FromText(u"12.5"));
    EXPECT_TRUE(Register());
    EXPECT_EQ(counts, "2 0");
    EXPECT_EQ(Stored("ShpSubNo, Biko, AccSubNo, LimDate, PayNo, PayKeyNo, PayKeySubNp, IndVal, "
                     "AnsVal, ShpVal, AnsLimDate, AnsMark, AnsLimUmu, ShpSts, ShpDate, ArvExpDate, "
                     "UpdPGName, UpdDate, UpdTime",
                     "ShpSubNo > 5"),
              "6|the source|1|20260603|P2|KEY-0010|2|0.0|12.5|0.0|20260603|1|0|1|20260531|20260603|"
              "TL030101|20260501|090807 "
              "7|the source|1|20260603|P2|KEY-0011|3|0.0|0.0|0.0||2|0|1|20260401|20260404|"
              "TL030101|20260501|090807");
    EXPECT_EQ(list.RowOf({1, 1, 6}), 3);
    EXPECT_EQ(list.RowOf({1, 1, 7}), 4);
}

TEST_F(RegistrationTest, AWrittenRowCountsAsUnchangedAndShowsWhatAReloadShows)
{
    AddOrder(1);
    AddOrder(2);
    AddLine(1, 1, 1, "AnsVal = 40, LimDate = '', Biko = 'it''s', AnsLimUmu = 3");
    AddLine(1, 1, 2, "AnsVal = 10, AnsLimDate = '20260601', AnsMark = '2'");
    AddLine(2, 1, 1, "AnsVal = 5");
    const auto rest = [&] { // some of what no answer touches
        return Stored("OdrNo, CustCD, Biko, LimDate, PayNo, IndVal, ShpVal, ShpSts, AnsLimUmu",
                      "ShpSubNo < 3");
    };
    const QString before = rest();
    Load();
    CopyLine(edits, 1);
    list.At(1).SetQuantity(41);
    list.At(3).SetDate("20260520");
    EXPECT_TRUE(Register({1, 2, 3, 4}));
    EXPECT_EQ(counts, "1 2");
    EXPECT_EQ(list.UnregisteredCount(), 0);
    const auto shown = [&] {
        std::multiset<QString> rows;
        for (int row = 1; row <= list.Count(); ++row)
            rows.insert(RowText(list.At(row)));
        return rows;
    };
    const auto asWritten = shown();
    Load();
    EXPECT_EQ(shown(), asWritten);
    EXPECT_EQ(rest(), before);
}

TEST_F(RegistrationTest, AnOrderIsOneTransactionWhereverItsRowsStand)
{
    for (const int accNo : {1, 2})
        AddOrder(accNo);
    AddLine(1, 1, 1, "OdrNo = 'A'");
    AddLine(1, 1, 2, "OdrNo = 'C'");
    AddLine(2, 1, 1, "OdrNo = 'B'");
    state.conditions.sortKeys[0] = "ODRNO";
    Load();
    for (int row = 1; row <= 3; ++row)
        list.At(row).SetDate("20260601");
    file.Refuse("UPDATE", "NEW.ShpSubNo = 2");
    EXPECT_FALSE(Register());
    EXPECT_EQ(boxes.TakeTexts().back(), NotRegistered + "C");
    EXPECT_EQ(Stored("AnsLimDate"), "  ") << "nothing of the order, and none behind it";
    EXPECT_EQ(list.UnregisteredCount(), 3);
}

TEST_F(RegistrationTest, AFailingOrderIsLeftAloneAndMayBeRegisteredAgain)
{
    constexpr auto Refuse = "refuse";
    enum Told { Only15, NoDataFirst, EngineErrorFirst };
    const std::tuple<const char *, const char *, Told> cases[] = {
        {"UPDATE TLSP0010 SET DpoFlg = 1 WHERE AccNo = 2", "UPDATE TLSP0010 SET DpoFlg = 0",
         NoDataFirst},
        {"UPDATE TLSP0010 SET AccNo = 2, ShpSubNo = 2147483647 WHERE AccNo = 9",
         "UPDATE TLSP0010 SET AccNo = 9 WHERE ShpSubNo > 9", Only15},
        {"UPDATE TLSP0010 SET Tan = '1,5' WHERE AccNo = 2", "UPDATE TLSP0010 SET Tan = 0", Only15},
        {Refuse, "", EngineErrorFirst},
    };
    for (const auto &[cause, cure, told] : cases) {
        SCOPED_TRACE(cause);
        LoadThreeOrders();
        AddLine(9, 1, 1); // of no order in the list
        if (file.IsOnServer() && QByteArrayView(cause).contains("1,5"))
            continue; // a number is a number there
        if (cause == Refuse)
            file.Refuse("INSERT");
        else
            file.Run(cause);
        const QString before = Stored("*", "AccNo > 1");
        EXPECT_FALSE(Register());
        const Texts texts = boxes.TakeTexts();
        ASSERT_EQ(texts.size(), told == Only15 ? 1u : 2u);
        EXPECT_EQ(texts.front() == NoData, told == NoDataFirst);
        EXPECT_EQ(texts.front().startsWith("ｴﾗｰｺｰﾄﾞ："), told == EngineErrorFirst);
        EXPECT_TRUE(texts.back().startsWith(NotRegistered + "PO-2"));
        EXPECT_EQ(texts.back() != NotRegistered + "PO-2", told == Only15) << "the reason";
        EXPECT_EQ(counts, "0 1") << "only what was committed counts";
        EXPECT_EQ(Stored("AnsLimDate", "AccNo = 1"), "20260601");
        EXPECT_EQ(Stored("*", "AccNo > 1"), before);
        EXPECT_EQ(list.UnregisteredCount(), 3);
        EXPECT_TRUE(list.At(2).IsStored() && !list.At(3).IsStored());

        if (cause == Refuse)
            file.RefuseNothing();
        else
            file.Run(cure);
        EXPECT_TRUE(Register());
        EXPECT_EQ(counts, "1 2");
        EXPECT_EQ(Stored("AccNo, AnsVal, AnsLimDate", "AccNo < 9 AND ShpSubNo < 9"),
                  "1|60.0|20260601 2|60.0|20260601 2|40.0| 3|60.0|20260601");
    }
    LoadThreeOrders();
    file.Run("DELETE FROM TLSP0010 WHERE AccNo = 2");
    list.At(2).TakeStored(list.At(2).Now());
    EXPECT_FALSE(Register()) << "a split without its source";
    EXPECT_EQ(boxes.TakeTexts(), (Texts{NoData, NotRegistered + "PO-2"}));
}

TEST_F(RegistrationTest, AnOrderChangedElsewhereIsLeftToTheOther)
{
    for (const char *change : {"AnsLimDate = '20260610'", "AnsVal = 30", "AnsLimUmu = 3"}) {
        SCOPED_TRACE(change);
        LoadThreeOrders();
        Change("TLSP0010", "AccNo = 2", change);
        const QString before = Stored("*", "AccNo = 2");
        EXPECT_TRUE(Register()) << "the run goes on";
        EXPECT_EQ(leftOut.Text(), "注文№ PO-2");
        leftOut.Tell();
        EXPECT_TRUE(boxes.TakeTexts().at(0).endsWith("一覧に今の内容を表示しました"));
        EXPECT_EQ(counts, "0 2");
        EXPECT_EQ(Stored("*", "AccNo = 2"), before);
        const Answer stored = list.At(2).Now();
        Load();
        EXPECT_EQ(stored, list.At(2).Now()) << "as the list shows it anew";
    }
    LoadThreeOrders();
    Change("TLSP0010", "AccNo > 1", "AnsVal = 30");
    EXPECT_TRUE(Register());
    leftOut.Tell();
    EXPECT_EQ(boxes.TakeTexts(),
              Texts{"作成できませんでした\r注文№ PO-2、PO-3 は、ほかの人が変更しています。"
                    "一覧に今の内容を表示しました"});
}

TEST_F(RegistrationTest, AnInsertFollowsTheColumnsOfTheFile)
{
    // Columns in an order of their own, and some that only another program knows.
    const QString columns = file.Rows("SELECT group_concat(name) FROM (SELECT name FROM "
                                      "pragma_table_info('TLSP0010') ORDER BY name DESC)");
    file.Run("CREATE TABLE Other AS SELECT " + columns
             + " FROM TLSP0010; DROP TABLE TLSP0010; ALTER TABLE Other RENAME TO TLSP0010;"
               "ALTER TABLE TLSP0010 ADD COLUMN LabelNo TEXT;"
               "ALTER TABLE TLSP0010 ADD COLUMN Weight REAL;"
               "ALTER TABLE TLSP0010 ADD COLUMN Seal BLOB;"
               "INSERT INTO TLSP0010 (AccNo, AccSubNo, ShpSubNo, DpoFlg, OdrNo, LabelNo, Weight, "
               "Seal) VALUES (7, 2, 1, 0, 'P''O', 'L''1|2 ', 0.30000000000000004, x'00FF')");
    const auto source = state.db.OpenRS(BuildLineSql({7, 2, 1}));
    ASSERT_TRUE(source);
    EXPECT_TRUE(state.db.DBExecute(*BuildInsertSql(
        *source, {2, "", 1}, {"20261210", "", "", Decimal::FromText(u"40.5"), "1"}, {})));
    EXPECT_EQ(file.Rows("SELECT AccNo, AccSubNo, OdrNo, AnsVal, LabelNo, Weight = 0.1 + 0.2, "
                        "hex(Seal) FROM TLSP0010 WHERE ShpSubNo = 2"),
              "7|2|P'O|40.5|L'1|2 |1|00FF");
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(RegistrationTest, ShipDateIsTheAnsweredDateLessTheTransportDays)
{
    // The customer C1 is of the company VAN001, whose destination D1 is three days away.
    file.Run("INSERT INTO TLMT0040 (CustCD, VanCD, DpoFlg) VALUES ('GONE', 'VAN001', 1), ('O''C', "
             "'VAN002-REST', 0), ('LOW', 'van002', 0)");
    file.Run("INSERT INTO TLMT0050 (CustCoCD, PayDstCD, PayNeedDays, DpoFlg) VALUES "
             "('VAN001', 'DN', NULL, 0), "
             "('VAN001', 'DH', 1e9, 0), ('VAN001', 'DX', 5, 1), "
             "('VAN002', 'D''1', 1, 0), ('VAN002', 'D1', 2, 0), ('VAN0', 'D1', 9, 0)");
    const std::tuple<const char *, const char *, const char *, const char *> cases[] = {
        {"19970528", "C1", "D1", "19970525"},
        {"20261202", "O'C", "D1", "20261130"}, // one code of two companies
        {"20261202", "LOW", "D1", "20261130"}, // codes in small letters
        {"20261202", "C1", "DH", "20261202"},  // more days than the calendar has
        {"20261202", "C1", "DN", "20261202"},  // not known
        {"20261202", "C1", "", "20261202"},
        {"20261202", "C1", "DX", "20261202"}, // deleted
        {"20261202", "GONE", "D1", "20261202"},
        {"20261202", "O'C  ", "D'1 ", "20261201"},
    };
    for (const auto &[answered, customer, destination, shipDate] : cases)
        EXPECT_EQ(ShipDate(state.db, answered, customer, destination), QString(shipDate))
            << answered << ' ' << customer << ' ' << destination;
    EXPECT_TRUE(boxes.Shown().empty());

    file.Run("DROP TABLE TLMT0050");
    EXPECT_EQ(ShipDate(state.db, "20261202", "C1", "D1"), std::nullopt);
    EXPECT_EQ(boxes.TakeTexts().size(), 1u);
}

TEST(PayKeyTest, NextNumberOfTheOrder)
{
    const std::tuple<QString, int, std::vector<QString>, QString> cases[] = {
        {"KEY0001  ", 0, {"KEY0001"}, "KEY0001"}, // never split
        {"KEY0001", 1, {"KEY0001", "KEY0007 ", "KEY0003"}, "KEY0008"},
        {"KEY0001", 1, {"KEX0050", "KEY10060", "EY0070"}, "KEY0002"}, // other stems
        {"KEY9999", 1, {"KEY9999", "KEY0000", "KEY0001"}, "KEY0002"}, // a free one
        {"KEY12B4", 1, {"KEY12B4"}, "KEY0013"}, // the number ends at the letter
        {"123", 1, {"123"}, "123"}              // too short to hold one
    };
    for (const auto &[key, subNp, keysOfOrder, next] : cases)
        EXPECT_EQ(NextPayKey(key, subNp, keysOfOrder), next);
}
