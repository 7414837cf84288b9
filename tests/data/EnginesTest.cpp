#include "data/ErrorOf.h"
#include "data/dao/SqlText.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <algorithm>
#include <gtest/gtest.h>

// What one engine does as the other does; run on each of them.

namespace {

class EnginesTest : public testing::Test
{
protected:
    /// The first column of the rows, joined by blanks.
    QString Read(const QString &sql)
    {
        QStringList texts;
        const auto rows = database.OpenRecordset(sql);
        for (; !rows->IsEof(); rows->MoveNext())
            texts += rows->IsNull(0) ? "null" : rows->Text(0);
        return texts.join(' ');
    }

    TestDatabase file;
    Database &database = file.Other();
};

/// What texts are compared by: without ASCII case, and byte by byte.
QByteArray Compared(const QString &text)
{
    QByteArray utf8 = text.toUtf8();
    for (char &c : utf8)
        c = c >= 'A' && c <= 'Z' ? char(c + 32) : c;
    return utf8;
}

} // namespace

TEST_F(EnginesTest, TiesComeByTheKeyOfTheFirstTable)
{
    for (const int shpSubNo : {3, 1, 2})
        file.Insert("TLSP0010", {{"AccNo", 1}, {"AccSubNo", 1}, {"ShpSubNo", shpSubNo}});
    file.Insert("TLSP0010", {{"AccNo", 1}, {"AccSubNo", 1}, {"ShpSubNo", 4}, {"AnsVal", 5}});
    file.Insert("TLMT0040", {{"CustCD", ""}});
    for (const char *sql :
         {"SELECT ShpSubNo FROM TLSP0010 ORDER BY AnsVal DESC, OdrNo",
          "SELECT S.n AS N FROM (SELECT ShpSubNo AS n, AnsVal AS v FROM TLSP0010) S ORDER BY v "
          "DESC, n",
          "Select TLSP0010.ShpSubNo From (TLSP0010 Inner Join TLMT0040 On TLSP0010.CustCD = "
          "TLMT0040.CustCD) Order By TLSP0010.AnsVal Desc ;"})
        EXPECT_EQ(Read(sql), "4 1 2 3") << sql;
    EXPECT_EQ(Read("SELECT TOP 2 ShpSubNo FROM TLSP0010 ORDER BY AnsVal"), "1 2");
}

TEST_F(EnginesTest, TextsDifferInEverythingButAsciiCase)
{
    QStringList texts = {"",   "C",  "Ｃ", "ｃ", "a b",  "a-b", "aa", "AB", "_", "[", "z",
                         "ア", "あ", "ｱ",  "ガ", "カ゛", "パ",  "ﾊﾟ", "É",  "é", "ß", "ss",
                         "ー", "－", "―",  "~",  "～",   "髙",  "高", "１", "1", "①", "ﾟ"};
    for (const QString &text : texts)
        file.Insert("TLMT0020", {{"AccHinCD", text}});
    for (const char *same : {"c", "A B", "SS"})
        EXPECT_EQ(ErrorOf([&] {
                      database.Execute("INSERT INTO TLMT0020 (AccHinCD) VALUES ('" + SqlText(same)
                                       + "')");
                  }).number,
                  3022)
            << same;
    std::ranges::sort(texts, {}, Compared);
    EXPECT_EQ(Read("SELECT AccHinCD FROM TLMT0020 ORDER BY AccHinCD"), texts.join(' '));
    for (const QString &text : texts) {
        const QString upper = text.toUpper();
        const bool isThere = std::ranges::any_of(
            texts, [&](const QString &of) { return Compared(of) == Compared(upper); });
        EXPECT_EQ(Read("SELECT COUNT(*) FROM TLMT0020 WHERE AccHinCD = " + SqlQuoted(upper)),
                  isThere ? "1" : "0")
            << text.toStdString();
    }
}

