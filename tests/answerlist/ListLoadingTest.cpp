#include "ListFixture.h"

#include <QTest>
#include <QTimer>

namespace {

using ListLoadingTest = ListFixture;
using enum ListColumn;

} // namespace

TEST_F(ListLoadingTest, ALineFillsEveryCell)
{
    AddOrder(1234567, "EDIKBN = 1, ZanVal = 1234.5, F019 = 'SUS304  '");
    AddLine(1234567, 2, 3,
            "AnsMark = '2', AccVal = 123456789.125, IndVal = 0.5, ShpVal = 12, AnsVal = 3,"
            "AnsLimDate = '20260521', PayNo = ' P1 ', AnsLimUmu = 3, ContractKBN = 'D',"
            "CustSecCD = 'S1 '");
    Load();
    EXPECT_EQ(WholeRow(1), "*/*|PO-1234567/HIN-1/抵抗器/SUS304|123,456,789.125/1,234.500|"
                           "0.500/12.000|3.000|26/05/21|26/05/20/P1|済/　|"
                           "D 期間注文型取引(週)/S1|1234567|2|3|20260521|3.000|2|"
                           "C:\\OUT\\C1.TXT|");
}

TEST_F(ListLoadingTest, CellsByTheStateOfTheLine)
{
    const struct
    {
        const char *line;
        const char *order;
        ListColumn column;
        const char *cell;
    } cases[] = {
        {"", "", Marks, " / "},
        {"", "EDIKBN = 1", Marks, "*/ "},
        {"", "EDIKBN = 2", Marks, " / "},
        {"AnsMark = '2'", "", Marks, " /*"},
        {"AnsMark = '1'", "EDIKBN = NULL", Marks, " / "},
        {"", "AccHinName = NULL, F019 = NULL", Order, "PO-1/HIN-1//"},
        // A tab or line break keeps to its cell and line.
        {"OdrNo = 'A' || char(9) || 'B'", "AccHinName = 'x' || char(13, 10) || 'y'", Order,
         "A B/HIN-1/x  y/SUS"},
        {"AccVal = NULL", "ZanVal = NULL", OrderQuantities, "0.000/0.000"},
        // Without an answer the instructed quantity is proposed, and the open one counts as loaded.
        {"AnsVal = 0, IndVal = 40", "", AnswerQuantity, "40.000"},
        {"AnsVal = 0, IndVal = 40", "ZanVal = 60", LoadedQuantity, "60.000"},
        {"AnsVal = NULL, IndVal = 40", "", AnswerQuantity, "40.000"},
        {"AnsVal = 25.25, IndVal = 40", "", AnswerQuantity, "25.250"},
        {"AnsVal = 25.25, IndVal = 40", "", LoadedQuantity, "25.250"},
        {"AnsVal = 0, ShpSts = 3", "", AnswerQuantity, "0.000"},
        {"AnsVal = 0, ShpSts = 3", "", LoadedQuantity, "0.000"},
        {"AnsVal = 0, ShpSts = 2, IndVal = 40", "", AnswerQuantity, "40.000"},
        {"AnsLimDate = '        '", "", AnswerDate, ""},
        {"AnsLimDate = '        '", "", LoadedDate, ""},
        {"AnsLimDate = NULL", "", AnswerDate, ""},
        {"AnsLimDate = '19990228'", "", AnswerDate, "99/02/28"},
        {"LimDate = '', PayNo = NULL", "", SpecifiedDate, "/"},
        {"", "", States, "　/　"},
        {"AnsLimUmu = 3", "", States, "済/　"},
        {"AnsLimUmu = 1, ShpSts = 3", "", States, "　/済"},
        {"ShpSts = 2", "", States, "　/　"},
        {"ContractKBN = 'X'", "", Contract, "X/SEC"},
        {"ContractKBN = NULL, CustSecCD = NULL", "", Contract, "/"},
    };
    for (const auto &[line, order, column, cell] : cases) {
        file.Run("DELETE FROM TLSP0010; DELETE FROM TLAC0010");
        AddOrder(1, order);
        AddLine(1, 1, 1, line);
        Load();
        EXPECT_EQ(Cell(1, column), cell) << line << "; " << order;
    }
}

TEST_F(ListLoadingTest, TheOutputPathCountsOnlyWhenSwitchedOn)
{
    AddOrder(1);
    AddLine(1, 1, 1);
    const std::pair<const char *, const char *> cases[] = {
        {"NokiInfKBN = 1, NokiInfPath = ' C:\\A.TXT ', LinKBN = 1", "1|C:\\A.TXT"},
        {"NokiInfKBN = 0", "1|"},
        {"NokiInfKBN = 2", "1|"},
        {"NokiInfKBN = 1, NokiInfPath = NULL, LinKBN = NULL", "|"},
    };
    for (const auto &[customer, cells] : cases) {
        Change("TLMT0040", "1", customer);
        Load();
        EXPECT_EQ(Cells(1, {LinKBN, OutputPath}), cells) << customer;
    }
}

