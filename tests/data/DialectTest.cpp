#include "data/dao/Dialect.h"

#include "data/Tables.h"
#include "data/bDAO.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <gtest/gtest.h>

TEST(Dialect, Translations)
{
    constexpr struct
    {
        const char *statement;
        const char *native;
    } cases[] = {
        {"x = 'A' & Chr(124) & 'B'", "x = 'A|B'"},
        {"x = '' & Chr(124) & '' & Chr(124) & ''", "x = '||'"},
        {"x = 'O''N' & chr ( 124 ) & '''S'", "x = 'O''N|''S'"},
        {"x = 'A' & y & 'B'", "x = 'A' || y || 'B'"},
        {"x = \"it's\"", "x = 'it''s'"},
        {"x = \"say \"\"hi\"\"\"", "x = 'say \"hi\"'"},
        {"x LIKE 'AB*'", "x LIKE 'AB%'"},
        {"x Like 'AB'", "x LIKE 'AB'"},
        {"x LIKE '*'", "x LIKE '%'"},
        {"x NOT LIKE 'AB*'", "x NOT LIKE 'AB%'"},
        {"x LIKE '12[#]4*'", "x LIKE '12#4%'"},
        {"x LIKE 'A' & Chr(124) & 'B*'", "x LIKE 'A|B%'"},
        {"x LIKE '10%_*'", "x LIKE '10\\%\\_%' ESCAPE '\\'"},
        {"x LIKE 'C:\\A*'", "x LIKE 'C:\\\\A%' ESCAPE '\\'"},
        {"x LIKE 'O''N*'", "x LIKE 'O''N%'"},
        {"T.x LIKE 'A?*'", "like_pattern('A?*', T.x )"},
        {"a = 1 AND T.x LIKE '*A*' AND b = 2", "a = 1 AND like_pattern('*A*', T.x ) AND b = 2"},
        {"x LIKE '[]]*'", "like_pattern('[]]*', x )"},
        {"x NOT LIKE '#'", "NOT like_pattern('#', x )"},
        {"Left$(x, 2) LIKE '[ab]'", "like_pattern('[ab]', left_text(x, 2) )"},
        {"(x) LIKE '?'", "like_pattern('?', (x) )"},
        {"CustCD LIKE 'A*'ORDER BY CustCD", "CustCD LIKE 'A%'ORDER BY CustCD"},
        {"LEFT$(T.V,6)", "left_text(T.V,6)"},
        {"Select TOP 1 * From T;", "Select * From T LIMIT 1;"},
        {"select top 3 a from T order by a", "select a from T order by a LIMIT 3"},
        {"SELECT [Order Date], Top FROM T", "SELECT [Order Date], Top FROM T"},
        {"UPDATE A INNER JOIN B ON A.k = B.k SET A.x = 3,A.y = B.y WHERE A.n = 1 OR B.n = 2;",
         "UPDATE A SET x = 3,y = B.y FROM B WHERE (A.k = B.k) AND ( A.n = 1 OR B.n = 2);"},
        {"UPDATE A INNER B JOIN C ON A.k = C.k SET A.x = 3",
         "UPDATE A INNER B JOIN C ON A.k = C.k SET A.x = 3"},
        {"UPDATE A SET x = 'UPDATE B INNER JOIN C ON SET'",
         "UPDATE A SET x = 'UPDATE B INNER JOIN C ON SET'"},
        {"x = 'SELECT TOP 1 LIKE ''A*'' & Chr(124) Left$('", // nothing in a literal is touched
         "x = 'SELECT TOP 1 LIKE ''A*'' & Chr(124) Left$('"},
        {"x = 'it''s", "x = 'it''s"}, // what is not closed is for SQLite to refuse
        {"x = \"it's & 'a", "x = \"it's & 'a"},
        {"UPDATE A INNER JOIN B ON A.k = \"b\" SET [x = 1",
         "UPDATE A INNER JOIN B ON A.k = \"b\" SET [x = 1"},
        {"x = 'a'\"b\"", "x = 'a' 'b'"},
        {"x = 'a'Chr(66)", "x = 'a' 'B'"},
        {"x <> '' AND y >= 2.5", "x <> '' AND y >= 2.5"},
        {"", ""},
    };
    const auto simplified = [](const QString &sql) {
        return QString(sql).simplified().replace(" ;", ";").replace(" )", ")").replace("( ", "(");
    };
    for (const auto &[statement, native] : cases)
        EXPECT_EQ(simplified(ToSqlite(statement)), simplified(native)) << statement;
}

