#include "output/AnswerRun.h"

#include <QThread>
#include <thread>

namespace {

class SharingTest : public AnswerRun
{
protected:
    SharingTest()
    {
        AddCustomer("C1");
        for (const int order : {1, 2, 3}) {
            AddOrder(order, "C1");
            AddLine(order, 1);
        }
    }

    /// Lets the other program lock the whole database for a short time, and act begin meanwhile.
    template <typename Act>
    void WhileLocked(Act &&act)
    {
        file.Run("BEGIN EXCLUSIVE");
        std::thread other([this] {
            QThread::msleep(300);
            file.Run("COMMIT");
        });
        act();
        other.join();
    }
};

} // namespace

TEST_F(SharingTest, AShortLockIsWaitedOut)
{
    file.Open(db);
    WhileLocked([this] { Reload(); });
    SelectAll();
    WhileLocked([this] { EXPECT_EQ(Make().records, 3); });
    EXPECT_EQ(boxes.TakeTexts().size(), 1u) << "the summary";
    EXPECT_EQ(file.Rows("SELECT COUNT(*) FROM TLSP0010 WHERE AnsLimUmu = 3"), "3");
}

TEST_F(SharingTest, LinesThatChangedUnderTheOperator)
{
    const struct
    {
        const char *what;
        const char *change; ///< what the other program does to the second order of three
        std::vector<QString> boxes;
        const char *answered;
    } cases[] = {
        {"deleted",
         "DELETE FROM TLSP0010 WHERE AccNo = 2;",
         {"データが存在しません\r", "登録されませんでした\r注文№ PO-2"},
         ""},
        {"deleted logically",
         "UPDATE TLSP0010 SET DpoFlg = 1 WHERE AccNo = 2;",
         {"データが存在しません\r", "登録されませんでした\r注文№ PO-2"},
         ""},
        {"shipped",
         "UPDATE TLSP0010 SET ShpSts = 3, ShpDate = '20261120' WHERE AccNo = 2;",
         {"データが存在しません\r", "作成できませんでした\r"},
         "1"},
        {"customer gone",
         "UPDATE TLMT0040 SET DpoFlg = 1;",
         {"データが存在しません\r", "作成できませんでした\r"},
         ""},
        {"answered", "UPDATE TLSP0010 SET AnsLimUmu = 3 WHERE AccNo = 2;", {}, "1 2 3"},
    };
    Load();
    for (const auto &[what, change, expected, answered] : cases) {
        SCOPED_TRACE(what);
        file.Run("DELETE FROM TLSP0010; UPDATE TLMT0040 SET DpoFlg = 0");
        file.folder.Write("C1.TXT", "");
        for (int order = 1; order <= 3; ++order)
            AddLine(order, 1);
        Reload();
        SelectAll();
        file.Run(change);
        Make();
        const auto texts = boxes.TakeTexts();
        if (expected.empty())
            EXPECT_EQ(texts.size(), 1u) << "the summary";
        else
            EXPECT_EQ(texts, expected);
        EXPECT_TRUE(grid.Redraw());
        EXPECT_EQ(status.last(), "");
        EXPECT_EQ(file.Rows("SELECT AccNo FROM TLSP0010 WHERE AnsLimUmu = 3 ORDER BY 1"), answered);
        if (QString(what) == "shipped") {
            EXPECT_EQ(file.Rows("SELECT ShpDate FROM TLSP0010 WHERE AccNo = 2"), "20261120");
        } else if (QString(what) == "answered") {
            EXPECT_EQ(Records("C1.TXT")[1].mid(89, 1), "2") << "an answer once more";
        }
    }
}
