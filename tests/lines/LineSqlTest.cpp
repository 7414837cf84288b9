#include "lines/LinesFixture.h"

#include "lines/LineSql.h"

namespace {

using LineSqlTest = LinesFixture;

} // namespace

TEST_F(LineSqlTest, AnInsertFollowsTheColumnsOfTheFile)
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

TEST_F(LineSqlTest, ShipDateIsTheAnsweredDateLessTheTransportDays)
{
    // The customer C1 is of the company VAN001, whose destination D1 is three days away.
    file.Run("INSERT INTO TLMT0040 (CustCD, VanCD, DpoFlg) VALUES ('GONE', 'VAN001', 1), ('O''C', "
             "'VAN002-REST', 0)");
    file.Run("INSERT INTO TLMT0050 (CustCoCD, PayDstCD, PayNeedDays, DpoFlg) VALUES "
             "('VAN001', 'DN', NULL, 0), "
             "('VAN001', 'DH', 1e9, 0), ('VAN001', 'DX', 5, 1), "
             "('VAN002', 'D''1', 1, 0), ('VAN002', 'D1', 2, 0), ('VAN0', 'D1', 9, 0)");
    const std::tuple<const char *, const char *, const char *, const char *> cases[] = {
        {"19970528", "C1", "D1", "19970525"},
        {"20261202", "O'C", "D1", "20261130"}, // one code of two companies
        {"20240302", "C1", "D1", "20240228"},  // over a leap day
        {"20261202", "C1", "DH", "20261202"},  // more days than the calendar has
        {"20261202", "C1", "DN", "20261202"},  // not known
        {"20261202", "C1", "", "20261202"},
        {"20261202", "C1", "DX", "20261202"}, // deleted
        {"20261202", "GONE", "D1", "20261202"},
        {"20261202", "O'C  ", "D'1 ", "20261201"},
        {"20260230", "C1", "D1", "20260230"}, // no such day
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