namespace {

/// Runs the system's statements on three orders of customers that differ in what they answer.
class StatementTest : public testing::Test
{
protected:
    void SetUp() override
    {
        InsertCustomers();
        InsertOrders();
        InsertLines();
        database.Insert("TLMT0010", {{"CoCD", "FIRST"}, {"DefCustCD", "C#1"}});
        database.Insert("TLMT0010", {{"CoCD", "SECOND"}});
        database.Insert("TLMT0020", {{"AccHinCD", "P-1"}, {"HinName", "ﾅｯﾄ"}, {"ReadTime", 5}});
        database.Insert("TLMT0020", {{"AccHinCD", "P-12"}, {"HinName", "ﾎﾞﾙﾄ"}});
        database.Insert("TLMT0020", {{"AccHinCD", "P#2"}, {"HinName", "ﾈｼﾞ"}, {"DpoFlg", 1}});
        database.Insert("TLMT0050",
                        {{"CustCoCD", "VAN001"}, {"PayDstCD", "D1"}, {"PayNeedDays", 3}});
        database.Insert("TLMT0050",
                        {{"CustCoCD", "VAN002"}, {"PayDstCD", "D1"}, {"PayNeedDays", 9}});
        database.Insert("TLEI0010", {{"AccNo", 1}, {"KobaiTanto", "ﾔﾏﾀﾞ"}, {"CockKBN", "K"}});
        database.Insert("TLEI0011", {{"AccNo", 1}, {"F055", "f55"}, {"F082", "2"}});
        database.Open(db);
    }

    void InsertCustomers()
    {
        database.Insert("TLMT0040", {{"CustCD", "C#1"},
                                     {"CustName", "一番商事"},
                                     {"VanCD", "VAN001XX"},
                                     {"LinKBN", 1},
                                     {"NokiInfKBN", 1},
                                     {"NokiInfPath", "C:\\EDI\\ANS.TXT"},
                                     {"TEL", "03"}});
        database.Insert("TLMT0040", {{"CustCD", "C21"},
                                     {"CustName", "二番|商事"},
                                     {"VanCD", "VAN2"},
                                     {"LinKBN", 2},
                                     {"NokiInfKBN", 1},
                                     {"NokiInfPath", "C:\\EDI\\ANS.TXT"}});
        database.Insert("TLMT0040", {{"CustCD", "D'1"},
                                     {"CustName", "三番"},
                                     {"LinKBN", 2},
                                     {"NokiInfKBN", 0},
                                     {"NokiInfPath", "C:\\X.TXT"}});
        database.Insert("TLMT0040",
                        {{"CustCD", "Z9"}, {"CustName", "除外"}, {"DpoFlg", 1}, {"NokiInfKBN", 1}});
    }

    void InsertOrders()
    {
        const struct
        {
            int accNo;
            const char *custCD;
            int shpSts;
        } orders[] = {{1, "C#1", 1}, {2, "C21", 1}, {3, "D'1", 1}, {4, "C#1", 3}};
        for (const auto &[accNo, custCD, shpSts] : orders)
            database.Insert("TLAC0010", {{"AccNo", accNo},
                                         {"CustCD", custCD},
                                         {"AccDate", "1997051" + QString::number(accNo)},
                                         {"AccHinName", "品名" + QString::number(accNo)},
                                         {"ShpSts", shpSts},
                                         {"ZanVal", 100},
                                         {"EDIKBN", 1}});
    }

