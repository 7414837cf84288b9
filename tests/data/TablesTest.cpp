#include "data/Tables.h"

#include "data/bDAO.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <gtest/gtest.h>

namespace {

QString NamesOf(const TableDefinition &table)
{
    QStringList names;
    for (const ColumnDefinition &column : table.columns)
        names += column.name;
    return names.join(' ');
}

} // namespace

// The split of a line inserts every column in this order without naming them.
TEST(Tables, DeliveryLinesTakeAnInsertInTheOrderOfTheirDefinition)
{
    const TableDefinition *table = FindTable("tlsp0010");
    ASSERT_TRUE(table);
    QStringList values;
    int number = 0;
    for (const ColumnDefinition &column : table->columns) {
        ++number;
        const QString text = QString(column.name).left(std::max(column.width, 1));
        values += column.IsText() ? '\'' + text + '\'' : QString::number(number);
    }
    TestDatabase database;
    const ScriptedBoxes boxes;
    bDAO db;
    database.Open(db);
    ASSERT_TRUE(db.DBExecute("INSERT INTO TLSP0010 VALUES (" + values.join(',') + ");"));

    const auto rows = db.OpenRS("SELECT * FROM TLSP0010");
    ASSERT_TRUE(rows);
    ASSERT_EQ(rows->FieldCount(), int(table->columns.size()));
    number = 0;
    for (const ColumnDefinition &column : table->columns) {
        ++number;
        EXPECT_EQ(rows->FieldName(number - 1), column.name);
        const QString text = QString(column.name).left(std::max(column.width, 1));
        EXPECT_EQ(rows->Text(QString(column.name)),
                  column.IsText() ? text : QString::number(number))
            << column.name;
    }
}

TEST(Tables, WidthsOfTheDeliveryLinesTexts)
{
    constexpr struct
    {
        const char *name;
        int width;
    } texts[] = {
        {"PayKeyNo", 23},    {"OdrNo", 23},      {"CustCD", 12},   {"CustSecCD", 8},
        {"CustSecName", 20}, {"PayDstCD", 8},    {"LimDate", 8},   {"LimTime", 4},
        {"PayNo", 8},        {"HinCD", 25},      {"AccHinCD", 25}, {"MfactNo", 19},
        {"Unit", 3},         {"AnsLimDate", 8},  {"AnsMark", 1},   {"ShpDate", 8},
        {"ArvExpDate", 8},   {"ContractKBN", 1}, {"Biko", 30},     {"OdrBiko", 50},
        {"OdrBarCD", 23},    {"UpdPGName", 8},   {"UpdDate", 8},   {"UpdTime", 6},
    };
    size_t at = 0;
    for (const ColumnDefinition &column : FindTable("TLSP0010")->columns) {
        if (!column.IsText())
            continue;
        ASSERT_LT(at, std::size(texts)) << column.name;
        EXPECT_STREQ(column.name, texts[at].name);
        EXPECT_EQ(column.width, texts[at].width) << column.name;
        ++at;
    }
    EXPECT_EQ(at, std::size(texts));
}

TEST(Tables, EveryTableHasTheDeleteFlagAndTheStamps)
{
    EXPECT_EQ(Tables().size(), 10u);
    for (const TableDefinition &table : Tables())
        EXPECT_TRUE(NamesOf(table).endsWith(" DpoFlg UpdPGName UpdDate UpdTime")) << table.name;
    EXPECT_EQ(FindTable("TLSP9999"), nullptr);
}

TEST(Tables, CreatedDatabaseHasTheDefinedColumns)
{
    TestDatabase database;
    for (const TableDefinition &table : Tables())
        EXPECT_EQ(
            database.Rows(QString("SELECT name FROM pragma_table_info('%1')").arg(table.name)),
            NamesOf(table));
    EXPECT_EQ(database.Other().Property("accessversion"), "08.50");
    EXPECT_EQ(database.Other().Property("SchemaVersion"), "1");
}

TEST(Tables, TextsCompareWithoutCaseAndKeysAreUnique)
{
    TestDatabase database;
    database.Insert("TLMT0040", {{"CustCD", "abc"}});
    EXPECT_EQ(database.Rows("SELECT CustCD FROM TLMT0040 WHERE CustCD = 'ABC'"), "abc");
    EXPECT_THROW(database.Run("INSERT INTO TLMT0040 (CustCD) VALUES ('ABC')"), DaoError);
    database.Insert("TLSP0010", {{"AccNo", 1}, {"AccSubNo", 1}, {"ShpSubNo", 1}});
    database.Insert("TLSP0010", {{"AccNo", 1}, {"AccSubNo", 1}, {"ShpSubNo", 2}});
    EXPECT_THROW(database.Run("INSERT INTO TLSP0010 (AccNo, AccSubNo, ShpSubNo) VALUES (1, 1, 2)"),
                 DaoError);
}
