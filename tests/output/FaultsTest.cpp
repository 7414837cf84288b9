#include "output/AnswerRun.h"

#include "lines/LineSplit.h"
#include "support/FaultyDisk.h"
#include "tldb/answers/AnswerFile.h"

#include <cerrno>
#include <map>

namespace {

/// What the operator does in one sitting: answers three orders of two customers, one of them with a
/// split line, while one operation of the disk fails.
class FaultsTest : public AnswerRun
{
protected:
    FaultsTest()
    {
        AddCustomer("C1");
        AddCustomer("C2", "HenpVerPath = '11SIDE'");
        file.Open(db);                        // anew, on the faulty disk
        db.OpenRS("PRAGMA busy_timeout = 1"); // a lock is soon a long one
    }

    void AddOrders()
    {
        Clear();
        for (const int order : {1, 2, 3}) {
            AddOrder(order, order == 2 ? "C2" : "C1");
            AddLine(order, 1, "AnsVal = 5, IndVal = 20");
        }
    }

    /// 12 pieces of each line, and the rest of order 2 in a split line of its own.
    void AnswerAll()
    {
        Load();
        for (int row = 1; row <= list.Count(); ++row)
            if (list.At(row).Key().shpSubNo == 1)
                list.At(row).SetQuantity(Decimal(12));
        if (list.Count() == 3) {
            CopyLine(list, 2);
            list.At(3).SetDate("20261202");
        }
        SelectAll();
        Make();
    }

    /// The data are whole, whatever failed. Returns the number of orders that are done with.
    int ExpectWholeOrders()
    {
        EXPECT_EQ(file.Rows("PRAGMA integrity_check"), "ok");
        std::map<QString, QStringList> records; // the answered quantities by order: "12 8"
        for (const QString &name : AnswerFiles()) {
            for (const DecodedAnswer &answer : DecodeAnswers(file.folder.Read(name))) {
                EXPECT_TRUE(answer.faults.empty()) << name.toStdString();
                QStringList quantities;
                for (const AnsweredDelivery &delivery : answer.deliveries)
                    quantities += delivery.values[3].text;
                records[answer.Value("orderNumber")] += quantities.join(' ');
            }
        }
        int done = 0;
        for (const int order : {1, 2, 3}) {
            const QStringList &sent = records[QString("PO-%1").arg(order)];
            const QString answer = order == 2 ? "12 8" : "12";
            EXPECT_EQ(sent.count(answer), sent.size()) << order;
            const QString stored
                = file.Rows(QString("SELECT GROUP_CONCAT(CAST(AnsVal AS INT), ' '), AnsLimUmu "
                                    "FROM TLSP0010 WHERE AccNo = %1 GROUP BY AnsLimUmu")
                                .arg(order));
            const bool isMarked = stored == answer + "|3";
            EXPECT_TRUE(isMarked || stored == "5|0" || stored == answer + "|0")
                << order << ": " << stored.toStdString();
            EXPECT_TRUE(!isMarked || !sent.isEmpty()) << order << " has no record";
            done += isMarked;
        }
        return done;
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
                EXPECT_EQ(done, 3) << "a run that tells of no fault has done everything";
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
            EXPECT_EQ(ExpectWholeOrders(), 3);
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