    void InsertLines()
    {
        const struct
        {
            int accNo, accSubNo, shpSubNo;
            const char *custCD, *odrNo, *ansLimDate;
            double ansVal;
            int denKBN, shpSts;
        } lines[] = {
            {1, 1, 1, "C#1", "A-10", "", 60, 2, 1},
            {1, 1, 2, "C#1", "A-10", "19970601", 40, 15, 1},
            {1, 2, 3, "C#1", "A-10", "19970601", 40, 2, 2},
            {1, 2, 4, "C#1", "A-10", "19970601", 0, 2, 1},
            {1, 2, 5, "C#1", "A-10", "19970601", 40, 2, 4},
            {2, 1, 1, "C21", "a-1|x", "", 60, 2, 1},
            {2, 1, 2, "C21", "a-1|x", "19970601", 40, 2, 1},
            {3, 1, 1, "D'1", "B'7", "19970601", 5, 2, 1},
            {4, 1, 1, "C#1", "A-10", "", 5, 2, 1},
            {1, 1, 7, "C#1", "A-10", "19970531", 5, 3, 1},
        };
        for (const auto &line : lines)
            database.Insert("TLSP0010", {{"AccNo", line.accNo},
                                         {"AccSubNo", line.accSubNo},
                                         {"ShpSubNo", line.shpSubNo},
                                         {"CustCD", line.custCD},
                                         {"OdrNo", line.odrNo},
                                         {"AnsLimDate", line.ansLimDate},
                                         {"AnsVal", line.ansVal},
                                         {"DenKBN", line.denKBN},
                                         {"ShpSts", line.shpSts},
                                         {"LimDate", "19970528"},
                                         {"AccHinCD", "P-1"},
                                         {"PayDstCD", "D1"},
                                         {"HinCD", "H-1"},
                                         {"PayKeyNo", "KEY" + QString::number(line.shpSubNo)}});
    }

    /// The values of one column in each row of the statement, joined by blanks.
    QString Column(const QString &sql, const char *column)
    {
        QStringList values;
        const auto rows = db.OpenRS(sql);
        for (; rows && !rows->IsEof(); rows->MoveNext())
            values += rows->Text(QString(column));
        EXPECT_TRUE(rows) << sql.toStdString();
        return values.join(' ');
    }

    QString Lines(const QString &sql)
    {
        QStringList values;
        const auto rows = db.OpenRS(sql);
        for (; rows && !rows->IsEof(); rows->MoveNext())
            values += rows->Text(u"ACCNO") + '.' + rows->Text(u"accsubno") + '.'
                      + rows->Text(u"ShpSubNo");
        return values.join(' ');
    }

    void TearDown() override
    {
        for (const QString &text : boxes.TakeTexts())
            ADD_FAILURE() << text.toStdString();
    }