TEST_F(EnginesTest, WhatALikePatternFinds)
{
    const QStringList texts = {"AB", "abc", "a%c",  "a_c", "ab\\", "12#4", "1234",
                               "*x", "ｱｲ",  "アイ", "x'y", "A\tB", "~"};
    for (const QString &text : texts)
        file.Insert("TLMT0020", {{"AccHinCD", text}});
    file.Insert("TLMT0020", {{"AccHinCD", "null"}, {"HinName", QVariant()}});
    file.Run("UPDATE TLMT0020 SET HinName = AccHinCD WHERE AccHinCD <> 'null'");
    const std::pair<const char *, const char *> cases[] = {
        {"LIKE 'AB*'", "AB ab\\ abc"},
        {"LIKE 'ab'", "AB"},
        {"LIKE 'a%*'", "a%c"},
        {"LIKE 'a_*'", "a_c"},
        {"LIKE 'ab\\*'", "ab\\"},
        {"LIKE '12[#]4*'", "12#4"},
        {"LIKE '12#4'", "1234"},
        {"LIKE '[*]*'", "*x"},
        {"LIKE 'ア*'", "アイ"},
        {"LIKE '?[!b]c'", "a%c a_c"},
        {"LIKE '?[%-_]C'", "a%c a_c"},
        {"LIKE '[A-B]?*'", "a\tb a%c a_c AB ab\\ abc"},
        {"LIKE '[c-a]*'", ""},
        {"LIKE '[]x'", ""},
        {"LIKE '*['", ""},
        {"LIKE '*''*'", "x'y"},
        {"LIKE '*[.]*'", ""},
        {"LIKE '*\\'", "ab\\"},
        {"NOT LIKE '[!~]*'", "~"},
        {"NOT LIKE '?*' OR HinName LIKE '~'", "~"},
        {"LIKE '*' AND NOT (HinName LIKE 'A*') AND HinName LIKE '*i*'", ""},
    };
    for (const auto &[condition, found] : cases) {
        QStringList expected = QString(found).split(' ', Qt::SkipEmptyParts);
        for (QString &text : expected)
            text = text == "a\tb" ? "A\tB" : text;
        EXPECT_EQ(Read(QString("SELECT HinName FROM TLMT0020 WHERE HinName ") + condition
                       + " ORDER BY HinName"),
                  expected.join(' '))
            << condition;
    }
}

TEST_F(EnginesTest, NullsComeFirst)
{
    int key = 0;
    for (const QVariant &value : {QVariant("b"), QVariant(), QVariant("a"), QVariant("")})
        file.Insert("TLMT0020", {{"AccHinCD", QString::number(++key)}, {"HinName", value}});
    EXPECT_EQ(Read("SELECT HinName FROM TLMT0020 ORDER BY HinName"), "null  a b");
    EXPECT_EQ(Read("SELECT HinName FROM TLMT0020 ORDER BY HinName DESC , AccHinCD;"), "b a  null");
    EXPECT_EQ(Read("SELECT AccHinCD FROM TLMT0020 ORDER BY LEFT$(HinName, 1) DESC, AccHinCD ASC"),
              "1 3 4 2");
}

TEST_F(EnginesTest, NumbersStayWhatTheyAre)
{
    file.Insert("TLMT0020", {{"AccHinCD", "A"}});
    file.Insert("TLSP0010", {{"AccNo", 123456789012345678ll}, {"AccSubNo", 1}, {"ShpSubNo", 1}});
    for (const double number : {0.1 + 0.2, 1234.5678, 999999999.999, 1e-7, -0.0, 12.0005}) {
        const QString literal = QString::number(number, 'g', 17);
        database.Execute("UPDATE TLSP0010 SET AnsVal = " + literal + ", Tan = '" + literal + '\'');
        const auto row = database.OpenRecordset("SELECT * FROM TLSP0010");
        EXPECT_EQ(row->Number(row->FieldIndex(u"AnsVal")), number) << literal.toStdString();
        EXPECT_EQ(row->Number(row->FieldIndex(u"Tan")), number);
        // As a split line takes it over.
        database.Execute("UPDATE TLSP0010 SET AnsVal = 0");
        database.Execute("UPDATE TLSP0010 SET AnsVal = "
                         + row->SqlLiteral(row->FieldIndex(u"AnsVal")));
        EXPECT_EQ(database.OpenRecordset("SELECT AnsVal FROM TLSP0010")->Number(0), number);
        EXPECT_EQ(row->Whole(0), 123456789012345678);
    }
}

TEST_F(EnginesTest, DistinctPathsComeInTheOrderOfTheirRows)
{
    for (const auto &[code, path] :
         {std::pair{"C1", "Z"}, {"C2", "M"}, {"C3", "z"}, {"C4", "A"}, {"C5", "M"}})
        file.Insert("TLMT0040", {{"CustCD", code}, {"NokiInfPath", path}, {"NokiInfKBN", 1}});
    EXPECT_EQ(Read("Select Distinct NokiInfPath From TLMT0040  Where NokiInfKBN <> 0 "
                   " And   NokiInfPath <> '' "),
              "Z M A");
}

TEST_F(EnginesTest, AnythingButOneStatementIsRefused)
{
    file.Insert("TLMT0020", {{"AccHinCD", "A"}});
    const QString statements[] = {"DELETE FROM TLMT0010; DELETE FROM TLMT0020",
                                  QString("DELETE FROM TLMT0020") + QChar(0) + " WHERE 1 = 2",
                                  "DELETE FROM TLMT0020; SELECT 'x", "DELETE FROM TLMT0099",
                                  "DELETE FROM TLMT0020 WHERE 'a' 'b' = ''"};
    for (const QString &sql : statements)
        EXPECT_EQ(ErrorOf([&] { database.Execute(sql); }).number, 3075) << sql.toStdString();
    EXPECT_EQ(Read("SELECT AccHinCD FROM TLMT0020;  "), "A");
}
