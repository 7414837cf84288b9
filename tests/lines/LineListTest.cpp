#include "lines/LinesFixture.h"

#include <QTest>
#include <QTimer>
#include <QWidget>
#include <random>

namespace {

class LineListTest : public LinesFixture
{
protected:
    /// "order|line" of every row.
    QString Keys() const
    {
        QStringList keys;
        for (int row = 1; row <= list.Count(); ++row)
            keys += QString("%1|%2").arg(list.At(row).Key().accNo).arg(list.At(row).Key().shpSubNo);
        return keys.join(' ');
    }
};

} // namespace

TEST_F(LineListTest, WhichLinesAndInWhichOrder)
{
    AddOrder(1, "AccHinName = '部品 A#'");
    AddOrder(2, "AccDate = '20260401', AccHinName = '部品 [A]#%_|'");
    AddOrder(3, "ShpSts = 3");
    AddOrder(4, "DpoFlg = 1");
    AddLine(1, 2, 1, "AnsLimDate = '20260601', CustSecCD = 'S0'");
    AddLine(1, 2, 2, "AnsLimDate = '20260501', DenKBN = 15");
    AddLine(1, 1, 3);
    AddLine(1, 1, 4, "ShpSts = 4");
    AddLine(1, 1, 5, "DenKBN = 1");
    AddLine(1, 1, 6, "DpoFlg = 1");
    AddLine(2, 1, 1,
            "AccHinCD = 'HIN-0', OdrNo = 'X#1''Y', CustSecCD = 'S1', MfactNo = 'M1',"
            "PayKeyNo = 'K[1', LimDate = '20260601', ShpDate = '20260528'");
    AddLine(3, 1, 1);
    AddLine(4, 1, 1);
    using S = SearchConditions;
    const QString all = "2|1 1|3 1|2 1|1 defective";
    const QString others = "1|3 1|2 1|1 defective";
    const std::pair<std::vector<std::pair<QString S::*, QString>>, QString> searches[] = {
        {{}, all},
        {{{&S::customerCode, "c"}}, all},
        {{{&S::customerCode, "C2"}}, ""},
        {{{&S::customerSectionCode, "S1 "}}, "2|1"},
        {{{&S::customerSectionCode, "  "}, {&S::fromDate, "  "}}, all},
        {{{&S::productCode, "hin-0"}}, "2|1"},
        {{{&S::productName, "部品 [[]*"}}, "2|1"},
        {{{&S::orderNo, "X#1'"}}, "2|1"},
        {{{&S::orderNo, "X1"}}, ""}, // the number sign is no digit
        {{{&S::orderNo, "*#"}}, "2|1"},
        {{{&S::makerNo, "M1"}}, "2|1"},
        {{{&S::payKeyNo, "K[[]"}}, "2|1"},
        {{{&S::fromDate, "20260528"}}, "2|1"},
        {{{&S::dateBasis, "LIMDATE"}, {&S::fromDate, "20260520 "}, {&S::toDate, "20260531"}},
         others},
        {{{&S::dateBasis, "ACCDATE"}, {&S::toDate, "20260331"}}, others},
        {{{&S::dateBasis, "UPDDATE"}, {&S::fromDate, "20990101"}}, all},
    };
    SearchConditions search;
    const auto found = [&] {
        const LoadedList loaded = LoadList(state.db, search, list);
        EXPECT_TRUE(loaded.isRead);
        EXPECT_EQ(loaded.lineCount, list.Count());
        return Keys() + (loaded.hasDefectiveLines ? " defective" : "");
    };
    for (const auto &[conditions, lines] : searches) {
        search = {};
        for (const auto &[condition, text] : conditions)
            search.*condition = text;
        EXPECT_EQ(found(), lines) << (conditions.empty() ? "" : conditions[0].second.toStdString());
    }
    search = {};
    search.isProductNameLiteral = true;
    for (const auto &[name, lines] : {std::pair{"部品 [A]#%_|", "2|1"}, {"部品 *", ""}}) {
        search.productName = name;
        EXPECT_EQ(found(), lines) << name;
    }
    search = {};
    search.sortKeys = {"ODRNO", "ACCHINCD", "MFACTNO", "CUSTSECCD", "SHPDATE", "LIMDATE"};
    EXPECT_EQ(found(), "1|1 1|3 1|2 2|1 defective");
    // An order is read whole, whatever the search was.
    EXPECT_TRUE(ReadOrders(state.db, {4, 1}, list));
    EXPECT_EQ(Keys(), "1|3 1|4 1|5 1|1 1|2 4|1");
    EXPECT_TRUE(boxes.TakeTexts().empty());

    file.Run("DROP TABLE TLMT0040");
    const LoadedList failed = LoadList(state.db, {}, list);
    EXPECT_FALSE(failed.isRead);
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(boxes.TakeTexts().size(), 1u);
}