    ScriptedBoxes boxes;
    TestDatabase database;
    bDAO db;
};

QString ListStatement(const QString &customer, const QString &conditions)
{
    return "SELECT  TLSP0010.AccNo,TLSP0010.ShpSubNo,TLSP0010.AccSubNo,TLSP0010.AnsMark"
           ",TLSP0010.OdrNo,TLSP0010.AccVal,TLSP0010.LimDate,TLSP0010.PayNo,TLSP0010.IndVal"
           ",TLSP0010.AnsLimDate,TLSP0010.AnsVal,TLSP0010.ShpSts,TLSP0010.ShpVal"
           ",TLSP0010.AnsLimUmu,TLSP0010.DenKBN,TLAC0010.EDIKBN,TLAC0010.ZanVal"
           ",TLSP0010.ContractKBN,TLAC0010.AccHinCD as HinCD ,TLMT0040.LinKBN"
           ",TLMT0040.NokiInfPath,TLMT0040.NokiInfKBN,TLAC0010.AccHinName,TLAC0010.F019"
           ",TLSP0010.CustSecCD FROM TLSP0010,TLAC0010,TLMT0040  WHERE "
           "TLSP0010.CUSTCD LIKE '"
           + LikeText(SqlText(customer)) + "*' AND (TLSP0010.DenKBN = 2 OR TLSP0010.DenKBN = 15) "
           + conditions
           + "AND TLAC0010.ACCNO = TLSP0010.ACCNO  AND TLSP0010.AccNo = TLAC0010.AccNo "
             " AND TLAC0010.ShpSts <> 3 AND TLSP0010.ShpSts <> 4 "
             "AND TLSP0010.CustCD = TLMT0040.CustCD "
             "AND TLSP0010.DpoFlg = 0 AND TLAC0010.DpoFlg = 0 AND TLMT0040.DpoFlg = 0 "
             "ORDER BY TLSP0010.ACCHINCD,TLSP0010.ODRNO,TLSP0010.MFACTNO,TLSP0010.LIMDATE,"
             "TLSP0010.CUSTCD,TLSP0010.ACCNO,TLSP0010.ACCSUBNO,TLSP0010.ANSLIMDATE,"
             "TLSP0010.SHPSUBNO,TLSP0010.PAYKEYNO;";
}

QString AnswerableLines()
{
    return " ( ( TLMT0040.LinKBN = 1 AND TLSP0010.AnsVal <> 0 ) OR "
           " ( TLMT0040.LinKBN = 2 AND TLSP0010.AnsLimDate <> '' AND TLSP0010.AnsVal <> 0 ) ) AND ";
}

QString AnswerStatement(int accNo, bool isEdi)
{
    return QString("SELECT  TLSP0010.CustCD ,TLSP0010.AccNo,TLSP0010.AccSubNo,TLSP0010.ShpSubNo"
                   ",TLMT0040.CustKBN ")
           + (isEdi ? ",TLEI0010.CockKBN ,TLEI0010.KobaiTanto " : "")
           + ",TLMT0040.VanCD ,TLMT0040.HenpVerPath  FROM TLSP0010,TLMT0040 "
           + (isEdi ? " ,TLEI0010 " : "") + "WHERE  TLSP0010.AccNo = " + QString::number(accNo)
           + " AND " + (isEdi ? " TLSP0010.AccNo = TLEI0010.AccNo AND " : "")
           + " TLSP0010.CustCD = TLMT0040.CustCD AND  TLSP0010.ShpSts < 3  AND " + AnswerableLines()
           + " TLSP0010.DpoFlg = 0 AND " + (isEdi ? " TLEI0010.DpoFlg = 0 AND " : "")
           + " TLMT0040.DpoFlg = 0  ORDER BY  TLSP0010.AccSubNo ASC,TLSP0010.IndVal DESC"
             ",TLSP0010.AnsLimDate ASC;";
}

QString DetailStatement(int accNo)
{
    return "SELECT  TLSP0010.CustCD  ,TLSP0010.CustSecCD  ,TLSP0010.AnsVal  ,TLEI0010.KobaiTanto "
           " ,TLEI0011.F055  ,TLEI0011.F082  ,TLAC0010.AccTan  ,TLAC0010.ZanVal "
           " ,TLMT0020.ReadTime  ,TLMT0040.CustName  ,TLMT0040.CustKBN "
           " From (((((TLSP0010 Left    Join TLEI0011 On      TLSP0010.AccNo = TLEI0011.AccNo)"
           " Left    Join TLEI0010 On      TLSP0010.AccNo = TLEI0010.AccNo)"
           " Inner    Join TLAC0010 On      TLSP0010.AccNo = TLAC0010.AccNo)"
           " Inner   Join TLMT0020 On      TLSP0010.AccHinCD = TLMT0020.AccHinCD)"
           " Inner   Join TLMT0040 On      TLAC0010.CustCD = TLMT0040.CustCD)"
           " Where TLSP0010.AccNo    = "
           + QString::number(accNo) + " And   TLSP0010.AccSubNo = 1 And   TLSP0010.ShpSubNo = 1";
}

} // namespace

TEST_F(StatementTest, ListFindsTheLinesOfEachCondition)
{
    const QString ofC1 = "1.1.1 1.1.2 1.2.3 1.2.4";
    const QString ofC21 = "2.1.1 2.1.2";
    const struct
    {
        QString customer;
        QString conditions;
        QString lines;
    } cases[] = {
        {"", "", ofC1 + ' ' + ofC21 + " 3.1.1"},
        {"C#1", "", ofC1},
        {"C#", "", ofC1},
        {"c", "", ofC1 + ' ' + ofC21},
        {"C2", "", ofC21},
        {"C1", "", ""},
        {"D'1  ", "", "3.1.1"},
        {"C", "AND TLSP0010.ODRNO LIKE 'A-1|*' ", ofC21},
        {"C", "AND TLAC0010.AccHinName LIKE '品名1*' ", ofC1},
        {"", "AND TLSP0010.ACCHINCD LIKE 'P-1*' AND TLSP0010.PAYKEYNO LIKE 'key2*' ",
         "1.1.2 2.1.2"},
        {"", "AND TLSP0010.ODRNO LIKE 'B''7*' ", "3.1.1"},
        {"", " And TLAC0010.AccDate >= '19970512'    And TLAC0010.AccDate <= '19970513' ",
         ofC21 + " 3.1.1"},
        {"", " And TLSP0010.LimDate >= '19970529' ", ""},
    };
    for (const auto &[customer, conditions, lines] : cases)
        EXPECT_EQ(Lines(ListStatement(customer, conditions)), lines)
            << customer.toStdString() << ' ' << conditions.toStdString();
}