TEST_F(ListLoadingTest, ColoursAndLocks)
{
    AddOrder(1);
    AddLine(1, 1, 1);
    AddLine(1, 1, 2, "ShpSts = 3");
    AddLine(1, 1, 3, "DenKBN = 15");
    AddLine(1, 1, 4, "ShpSts = 3, DenKBN = 15");
    EXPECT_TRUE(LoadList(state.db, state.conditions, list).hasDefectiveLines);
    const auto look = [&](int row, int column) {
        const QModelIndex cell = grid.model()->index(row - 1, column - 1);
        const auto name = [&](int role) { return cell.data(role).value<QColor>().name(); };
        return name(Qt::BackgroundRole) + ' ' + name(Qt::ForegroundRole)
               + (cell.flags() & Qt::ItemIsEditable ? " open" : " closed");
    };
    const std::pair<int, const char *> cases[] = {{1, "#000000 #000000 open"},
                                                  {2, "#c0c0c0 #000000 closed"},
                                                  {3, "#000000 #800080 open"},
                                                  {4, "#c0c0c0 #800080 closed"}};
    for (const auto &[row, looks] : cases) {
        EXPECT_EQ(look(row, int(AnswerDate)), looks) << row;
        EXPECT_EQ(look(row, int(AnswerQuantity)), looks) << row;
        EXPECT_EQ(look(row, int(Contract)).section(' ', 0, 1), QString(looks).section(' ', 0, 1));
    }
    file.Run("DELETE FROM TLSP0010 WHERE DenKBN = 15");
    EXPECT_FALSE(LoadList(state.db, state.conditions, list).hasDefectiveLines);
    EXPECT_EQ(look(1, 1), "#000000 #000000 closed") << "colours of the last list are gone";
}

TEST_F(ListLoadingTest, WhichLinesAndInWhichOrder)
{
    AddOrder(1);
    AddOrder(2, "AccDate = '20260401'");
    AddOrder(3, "ShpSts = 3");
    AddOrder(4, "DpoFlg = 1");
    AddLine(1, 2, 1, "AnsLimDate = '20260601'");
    AddLine(1, 2, 2, "AnsLimDate = '20260501', DenKBN = 15");
    AddLine(1, 1, 3);
    AddLine(1, 1, 4, "ShpSts = 4");
    AddLine(1, 1, 5, "DenKBN = 1");
    AddLine(1, 1, 6, "DpoFlg = 1");
    AddLine(2, 1, 1, "AccHinCD = 'HIN-0', OdrNo = 'X#1''Y'");
    AddLine(3, 1, 1);
    AddLine(4, 1, 1);
    const auto rows = [&](const SearchConditions &conditions) {
        LoadList(state.db, conditions, list);
        QStringList keys;
        for (int row = 1; row <= list.RowCount(); ++row)
            keys += Cells(row, {AccNo, ShpSubNo});
        return keys.join(' ');
    };
    EXPECT_EQ(rows({}), "2|1 1|3 1|2 1|1");
    SearchConditions search;
    search.orderNo = "X#1'";
    EXPECT_EQ(rows(search), "2|1");
    search.orderNo = "X1";
    EXPECT_EQ(rows(search), "") << "the number sign is no digit";
    search = {};
    search.dateBasis = "ACCDATE";
    search.fromDate = "20260401";
    EXPECT_EQ(rows(search), "2|1");
    search = {};
    search.sortKeys = {"ODRNO", "ACCHINCD", "MFACTNO", "LIMDATE", "SHPDATE", "CUSTSECCD"};
    EXPECT_EQ(rows(search), "1|3 1|2 1|1 2|1");
    search.customerCode = "C2";
    EXPECT_EQ(rows(search), "");
}

TEST_F(ListLoadingTest, ADatabaseErrorIsNoEmptyList)
{
    const LoadedList empty = LoadList(state.db, state.conditions, list);
    EXPECT_TRUE(empty.isRead);
    EXPECT_TRUE(boxes.TakeTexts().empty());
    file.Run("DROP TABLE TLMT0040");
    const LoadedList failed = LoadList(state.db, state.conditions, list);
    EXPECT_FALSE(failed.isRead);
    EXPECT_EQ(failed.lineCount, 0);
    EXPECT_EQ(boxes.TakeTexts().size(), 1u);
}

TEST_F(ListLoadingTest, TheOperatorCanStopALongSearch)
{
    AddOrder(1);
    AddLine(1, 1, 1);
    // A customer master that takes its time.
    file.Run("ALTER TABLE TLMT0040 RENAME TO Customers; CREATE VIEW TLMT0040 AS SELECT * FROM "
             "Customers WHERE (WITH RECURSIVE N(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM N "
             "LIMIT 100000000) SELECT SUM(i) FROM N) > 0");
    QStringList status;
    QTimer::singleShot(0, &grid, [this] { QTest::keyClick(&grid, Qt::Key_Escape); });
    const LoadedList loaded
        = LoadList(state.db, state.conditions, list, [&](const QString &text) { status += text; });
    EXPECT_TRUE(loaded.isStopped);
    EXPECT_FALSE(loaded.isRead);
    EXPECT_EQ(list.RowCount(), 0);
    EXPECT_EQ(status, QStringList{"該当データを表示しています･･･（0 秒）"});
    EXPECT_TRUE(boxes.TakeTexts().empty());
    EXPECT_TRUE(state.db.OpenRS("SELECT * FROM TLSP0010;")) << "the next query is not stopped";
}

TEST_F(ListLoadingTest, HeadingsStandInEveryVisibleColumn)
{
    QStringList headings;
    for (int column = 1; column <= ListColumnCount; ++column) {
        if (!grid.isColumnHidden(column - 1))
            headings += grid.Model().Heading(column).replace("\r\n", "/");
    }
    EXPECT_EQ(headings.join('|'),
              "EDI/ﾏｰｸ|注文№/商品ｺｰﾄﾞ/商品名/材質･規格･寸法|注文数/注残数|納入指示数/出荷数|"
              "回答数量|回答納期|納期/納入№|回答/出荷|契約条件区分/部門ｺｰﾄﾞ");
}
