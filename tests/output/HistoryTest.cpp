#include "output/AnswerRun.h"
#include "platform/System.h"

namespace {

class HistoryTest : public AnswerRun
{
protected:
    /// These columns of the history, the oldest answer of each line first.
    QString History(const QString &columns)
    {
        return file.Rows("SELECT " + columns
                         + " FROM TLAH0010 ORDER BY AccNo, AccSubNo, ShpSubNo, AnsNo");
    }

    void MakeAll()
    {
        Load();
        SelectAll();
        saysYes = true;
        Make();
    }
};

constexpr auto What = "AccNo, AccSubNo, ShpSubNo, AnsNo, CustCD, OdrNo, PayNo, LimDate, AnsLimDate,"
                      "AnsVal, AnsMark, AnsKBN, RecNo, RecPath";

} // namespace

TEST_F(HistoryTest, ARowForEachLineThatIsAnswered)
{
    const struct
    {
        const char *customer;
        const char *line;    ///< what an UPDATE sets in the second of two lines
        const char *history; ///< of each line: what is not the same for all
    } cases[] = {
        {"LinKBN = 1", "AnsVal = 2.125, AnsMark = '1'",
         "1|20261202|10.0|2|1|00001|C:\\C1.TXT 2|20261202|2.125|1|1|00001|C:\\C1.TXT"},
        {"LinKBN = 1", "AnsLimDate = '        ', AnsMark = ' '",
         "1|20261202|10.0|2|1|00001|C:\\C1.TXT 2||10.0||1|00001|C:\\C1.TXT"},
        {"LinKBN = 2", "AnsLimDate = ''", "1|20261202|10.0|2|1|00001|C:\\C1.TXT"},
        {"LinKBN = 1", "AnsVal = 0", "1|20261202|10.0|2|1|00001|C:\\C1.TXT"},
        {"LinKBN = 1", "ShpSts = 3", "1|20261202|10.0|2|1|00001|C:\\C1.TXT"},
        {"LinKBN = 1", "DpoFlg = 1", "1|20261202|10.0|2|1|00001|C:\\C1.TXT"},
        // On its way: sent, though it gets no mark.
        {"LinKBN = 1", "ShpSts = 2",
         "1|20261202|10.0|2|1|00001|C:\\C1.TXT 2|20261202|10.0|2|1|00001|C:\\C1.TXT"},
        {"LinKBN = 1", "AnsLimUmu = 3",
         "1|20261202|10.0|2|2|00001|C:\\C1.TXT 2|20261202|10.0|2|2|00001|C:\\C1.TXT"},
        // Of a customer without records.
        {"NokiInfKBN = 0", "AnsVal = 3", "1|20261202|10.0|2|1|| 2|20261202|3.0|2|1||"},
        {"NokiInfKBN = 0", "AnsLimUmu = 3", "1|20261202|10.0|2|2|| 2|20261202|10.0|2|2||"},
        {"HenpVerPath = '11SIDE'", "ShpSts = 3", "1|20261202|10.0|2|1|00001|C:\\C1.TXT"},
    };
    AddCustomer("C1");
    for (const auto &[customer, line, history] : cases) {
        SCOPED_TRACE(std::string(customer) + ", " + line);
        Clear();
        file.Run("DELETE FROM TLMT0040");
        AddCustomer("C1", customer);
        AddOrder(1, "C1");
        AddLine(1, 1);
        AddLine(1, 2, line);
        Load();
        Select({list.RowOf({1, 1, 1})}); // answers the whole order
        saysYes = true;
        Make();
        EXPECT_EQ(History("ShpSubNo, AnsLimDate, AnsVal, AnsMark, AnsKBN, RecNo, RecPath"),
                  history);
    }
}

TEST_F(HistoryTest, WhoAnsweredWhatAndWhen)
{
    AddCustomer("C1", "NokiInfPath = ' C:\\O''X.TXT '");
    AddOrder(1, "C1");
    AddLine(1, 1, "OdrNo = 'A|''B ', PayNo = NULL, LimDate = NULL");
    MakeAll();
    EXPECT_EQ(History(What), "1|1|1|1|C1|A|'B|||20261202|10.0|2|1|00001|C:\\O'X.TXT");
    // Now, whenever the list was loaded.
    EXPECT_EQ(History("DpoFlg, UpdPGName, UpdDate, UpdTime"), "0|TL030101|20261125|101112");
    EXPECT_EQ(History("UserName, MachineName"), UserName() + '|' + MachineName());
}

TEST_F(HistoryTest, AnEarlierAnswerStays)
{
    AddCustomer("C1");
    AddCustomer("C2", "NokiInfKBN = 0");
    AddOrder(1, "C1");
    AddLine(1, 1);
    AddOrder(2, "C2");
    AddLine(2, 1);
    MakeAll();
    const QString first = History("*");
    file.Run("UPDATE TLSP0010 SET AnsLimDate = '20261209', AnsVal = 4, OdrNo = 'OTHER'");
    MakeAll();
    const QString columns = "AccNo, AnsNo, OdrNo, AnsLimDate, AnsVal, AnsKBN, RecNo";
    EXPECT_EQ(History(columns), "1|1|PO-1|20261202|10.0|1|00001 1|2|OTHER|20261209|4.0|2|00002 "
                                "2|1|PO-2|20261202|10.0|1| 2|2|OTHER|20261209|4.0|2|");
    file.Run("DELETE FROM TLAH0010 WHERE AnsNo = 2");
    EXPECT_EQ(History("*"), first);
}

TEST_F(HistoryTest, AnOrderApartFromItselfIsAnsweredTwice)
{
    AddCustomer("C1");
    AddOrder(1, "C1");
    AddLine(1, 1, "AccHinCD = 'A'");
    AddLine(1, 2, "AccHinCD = 'C'");
    AddOrder(2, "C1");
    AddLine(2, 1, "AccHinCD = 'B'");
    MakeAll();
    EXPECT_EQ(History("AccNo, ShpSubNo, AnsNo, AnsKBN, RecNo"),
              "1|1|1|1|00001 1|1|2|2|00003 1|2|1|1|00001 1|2|2|2|00003 2|1|1|1|00002");
}

TEST_F(HistoryTest, ADatabaseMayBeWithoutIt)
{
    AddCustomer("C1");
    AddOrder(1, "C1");
    AddLine(1, 1);
    const QString table = file.Rows("SELECT sql FROM sqlite_master WHERE name = 'TLAH0010'");
    file.Run("DROP TABLE TLAH0010");
    MakeAll();
    EXPECT_EQ(boxes.TakeTexts().size(), 1u) << "the summary";
    EXPECT_EQ(file.Rows("SELECT AnsLimUmu FROM TLSP0010"), "3");
    file.Run(table); // while the program runs
    MakeAll();
    EXPECT_EQ(History("AnsNo, AnsKBN, RecNo"), "1|2|00002");
}

TEST_F(HistoryTest, WhereItsTableCanNotBeReadNothingIsAnsweredWithoutIt)
{
    AddCustomer("C1");
    AddOrder(1, "C1");
    AddLine(1, 1);
    Load();
    SelectAll();
    file.Run("ALTER TABLE TLAH0010 RENAME COLUMN RecNo TO Other");
    Make();
    EXPECT_EQ(file.Rows("SELECT AnsLimUmu FROM TLSP0010"), "0");
    EXPECT_EQ(AnswerFiles(), QStringList()) << "it would go out again with every attempt";
    EXPECT_TRUE(boxes.TakeTexts().at(1).startsWith("更新されませんでした\r"));
}