TEST_F(StatementTest, ListColumnsAreReadByTheirNames)
{
    database.Run("UPDATE TLAC0010 SET AccHinCD = 'ORDERED' WHERE AccNo = 3");
    const auto rows = db.OpenRS(ListStatement("D'1", ""));
    ASSERT_TRUE(rows && !rows->IsEof());
    EXPECT_EQ(rows->FieldCount(), 25);
    EXPECT_EQ(rows->Text(u"HinCD"), "ORDERED");
    EXPECT_EQ(rows->Text(u"NokiInfPath"), "C:\\X.TXT");
    EXPECT_EQ(rows->Number(u"AnsVal"), 5);
}

TEST_F(StatementTest, AnswerableLinesFollowTheCustomersRule)
{
    EXPECT_EQ(Lines(AnswerStatement(1, true)), "1.1.1 1.1.7 1.1.2 1.2.3");
    EXPECT_EQ(Lines(AnswerStatement(2, false)), "2.1.2");
    EXPECT_EQ(Lines(AnswerStatement(2, true)), "") << "the order was not received by EDI";
    EXPECT_EQ(Column(AnswerStatement(1, true), "KobaiTanto"), "ﾔﾏﾀﾞ ﾔﾏﾀﾞ ﾔﾏﾀﾞ ﾔﾏﾀﾞ");
}

TEST_F(StatementTest, MarkingChangesTheAnswerableLinesOnly)
{
    const auto mark = [this](int accNo) {
        return db.DBExecute("UPDATE TLSP0010  INNER JOIN TLMT0040 ON "
                            " TLSP0010.CustCD = TLMT0040.CustCD  SET  TLSP0010.AnsLimUmu = 3 "
                            ",TLSP0010.UpdPGName = 'TL030101',TLSP0010.UpdDate = '19970528'"
                            ",TLSP0010.UpdTime = '090807'  WHERE  TLSP0010.AccNo = "
                            + QString::number(accNo) + " AND  TLSP0010.ShpSts = 1 AND "
                            + AnswerableLines() + " TLSP0010.DpoFlg = 0 AND TLMT0040.DpoFlg = 0 ;");
    };
    const QString marked = "SELECT AccNo || '.' || AccSubNo || '.' || ShpSubNo FROM TLSP0010"
                           " WHERE AnsLimUmu = 3 AND UpdPGName = 'TL030101'"
                           " AND UpdDate = '19970528' AND UpdTime = '090807' ORDER BY 1";
    EXPECT_TRUE(mark(2));
    EXPECT_EQ(database.Rows(marked), "2.1.2");
    EXPECT_TRUE(mark(1));
    EXPECT_EQ(database.Rows(marked), "1.1.1 1.1.2 1.1.7 2.1.2");
    EXPECT_EQ(database.Rows("SELECT count(*) FROM TLSP0010 WHERE UpdDate <> ''"), "4");
}

TEST_F(StatementTest, DetailShowsLinesWithAndWithoutEiajRows)
{
    auto rows = db.OpenRS(DetailStatement(1));
    ASSERT_TRUE(rows);
    ASSERT_EQ(rows->RecordCount(), 1);
    EXPECT_EQ(rows->Text(u"CustName"), "一番商事");
    EXPECT_EQ(rows->Text(u"F082"), "2");
    EXPECT_EQ(rows->Number(u"ReadTime"), 5);

    rows = db.OpenRS(DetailStatement(2));
    ASSERT_TRUE(rows);
    ASSERT_EQ(rows->RecordCount(), 1);
    EXPECT_TRUE(rows->IsNull(rows->FieldIndex(u"KobaiTanto")));
    EXPECT_EQ(db.NullToTrim(*rows, u"F082"), "");
    EXPECT_EQ(rows->Number(u"ZanVal"), 100);
}

