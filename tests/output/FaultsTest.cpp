#include "output/Desks.h"

#include "data/dao/postgres/ServerFile.h"
#include "lines/LineSplit.h"
#include "support/FaultyDisk.h"
#include "support/ServerProxy.h"

#include <cerrno>

namespace {

/// What the operator of one desk does, one order with a split line, while one operation fails.
class Faults : public Desks
{
protected:
    /// All pieces of all orders, those of order 2 in two lines. From `onLoaded` on, operations may
    /// fail.
    void AnswerAll(const std::function<void()> &onLoaded = [] {})
    {
        Load();
        onLoaded();
        LineEdits edits(list);
        for (int row = 1; row <= list.Count(); ++row)
            edits.SetDate(row, "20261210");
        if (list.RowsOfOrder(2).size() == 1) {
            const int row = list.RowOf({2, 1, 1});
            CopyLine(edits, row);
            list.At(row + 1).SetDate("20261211");
            list.At(row + 1).SetQuantity(Decimal(40));
        }
        SelectAll();
        Make();
    }

    /// The data are whole, whatever failed. Returns the number of orders that are done with.
    int ExpectWholeOrders()
    {
        CheckOrders({}, 1);
        EXPECT_EQ(file.Rows("SELECT AccNo, SUM(AnsVal) FROM TLSP0010 GROUP BY AccNo HAVING "
                            "COUNT(DISTINCT AnsLimUmu) > 1 OR SUM(AnsVal) NOT IN (0, 60, 100)"),
                  "");
        return file
            .Rows("SELECT COUNT(DISTINCT AccNo) FROM TLSP0010 WHERE AnsLimUmu = 3 "
                  "AND AnsLimDate >= '20261210'")
            .toInt();
    }

    /// Plays with the n-th operation failing, for every n. `setFault` gets how many are still to
    /// come, and counts them down to 0.
    void PlayEveryFault(const std::function<void(int &left)> &setFault,
                        const std::function<void()> &endFault)
    {
        int played = 0;
        for (int n = 1, left = 0; left == 0 && !HasFailure(); ++n, ++played) {
            SCOPED_TRACE(testing::Message() << "operation " << n);
            AddOrders();
            left = n;
            AnswerAll([&] { setFault(left); });
            endFault();
            const auto texts = boxes.TakeTexts();
            ASSERT_FALSE(texts.empty());
            const int done = ExpectWholeOrders();
            if (texts.back().startsWith("納期回答作成処理が")) {
                // A reading outside of a transaction may fail and be told, and the run goes on.
                EXPECT_EQ(texts.size(), texts.front().startsWith("ｴﾗｰｺｰﾄﾞ：") ? 2u : 1u);
                EXPECT_EQ(done, OrderCount) << "a run that tells of no fault has done everything";
            } else {
                EXPECT_TRUE(texts.front().startsWith("ｴﾗｰｺｰﾄﾞ：")) << texts.front().toStdString();
                const bool isBeforeAll = texts.size() == 1 && done == 0; // when it read the orders
                EXPECT_TRUE(texts.back().startsWith("登録されませんでした")
                            || texts.back().startsWith("作成できませんでした") || isBeforeAll)
                    << texts.back().toStdString();
            }
            EXPECT_TRUE(db.BeginTrans() && db.Rollback()) << "no transaction is left open";

            // The operator looks again, answers what is still open, and all is well.
            saysYes = true; // some are sent again
            AnswerAll();
            saysYes = false;
            EXPECT_TRUE(boxes.TakeTexts().back().startsWith("納期回答作成処理が"));
            EXPECT_EQ(ExpectWholeOrders(), OrderCount);
        }
        EXPECT_GT(played, 5) << "faults that were never met";
    }
};

class FaultsTest : public Faults
{
protected:
    FaultsTest()
    {
        file.Open(db);               // anew, on the faulty disk
        SetLockTimeout(db, file, 1); // a lock is soon a long one
    }

    FaultyDisk disk;
};

/// On a server, behind a network that fails.
class ServerFaultsTest : public Faults
{
protected:
    void SetUp() override
    {
        if (!file.IsOnServer())
            GTEST_SKIP() << "no server";
        proxy = std::make_unique<ServerProxy>(file.Settings());
        file.folder.Write("TLDB0010.MDB", ServerFile::TextFor(proxy->Settings()));
        file.Open(db);
    }

    void PlayEveryBreak(ServerProxy::Break how)
    {
        int *toCome = nullptr;
        int statement = 0;
        PlayEveryFault(
            [&](int &left) {
                toCome = &left;
                statement = left;
                proxy->BreakAt(statement, how);
            },
            [&] {
                if (proxy->Statements() >= statement)
                    *toCome = 0;
                proxy->BreakAt(0);
            });
    }

    std::unique_ptr<ServerProxy> proxy;
};

} // namespace

TEST_F(FaultsTest, EveryOperationOnTheDatabaseFailsOnce)
{
    using Op = FaultyDisk::Op;
    for (const Op op : {Op::Create, Op::Lock, Op::Write, Op::Sync, Op::Delete}) {
        SCOPED_TRACE(int(op));
        PlayEveryFault(
            [&](int &left) {
                disk.SetFault([&, op](Op asked) {
                    const bool isNext = asked == op && left > 0 && --left == 0;
                    // A lock is still held when the engine comes back for it.
                    const bool isHeld = asked == op && op == Op::Lock && left == 0;
                    return isNext || isHeld ? FaultyDisk::UsualError(op) : 0;
                });
            },
            [&] { disk.SetFault({}); });
    }
}

TEST_F(Faults, EveryOperationOnAnAnswerFileFailsOnce)
{
    for (const int error : {ENOSPC, EACCES, EIO}) {
        SCOPED_TRACE(error);
        PlayEveryFault(
            [&](int &left) {
                SetFileFault([&, error](FileOp, const QString &) {
                    return left > 0 && --left == 0 ? error : 0;
                });
            },
            [] { SetFileFault({}); });
    }
}

TEST_F(ServerFaultsTest, AnOrderCostsTenRoundTrips)
{
    for (const int orders : {1, 2}) {
        Clear();
        for (int order = 1; order <= orders; ++order) {
            AddOrder(order, "C1");
            AddLine(order, 1);
        }
        Load();
        for (int row = 1; row <= orders; ++row)
            list.At(row).SetDate("20261210");
        SelectAll();
        proxy->BreakAt(0);
        EXPECT_EQ(Make().records, orders);
        // All orders are read once, and the history is looked for. An order is registered by the
        // transaction's begin with its reading, the line, its transport days, the update and the
        // commit; it is answered by the begin with its reading, the record's lines, the history,
        // the marks and the commit.
        EXPECT_EQ(proxy->Statements(), 2 + orders * (5 + 5));
        boxes.TakeTexts();
    }
}

TEST_F(ServerFaultsTest, TheNetworkBreaksBeforeEveryStatementOnce)
{
    PlayEveryBreak(ServerProxy::Break::Before);
}

TEST_F(ServerFaultsTest, TheNetworkBreaksBehindEveryStatementOnce)
{
    PlayEveryBreak(ServerProxy::Break::After);
}

TEST_F(ServerFaultsTest, TheServersProcessIsKilledAtEveryStatementOnce)
{
    PlayEveryBreak(ServerProxy::Break::Killed);
}
