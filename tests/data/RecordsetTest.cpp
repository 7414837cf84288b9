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

TEST_F(RecordsetTest, ValuesOfEveryType)
{
    const struct
    {
        QString sql;
        QString text;
        double number;
        qint64 whole;
        QString literal;
    } cases[] = {
        {"NULL", "", 0, 0, "NULL"},
        {"'納期|ｱ ''s '", "納期|ｱ 's ", 0, 0, "'納期|ｱ ''s '"},
        {"'012.5個'", "012.5個", 12.5, 12, "'012.5個'"},
        {"x'00ff'", QString::fromUtf8("\0\xff", 2), 0, 0, "x'00ff'"},
        {"-9007199254740993", "-9007199254740993", -9007199254740993.0, -9007199254740993,
         "-9007199254740993"},
        {"128", "128", 128, 128, "128"},
        {"9223372036854775807", "9223372036854775807", 0x1p63, 9223372036854775807,
         "9223372036854775807"},
        {"-9223372036854775807 - 1", "-9223372036854775808", -0x1p63, -9223372036854775807 - 1,
         "-9223372036854775808"},
        {"-12.5", "-12.5", -12.5, -12, "-1.25e+01"},
        {"0.1 + 0.2", "0.3", 0.1 + 0.2, 0, "3.0000000000000004e-01"},
        {"-9223372036854775808.0", "0", -0x1p63, -9223372036854775807 - 1,
         "-9.223372036854776e+18"},
        {"9223372036854775808.0", "0", 0x1p63, 0, "9.223372036854776e+18"},
    };
    for (const auto &[sql, text, number, whole, literal] : cases) {
        const auto rows = Open("SELECT 1 AS Before, " + sql + " AS Value, 'end' AS After");
        const Record record = rows->At(0);
        EXPECT_EQ(rows->Text(1), text) << sql.toStdString();
        EXPECT_EQ(record.Text(1), text) << sql.toStdString();
        EXPECT_EQ(record.Number(1), number) << sql.toStdString();
        EXPECT_EQ(record.Whole(1), whole) << sql.toStdString();
        EXPECT_EQ(record.IsNull(1), sql == "NULL") << sql.toStdString();
        EXPECT_EQ(record.SqlLiteral(1), literal) << sql.toStdString();
        EXPECT_EQ(record.Text(2), "end") << sql.toStdString();
    }
}

TEST_F(RecordsetTest, MovesOverItsRows)
{
    const auto rows = Open("SELECT 'a' AS T, 1 AS N UNION ALL SELECT NULL, 2 "
                           "UNION ALL SELECT '長い文', 3");
    EXPECT_EQ(rows->RecordCount(), 3);
    const Record last = rows->At(2);
    QString seen;
    for (; !rows->IsEof(); rows->MoveNext())
        seen += rows->Text(0) + rows->Text(rows->FieldIndex(u"n"));
    EXPECT_EQ(seen, "a12長い文3");
    EXPECT_EQ(ErrorOf([&] { rows->MoveNext(); }).number, 3021);
    EXPECT_EQ(last.Text(0), "長い文") << "whatever the current row is";
    rows->MoveFirst();
    EXPECT_EQ(rows->Text(1), "1");
    rows->Close();
    EXPECT_TRUE(rows->IsEof());
    EXPECT_EQ(last.Text(0), "");
    EXPECT_EQ(ErrorOf([&] { rows->Close(); }).number, 3021);
}

TEST_F(RecordsetTest, WhatIsNotThereReadsAsNull)
{
    const auto rows = Open("SELECT 'a' AS T, 1 AS N");
    const auto none = Open("SELECT 'a' AS T, 1 AS N WHERE 0");
    none->MoveLast();
    EXPECT_TRUE(none->IsEof());
    EXPECT_EQ(none->FieldIndex(u"n"), 1) << "the columns are known all the same";
    EXPECT_EQ(none->FieldIndex(u"Odr"), -1);
    for (const int field : {-1, 2})
        EXPECT_TRUE(rows->IsNull(field) && rows->At(0).IsNull(field)) << field;
    EXPECT_TRUE(none->IsNull(1));
    for (const Record &record : {none->At(0), rows->At(-1), rows->At(1), Record()})
        EXPECT_TRUE(record.IsNull(1));
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

TEST_F(RecordsetTest, AnErrorHalfWayThroughIsThrown)
{
    const QString sql = "SELECT 1 UNION ALL SELECT abs(-9223372036854775807 - 1)";
    EXPECT_NE(ErrorOf([&] { Open(sql); }).number, 0);
}