TEST_F(StatementTest, MastersAndPickers)
{
    const QString products = "Select * From TLMT0020 ";
    const QString customers = "Select CustCD,CustName,TEL From TLMT0040";
    const struct
    {
        QString sql;
        const char *column;
        QString values;
    } cases[] = {
        {"Select TOP 1 * From TLMT0010;", "CoCD", "FIRST"},
        {"Select CUSTNAME From TLMT0040 Where CUSTCD = 'c21' And DPOFLG = 0;", "CustName",
         "二番|商事"},
        {"Select CUSTNAME From TLMT0040 Where CUSTCD = 'Z9' And DPOFLG = 0;", "CustName", ""},
        {"Select CUSTNAME From TLMT0040 Where CUSTCD = '" + SqlText("D'1  ") + "' And DPOFLG = 0;",
         "CustName", "三番"},
        {"Select HinName From TLMT0020 Where AccHinCD = 'P-1' And  DpoFlg = 0"
         " ORDER BY TLMT0020.HinName",
         "HinName", "ﾅｯﾄ"},
        {products + " Where AccHinCD Like '" + LikeText("P#") + "*' Order By AccHinCD, HinName ",
         "AccHinCD", "P#2"},
        {products + " Where AccHinCD Like 'p-*' Order By AccHinCD, HinName ", "AccHinCD",
         "P-1 P-12"},
        {products + " Order By AccHinCD, HinName ", "AccHinCD", "P#2 P-1 P-12"},
        {customers + " Where true ORDER BY CustCD", "CustCD", "C#1 C21 D'1 Z9"},
        {customers + " Where CustCD LIKE 'C[#]*'ORDER BY CustCD", "CustCD", "C#1"},
        {customers + " Where CustCD LIKE '*'ORDER BY CustCD", "CustCD", "C#1 C21 D'1 Z9"},
        {customers + " Where CustName LIKE '二番|*'ORDER BY CustCD", "CustCD", "C21"},
        {"Select Distinct NokiInfPath From TLMT0040  Where NokiInfKBN <> 0  And   "
         "NokiInfPath <> '' ",
         "NokiInfPath", "C:\\EDI\\ANS.TXT"},
        {"Select * From TLMT0040  Where NokiInfKBN  <> 0  And   NokiInfPath = 'C:\\EDI\\ANS.TXT' "
         " Order By CustCD ",
         "CustCD", "C#1 C21"},
        {"SELECT PAYNEEDDAYS FROM TLMT0040,TLMT0050 WHERE TLMT0040.CUSTCD = 'C#1' AND "
         "TLMT0050.CUSTCOCD = LEFT$(TLMT0040.VANCD,6) AND TLMT0050.PAYDSTCD = 'D1' AND "
         "TLMT0040.DPOFLG = 0 AND TLMT0050.DPOFLG = 0;",
         "PayNeedDays", "3"},
        {"SELECT PAYNEEDDAYS FROM TLMT0040,TLMT0050 WHERE TLMT0040.CUSTCD = 'C21' AND "
         "TLMT0050.CUSTCOCD = LEFT$(TLMT0040.VANCD,6) AND TLMT0050.PAYDSTCD = 'D1' AND "
         "TLMT0040.DPOFLG = 0 AND TLMT0050.DPOFLG = 0;",
         "PayNeedDays", ""},
        {"SELECT MAX(ShpSubNo) AS MaxShpSubNo FROM TLSP0010 WHERE ACCNO = 1;", "MaxShpSubNo", "7"},
        {"SELECT * FROM TLSP0010 WHERE ACCNO = 1 AND ACCSUBNO = 2 AND SHPSUBNO = 4 AND "
         "DPOFLG = 0 ;",
         "ShpSubNo", "4"},
        {"SELECT AccNo FROM TLSP0010 WHERE  AccNo = 3 AND  DpoFlg = 0 ;", "AccNo", "3"},
        {"Select * From TLSP0010 WHERE ACCNO = 1 AND AccSubNo = 2 AND ShpSts = 1 AND DpoFlg = 0 ",
         "ShpSubNo", "4"},
    };
    for (const auto &[sql, column, values] : cases)
        EXPECT_EQ(Column(sql, column), values) << sql.toStdString();
}

