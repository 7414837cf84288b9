#include "data/dao/Recordset.h"

#include "data/ErrorOf.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <gtest/gtest.h>

namespace {

class RecordsetTest : public testing::Test
{
protected:
    std::unique_ptr<Recordset> Open(const QString &sql)
    {
        return database.Other().OpenRecordset(sql);
    }

    TestDatabase database;
};

} // namespace

TEST_F(RecordsetTest, ValuesAsTextAndNumber)
{
    const struct
    {
        QString sql;
        QString text;
        double number;
        bool isNull;
    } cases[] = {
        {"NULL", "", 0, true},
        {"''", "", 0, false},
        {"'納期|ｱ '", "納期|ｱ ", 0, false},
        {"'012.5個'", "012.5個", 12.5, false},
        {"7", "7", 7, false},
        {"-9007199254740993", "-9007199254740993", -9007199254740993.0, false},
        {"-64", "-64", -64, false},
        {"128", "128", 128, false},
        {"9223372036854775807", "9223372036854775807", 9223372036854775807.0, false},
        {"-9223372036854775807 - 1", "-9223372036854775808", -9223372036854775808.0, false},
        {"70.0", "70", 70, false},
        {"12.5", "12.5", 12.5, false},
        {"0.1 + 0.2", "0.3", 0.1 + 0.2, false},
        {"999999999.999", "999999999.999", 999999999.999, false},
        {"-0.25", "-0.25", -0.25, false},
    };
    for (const auto &[sql, text, number, isNull] : cases) {
        const auto rows = Open("SELECT 1 AS Before, " + sql + " AS Value, 'end' AS After");
        EXPECT_EQ(rows->Text(1), text) << sql.toStdString();
        EXPECT_EQ(rows->Number(1), number) << sql.toStdString();
        EXPECT_EQ(rows->IsNull(1), isNull) << sql.toStdString();
        EXPECT_EQ(rows->Text(2), "end") << sql.toStdString();
    }
}

TEST_F(RecordsetTest, MovesOverItsRows)
{
    const auto rows = Open("SELECT 'a' AS T, 1 AS N UNION ALL SELECT NULL, 2 "
                           "UNION ALL SELECT '長い文', 3");
    EXPECT_EQ(rows->RecordCount(), 3);
    QString seen;
    for (; !rows->IsEof(); rows->MoveNext())
        seen += rows->Text(u"T") + rows->Text(u"N");
    EXPECT_EQ(seen, "a12長い文3");
    EXPECT_EQ(ErrorOf([&] { rows->MoveNext(); }).number, 3021);
    EXPECT_EQ(ErrorOf([&] { rows->Text(0); }).number, 3021);
    rows->MoveLast();
    EXPECT_EQ(rows->Text(u"N"), "3");
    rows->MoveFirst();
    EXPECT_EQ(rows->Text(u"N"), "1");
    rows->Close();
    EXPECT_TRUE(rows->IsEof());
    EXPECT_EQ(ErrorOf([&] { rows->Text(0); }).number, 3021);
    EXPECT_NE(ErrorOf([&] { rows->Close(); }).number, 0);
}

TEST_F(RecordsetTest, RowsOfEveryLengthKeepTheirValues)
{
    const auto rows = Open("WITH RECURSIVE N(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM N"
                           " WHERE i < 5000) SELECT i, replace(hex(zeroblob(length)), '00', 'ｱ') AS"
                           " Value, -i AS Negative FROM (SELECT i, CASE WHEN i = 2500 THEN 3000000"
                           " WHEN i % 500 = 0 THEN i * 26 ELSE i % 300 END AS length FROM N)");
    ASSERT_EQ(rows->RecordCount(), 5000);
    for (int row = 1; !rows->IsEof(); rows->MoveNext(), ++row) {
        const int length = row == 2500 ? 3'000'000 : row % 500 == 0 ? row * 26 : row % 300;
        ASSERT_EQ(rows->Number(0), row);
        ASSERT_TRUE(rows->Text(1) == QString(length, u'ｱ')) << row;
        ASSERT_EQ(rows->Number(2), -row);
    }
}

TEST_F(RecordsetTest, EmptyOne)
{
    const auto rows = Open("SELECT * FROM TLSP0010");
    EXPECT_TRUE(rows->IsEof());
    EXPECT_EQ(rows->RecordCount(), 0);
    EXPECT_EQ(rows->FieldIndex(u"odrno"), 5) << "the columns are known all the same";
    EXPECT_EQ(ErrorOf([&] { rows->FieldIndex(u"Odr"); }).number, 3265);
    rows->MoveLast();
    EXPECT_TRUE(rows->IsEof());
    EXPECT_EQ(ErrorOf([&] { rows->MoveNext(); }).number, 3021);
    EXPECT_EQ(ErrorOf([&] { rows->IsNull(0); }).number, 3021);
}

TEST_F(RecordsetTest, AnErrorHalfWayThroughIsThrown)
{
    const DaoError error
        = ErrorOf([&] { Open("SELECT 1 UNION ALL SELECT abs(-9223372036854775807 - 1)"); });
    EXPECT_NE(error.number, 0);
    EXPECT_FALSE(error.description.isEmpty());
}
