#include "output/AnswerRun.h"

#include <QProcess>

namespace {

/// Another program at work on the same database: the engine's own shell.
class OtherProgram
{
public:
    explicit OtherProgram(const QString &path)
    {
        m_shell.start("sqlite3", {path});
        EXPECT_TRUE(m_shell.waitForStarted());
        Run(".timeout 60000\nPRAGMA synchronous=OFF;");
    }
    ~OtherProgram()
    {
        m_shell.closeWriteChannel();
        EXPECT_TRUE(m_shell.waitForFinished(WaitMs));
        EXPECT_EQ(m_shell.readAllStandardError(), "");
    }

    /// Begins to run commands and does not wait for them.
    void Begin(const QByteArray &commands)
    {
        m_shell.write(commands + '\n');
        EXPECT_TRUE(m_shell.waitForBytesWritten());
    }

    /// Runs commands and waits until they are done.
    void Run(const QByteArray &commands)
    {
        Begin(commands + "\n.print ready");
        WaitForReady();
    }

    void WaitForReady()
    {
        // Some may have come in while the program looked at its events.
        QByteArray said = m_shell.readAllStandardOutput();
        while (!said.contains("ready") && m_shell.waitForReadyRead(WaitMs))
            said += m_shell.readAllStandardOutput();
        EXPECT_TRUE(said.contains("ready"));
    }

private:
    static constexpr int WaitMs = 100'000;

    QProcess m_shell;
};

class SharingTest : public AnswerRun
{
protected:
    SharingTest()
    {
        AddCustomer("C1");
        for (int order = 1; order <= Orders; ++order) {
            AddOrder(order, "C1");
            AddLine(order, 1, {}, QString("%1").arg(order, 3));
        }
    }

    QString Answered() { return file.Rows("SELECT COUNT(*) FROM TLSP0010 WHERE AnsLimUmu = 3"); }

    static constexpr int Orders = 20;
};

} // namespace

TEST_F(SharingTest, AShortLockIsWaitedOut)
{
    OtherProgram other(file.LocalPath());
    const QByteArray lock = "BEGIN EXCLUSIVE;\n.print ready\n.system sleep 0.3\nCOMMIT;";
    file.Open(db);
    other.Begin(lock);
    other.WaitForReady();
    Reload();
    SelectAll();
    other.Begin(lock);
    other.WaitForReady();
    EXPECT_EQ(Make().records, Orders);
    EXPECT_EQ(boxes.TakeTexts().size(), 1u) << "the summary";
    EXPECT_EQ(Answered(), "20");
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
    OtherProgram other(file.LocalPath());
    for (const auto &[what, change, expected, answered] : cases) {
        SCOPED_TRACE(what);
        file.Run("DELETE FROM TLSP0010; UPDATE TLMT0040 SET DpoFlg = 0");
        file.folder.Write("C1.TXT", "");
        for (int order = 1; order <= 3; ++order)
            AddLine(order, 1, {}, QString::number(order));
        Reload();
        SelectAll();
        other.Run(change);
        Make();
        const auto texts = boxes.TakeTexts();
        if (expected.empty())
            EXPECT_EQ(texts.size(), 1u) << "the summary";
        else
            EXPECT_EQ(texts, expected);
        EXPECT_TRUE(grid.Redraw());
        EXPECT_EQ(status.last(), "");
        EXPECT_EQ(file.Rows("SELECT AccNo FROM TLSP0010 WHERE AnsLimUmu = 3 ORDER BY 1"), answered);
        if (QString(what) == "answered") {
            EXPECT_EQ(Records("C1.TXT")[1].mid(89, 1), "2") << "an answer once more";
        }
    }
}