TEST_F(StatementTest, SavingAndDeletingALine)
{
    const QString line = "SELECT Biko, AnsLimDate, ShpDate, AnsVal, typeof(AnsVal), UpdTime"
                         " FROM TLSP0010 WHERE AccNo = 1 AND ShpSubNo = 2";
    EXPECT_TRUE(db.DBExecute("UPDATE TLSP0010 SET AnsLimDate = '19970610',ShpDate = '19970607',"
                             "ArvExpDate = '19970610',AnsVal = 12.5,AnsMark = '2',"
                             "UpdPGName = 'TL030101',UpdDate = '19970528',UpdTime = '090807' "
                             "WHERE ACCNO = 1 AND AccSubNo = 1 AND ShpSubNo = 2 AND DPOFLG = 0;"));
    EXPECT_EQ(database.Rows(line), "|19970610|19970607|12.5|real|090807");
    EXPECT_TRUE(db.DBExecute("UPDATE TLSP0010 SET Biko = 'O''N|ﾒﾓ|',AnsLimDate = '',"
                             "AnsVal = '70.25',ShpDate = '',ArvExpDate = '',"
                             "UpdPGName = 'TL030101',UpdDate = '19970528',UpdTime = '100000' "
                             "WHERE ACCNO = 1 AND AccSubNo = 1 AND ShpSubNo = 2 AND DPOFLG = 0;"));
    EXPECT_EQ(database.Rows(line), "O'N|ﾒﾓ||||70.25|real|100000");
    EXPECT_TRUE(db.DBExecute("DELETE FROM TLSP0010 WHERE ACCNO = 1 AND AccSubNo = 1 AND "
                             "ShpSubNo = 2;"));
    EXPECT_EQ(database.Rows("SELECT ShpSubNo FROM TLSP0010 WHERE AccNo = 1 AND AccSubNo = 1"
                            " ORDER BY 1"),
              "1 7");
}

TEST_F(StatementTest, SearchForOneCustomerReadsThatCustomersLinesOnly)
{
    const auto plan = [this](const QString &sql) {
        return database.Rows("EXPLAIN QUERY PLAN " + ToSqlite(sql));
    };
    for (const char *customer : {"C21", "C#1", "C_1", "0123", "O'N"}) {
        const QString list = plan(ListStatement(customer, ""));
        EXPECT_TRUE(list.contains("SEARCH TLSP0010 USING INDEX TLSP0010_CustCD (CustCD>"))
            << customer << ": " << list.toStdString();
        EXPECT_FALSE(list.contains("SCAN")) << customer << ": " << list.toStdString();
    }
    const struct
    {
        const char *where;
        const char *index;
    } cases[] = {
        {"ODRNO LIKE 'A*'", "TLSP0010_OdrNo"},
        {"ACCHINCD LIKE 'P-1*'", "TLSP0010_AccHinCD"},
        {"MFACTNO LIKE 'M*'", "TLSP0010_MfactNo"},
        {"PAYKEYNO LIKE 'K*'", "TLSP0010_PayKeyNo"},
        {"LimDate >= '19970501'", "TLSP0010_LimDate"},
        {"CUSTCD LIKE 'C21'", "TLSP0010_CustCD"},
        {"ACCNO = 1 AND ACCSUBNO = 2 AND SHPSUBNO = 4", "sqlite_autoindex_TLSP0010_1"},
    };
    for (const auto &[where, index] : cases) {
        const QString steps = plan(QString("SELECT * FROM TLSP0010 WHERE ") + where);
        EXPECT_TRUE(steps.contains(index)) << where << ": " << steps.toStdString();
    }
    EXPECT_TRUE(plan("SELECT MAX(ShpSubNo) AS MaxShpSubNo FROM TLSP0010 WHERE ACCNO = 1;")
                    .contains("AccNo=?"));
    const QString marking = plan("UPDATE TLSP0010 INNER JOIN TLMT0040 ON "
                                 "TLSP0010.CustCD = TLMT0040.CustCD SET TLSP0010.AnsLimUmu = 3 "
                                 "WHERE TLSP0010.AccNo = 1;");
    EXPECT_TRUE(marking.contains("AccNo=?")) << marking.toStdString();
    EXPECT_FALSE(marking.contains("SCAN")) << marking.toStdString();
}