TEST_F(LineListTest, TheOperatorCanStopALongSearch)
{
    AddOrder(1);
    AddLine(1, 1, 1);
    // A customer master that takes its time.
    file.Run("ALTER TABLE TLMT0040 RENAME TO Customers; CREATE VIEW TLMT0040 AS SELECT * FROM "
             "Customers WHERE (WITH RECURSIVE N(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM N "
             "WHERE i < 100000000) SELECT SUM(i) FROM N) > 0");
    QStringList status;
    QWidget focus;
    QTimer::singleShot(0, &focus, [&] { QTest::keyClick(&focus, Qt::Key_Escape); });
    const LoadedList loaded
        = LoadList(state.db, state.conditions, list, [&](const QString &text) { status += text; });
    EXPECT_TRUE(loaded.isStopped);
    EXPECT_FALSE(loaded.isRead);
    EXPECT_EQ(list.Count(), 0);
    EXPECT_TRUE(status.value(0).startsWith("該当データを表示しています"));
    EXPECT_TRUE(state.db.OpenRS("SELECT * FROM TLSP0010;")) << "the next query is not stopped";
}

TEST_F(LineListTest, RowsOfAnOrderAreThoseOfAWalkAfterAnySequenceOfChanges)
{
    for (int order = 1; order <= 8; ++order) {
        AddOrder(order);
        for (int line = 1; line <= 3; ++line)
            AddLine(order, 1, line);
    }
    Load();
    std::mt19937 random(20261125);
    // Grows to begin with and shrinks to nothing at the end.
    for (int step = 0; step < 600 && list.Count() > 0; ++step) {
        const int row = 1 + int(random() % unsigned(list.Count()));
        if (random() % 10 < (step < 200 ? 7 : 3))
            list.InsertBelow({{row, list.At(row).Split(1)}});
        else
            list.Remove({row});
        for (qint64 order = 0; order <= 9; ++order) {
            std::vector<int> walk;
            for (int row = 1; row <= list.Count(); ++row)
                if (list.At(row).Key().accNo == order)
                    walk.push_back(row);
            ASSERT_EQ(list.RowsOfOrder(order), walk) << "order " << order << " step " << step;
        }
    }
    EXPECT_EQ(list.Count(), 0);
}

TEST(RowSelectionTest, IsASetOfRows)
{
    const RowSelection selected({{7, 9}, {1, 2}, {3, 3}, {8, 12}, {20, 20}});
    EXPECT_EQ(selected.Ranges(), (std::vector<RowSelection::Range>{{1, 3}, {7, 12}, {20, 20}}));
    EXPECT_EQ(selected.Count(), 10);
    QString contained;
    for (int row = 0; row <= 21; ++row)
        contained += selected.Contains(row) ? '*' : '.';
    EXPECT_EQ(contained, ".***...******.......*.");
    EXPECT_EQ(selected.Without({20, 9, 2, 7, 4}).Ranges(),
              (std::vector<RowSelection::Range>{{1, 1}, {3, 3}, {8, 8}, {10, 12}}));
    EXPECT_TRUE(RowSelection({{2, 3}}).Without({3, 2}).IsEmpty());
}
