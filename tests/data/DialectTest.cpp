#include "data/dao/Dialect.h"

#include "lines/ListQuery.h"
#include "output/AnswerSql.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <gtest/gtest.h>

TEST(Dialect, Translations)
{
    constexpr std::pair<const char *, const char *> cases[] = {
        {"x = 'O''N' & chr ( 124 ) & '''S'", "x = 'O''N|''S'"},
        {"x = 'A' & y & 'B'", "x = 'A' || y || 'B'"},
        {"x = \"say \"\"hi\"\"\"", "x = 'say \"hi\"'"},
        {"x LIKE 'AB*'", "x LIKE 'AB%'"},
        {"x Not Like 'O''N*'", "x NOT LIKE 'O''N%'"},
        {"x LIKE '12[#]4*'", "x LIKE '12#4%'"},
        {"x LIKE '10%_*'", "x LIKE '10\\%\\_%' ESCAPE '\\'"},
        {"x LIKE 'C:\\A*'", "x LIKE 'C:\\\\A%' ESCAPE '\\'"},
        {"T.x LIKE 'A?*'", "like_pattern('A?*', T.x )"},
        {"a = 1 AND T.x LIKE '*A*' AND b = 2", "a = 1 AND like_pattern('*A*', T.x ) AND b = 2"},
        {"x LIKE '[]]*'", "like_pattern('[]]*', x )"},
        {"x NOT LIKE '#'", "NOT like_pattern('#', x )"},
        {"Left$(x, 2) LIKE '[ab]'", "like_pattern('[ab]', left_text(x, 2) )"},
        {"(x) LIKE '?'", "like_pattern('?', (x) )"},
        {"CustCD LIKE 'A*'ORDER BY CustCD", "CustCD LIKE 'A%'ORDER BY CustCD"},
        {"Select TOP 1 * From T;", "Select * From T LIMIT 1;"},
        {"SELECT [Order Date], Top FROM T", "SELECT [Order Date], Top FROM T"},
        {"UPDATE A INNER JOIN B ON A.k = B.k SET A.x = 3,A.y = B.y WHERE A.n = 1 OR B.n = 2;",
         "UPDATE A SET x = 3,y = B.y FROM B WHERE (A.k = B.k) AND ( A.n = 1 OR B.n = 2);"},
        {"x = 'SELECT TOP 1 LIKE ''A*'' & Chr(124) Left$('", // nothing in a literal is touched
         "x = 'SELECT TOP 1 LIKE ''A*'' & Chr(124) Left$('"},
        {"x = 'it''s", "x = 'it''s"}, // what is not closed is for SQLite to refuse
        {"UPDATE A INNER JOIN B ON A.k = \"b\" SET [x = 1",
         "UPDATE A INNER JOIN B ON A.k = \"b\" SET [x = 1"},
        {"x = 'a'Chr(66)", "x = 'a' 'B'"},
    };
    const auto simplified = [](const QString &sql) {
        return QString(sql).simplified().replace(" ;", ";").replace(" )", ")").replace("( ", "(");
    };
    for (const auto &[statement, native] : cases)
        EXPECT_EQ(simplified(ToSqlite(statement)), simplified(native)) << statement;
}

TEST(Dialect, SearchesReadThroughAnIndex)
{
    TestDatabase database;
    const QString lines = "SELECT * FROM TLSP0010 WHERE ";
    SearchConditions customer;
    customer.customerCode = "C#1";
    const std::pair<QString, const char *> cases[] = {
        {BuildListSql(customer), "SEARCH TLSP0010 USING INDEX TLSP0010_CustCD (CustCD>"},
        {lines + "CUSTCD LIKE 'C_1*'", "TLSP0010_CustCD"},
        {lines + "ODRNO LIKE 'O''N*'", "TLSP0010_OdrNo"},
        {lines + "ACCHINCD LIKE 'P-1*'", "TLSP0010_AccHinCD"},
        {lines + "MFACTNO LIKE 'M*'", "TLSP0010_MfactNo"},
        {lines + "PAYKEYNO LIKE 'K*'", "TLSP0010_PayKeyNo"},
        {lines + "LimDate >= '19970501'", "TLSP0010_LimDate"},
        {lines + "ACCNO = 1 AND ACCSUBNO = 2", "sqlite_autoindex_TLSP0010_1"},
        {BuildMarkAnsweredSql(1, {}), "AccNo=?"},
        {BuildAnswerSelectSql(1, true), "AccNo=?"},
    };
    for (const auto &[sql, index] : cases) {
        const QString steps = database.Rows("EXPLAIN QUERY PLAN " + ToSqlite(sql));
        EXPECT_TRUE(steps.contains(index)) << sql.toStdString() << ": " << steps.toStdString();
        EXPECT_FALSE(steps.contains("SCAN")) << sql.toStdString() << ": " << steps.toStdString();
    }
}
