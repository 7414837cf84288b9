#include "output/AnswerRun.h"

#include "lines/LineSplit.h"
#include "support/FaultyDisk.h"
#include "tldb/answers/AnswerFile.h"

#include <cerrno>
#include <set>

namespace {

/// What the operator does in one sitting: answers three orders of two customers, one of them with a
/// split line, while one operation of the disk fails.
class FaultsTest : public AnswerRun
{
protected:
    void SetUp() override
    {
        AddCustomer("C1");
        AddCustomer("C2", "HenpVerPath = '11SIDE'");
        file.Open(db);
        db.OpenRS("PRAGMA busy_timeout = 1"); // a lock is soon a long one
    }

    void Prepare()
    {
        Clear();
        for (const int order : {1, 2, 3}) {
            AddOrder(order, order == 2 ? "C2" : "C1");
            AddLine(order, 1, "AnsVal = 5, IndVal = 20");
        }
        Reload();
        AnswerAll();
    }

    /// 12 pieces of each line, and the rest of order 2 in a split line of its own.
    void AnswerAll()
    {
        for (int row = 1; row <= list.Count(); ++row)
            if (list.At(row).Key().shpSubNo == 1)
                list.At(row).SetQuantity(Decimal(12));
        if (list.Count() == 3) {
            CopyLine(list, 2);
            list.At(3).SetDate("20261202");
        }
        SelectAll();
    }

    /// The answered quantities in each record of an order: "12 8".
    std::vector<QString> RecordsOf(int order)
    {
        std::vector<QString> found;
        const QString name = order == 2 ? "C2.TXT" : "C1.TXT";
        if (!files.FileExists("C:\\" + name))
            return found;
        for (const DecodedAnswer &answer : DecodeAnswers(file.folder.Read(name))) {
            EXPECT_TRUE(answer.faults.empty()) << name.toStdString();
            if (answer.Value("orderNumber") != QString("PO-%1").arg(order))
                continue;
            QStringList quantities;
            for (const AnsweredDelivery &delivery : answer.deliveries)
                quantities += delivery.values[3].text;
            found.push_back(quantities.join(' '));
        }
        return found;
    }

    /// The data are whole, whatever failed. Returns the number of orders that are done with.
    int ExpectWholeOrders()
    {
        EXPECT_EQ(file.Rows("PRAGMA integrity_check"), "ok");
        int done = 0;
        for (const int order : {1, 2, 3}) {
            const bool isSplit = order == 2;
            const QString untouched = "5.0|20261202|0";
            const auto answered = [&](int state) {
                return (isSplit ? QString("12.0|20261202|%1 8.0|20261202|%1")
                                : QString("12.0|20261202|%1"))
                    .arg(state);
            };
            const QString registered = answered(0);
            const QString marked = answered(3);
            const std::set<QString> allowed = {untouched, registered, marked};
            const QString stored = Stored(order);
            EXPECT_TRUE(allowed.contains(stored)) << order << ": " << stored.toStdString();
            const auto records = RecordsOf(order);
            for (const QString &record : records)
                EXPECT_EQ(record, isSplit ? "12 8" : "12") << order;
            EXPECT_TRUE(stored != marked || !records.empty()) << order << " has no record";
            done += stored == marked;
        }
        return done;
    }

    /// Plays with the n-th operation failing, for every n. `setFault` gets n; it returns false once
    /// there was no n-th operation.
    void PlayEveryFault(const std::function<void(int n)> &setFault,
                        const std::function<bool()> &wasHit, const std::function<void()> &endFault)
    {
        int played = 0;
        for (int n = 1;; ++n, ++played) {
            SCOPED_TRACE(testing::Message() << "operation " << n);
            Prepare();
            setFault(n);
            Make();
            endFault();
            const auto texts = boxes.TakeTexts();
            if (!wasHit())
                break;
            const bool isFinished = texts.size() == 1 && texts[0].startsWith("納期回答作成処理が");
            const int done = ExpectWholeOrders();
            if (isFinished) {
                EXPECT_EQ(done, 3) << "a run that tells of no fault has done everything";
            } else {
                EXPECT_GE(texts.size(), 2u);
                EXPECT_TRUE(texts.front().startsWith("ｴﾗｰｺｰﾄﾞ：")) << texts.front().toStdString();
                EXPECT_TRUE(texts.back().startsWith("登録されませんでした")
                            || texts.back().startsWith("作成できませんでした"))
                    << texts.back().toStdString();
                for (const QString &text : texts)
                    EXPECT_FALSE(text.contains("transaction")) << text.toStdString();
            }
            EXPECT_TRUE(db.BeginTrans() && db.Rollback()) << "no transaction is left open";

            // The operator looks again, answers what is still open, and all is well.
            Reload();
            AnswerAll();
            saysYes = true; // some are sent again
            Make();
            saysYes = false;
            EXPECT_TRUE(boxes.TakeTexts().back().startsWith("納期回答作成処理が"));
            EXPECT_EQ(ExpectWholeOrders(), 3);
            if (HasFailure())
                break;
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
        int left = 0;
        PlayEveryFault(
            [&](int n) {
                left = n;
                disk.SetFault([&, op](Op asked) {
                    const bool isNext = asked == op && left > 0 && --left == 0;
                    // A lock is still held when the engine comes back for it.
                    const bool isHeld = asked == op && op == Op::Lock && left == 0;
                    return isNext || isHeld ? FaultyDisk::UsualError(op) : 0;
                });
            },
            [&] { return left == 0; }, [&] { disk.SetFault({}); });
    }
}

TEST_F(FaultsTest, EveryOperationOnAnAnswerFileFailsOnce)
{
    for (const int error : {ENOSPC, EACCES, EIO}) {
        SCOPED_TRACE(error);
        int left = 0;
        PlayEveryFault(
            [&](int n) {
                left = n;
                SetFileFault([&, error](FileOp, const QString &) {
                    return left > 0 && --left == 0 ? error : 0;
                });
            },
            [&] { return left == 0; }, [] { SetFileFault({}); });
    }
}
