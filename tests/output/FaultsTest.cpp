#include "output/Desks.h"

#include "lines/LineSplit.h"
#include "support/FaultyDisk.h"

#include <cerrno>

namespace {

/// What the operator of one desk does, one order with a split line, while one operation of the disk
/// fails.
class FaultsTest : public Desks
{
protected:
    FaultsTest()
    {
        file.Open(db);                        // anew, on the faulty disk
        db.OpenRS("PRAGMA busy_timeout = 1"); // a lock is soon a long one
    }

    /// All pieces of all orders, those of order 2 in two lines.
    void AnswerAll()
    {
        Load();
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
    void PlayEveryFault(const std::function<void(int &left)> &setFault)
    {
        int played = 0;
        for (int n = 1, left = 0; left == 0 && !HasFailure(); ++n, ++played) {
            SCOPED_TRACE(testing::Message() << "operation " << n);
            AddOrders();
            left = n;
            setFault(left);
            AnswerAll();
            disk.SetFault({});
            SetFileFault({});
            const auto texts = boxes.TakeTexts();
            const int done = ExpectWholeOrders();
            if (texts.back().startsWith("納期回答作成処理が")) {
                EXPECT_EQ(texts.size(), 1u);
                EXPECT_EQ(done, OrderCount) << "a run that tells of no fault has done everything";
            } else {
                EXPECT_TRUE(texts.front().startsWith("ｴﾗｰｺｰﾄﾞ：")) << texts.front().toStdString();
                EXPECT_TRUE(texts.back().startsWith("登録されませんでした")
                            || texts.back().startsWith("作成できませんでした"))
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

    FaultyDisk disk;
};

} // namespace

TEST_F(FaultsTest, EveryOperationOnTheDatabaseFailsOnce)
{
    using Op = FaultyDisk::Op;
    for (const Op op : {Op::Create, Op::Lock, Op::Write, Op::Sync, Op::Delete}) {
        SCOPED_TRACE(int(op));
        PlayEveryFault([&](int &left) {
            disk.SetFault([&, op](Op asked) {
                const bool isNext = asked == op && left > 0 && --left == 0;
                // A lock is still held when the engine comes back for it.
                const bool isHeld = asked == op && op == Op::Lock && left == 0;
                return isNext || isHeld ? FaultyDisk::UsualError(op) : 0;
            });
        });
    }
}

TEST_F(FaultsTest, EveryOperationOnAnAnswerFileFailsOnce)
{
    for (const int error : {ENOSPC, EACCES, EIO}) {
        SCOPED_TRACE(error);
        PlayEveryFault([&](int &left) {
            SetFileFault([&, error](FileOp, const QString &) {
                return left > 0 && --left == 0 ? error : 0;
            });
        });
    }
}
