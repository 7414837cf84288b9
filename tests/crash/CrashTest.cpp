#include "support/QtPrinters.h"
#include "support/TestDatabase.h"
#include "tldb/Commands.h"
#include "tldb/answers/AnswerFile.h"

#include <QDate>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <gtest/gtest.h>
#include <sys/stat.h>

// The program itself, in processes of their own, with other programs and sudden deaths around it.

namespace {

constexpr int OrderCount = 5;
constexpr int SplitOrder = 2;
constexpr int WaitMs = 60'000;

/// One copy of the program at work, with its operator inside.
class Program
{
public:
    Program(const QString &home, const QStringList &variables)
    {
        EXPECT_EQ(::chmod(m_runtime.Path().toUtf8(), 0700), 0);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("QT_PLUGIN_PATH", OPERATOR_PLUGIN_PATH);
        environment.insert("QT_QPA_GENERIC_PLUGINS", "operator");
        environment.insert("XDG_RUNTIME_DIR", m_runtime.Path()); // one copy for each user
        environment.insert("XDG_STATE_HOME", m_runtime.Path());  // and a log
        for (const QString &variable : variables)
            environment.insert(variable.section('=', 0, 0), variable.section('=', 1));
        m_process.setProcessEnvironment(environment);
        m_process.start(PROGRAM, {"--home", home});
    }
    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// Waits until the program has said this line.
    void WaitFor(const QByteArray &line)
    {
        m_said += m_process.readAllStandardOutput();
        while (!m_said.contains(line + '\n') && m_process.waitForReadyRead(WaitMs))
            m_said += m_process.readAllStandardOutput();
        EXPECT_TRUE(m_said.contains(line + '\n'))
            << m_said.constData() << m_process.readAllStandardError().constData();
    }

    /// Waits for the end; true when the program was not killed.
    bool WaitForEnd()
    {
        EXPECT_TRUE(m_process.waitForFinished(WaitMs));
        m_said += m_process.readAllStandardOutput();
        return m_process.exitStatus() == QProcess::NormalExit;
    }

    /// How each box began.
    QStringList Boxes() const
    {
        QStringList boxes;
        for (const QByteArray &line : m_said.split('\n'))
            if (line.startsWith("box: "))
                boxes += QString::fromUtf8(line.mid(5)).section(' ', 0, 0);
        return boxes;
    }

    bool IsDone() const { return m_said.endsWith("done\n"); }

private:
    const TestFolder m_runtime;
    QProcess m_process;
    QByteArray m_said;
};

class CrashTest : public testing::Test
{
protected:
    CrashTest()
    {
        file.folder.Write("TALVEN.INI", "[DRIVES]\r\nC=" + file.folder.Path().toUtf8() + "\r\n");
        file.Insert("TLMT0010", {{"CoCD", "CO"}});
        for (const auto &[code, layout] : {std::pair{"C1", "10SIDE"}, {"C2", "11SIDE"}})
            file.Insert("TLMT0040", {{"CustCD", code},
                                     {"VanCD", "VAN001"},
                                     {"LinKBN", 2},
                                     {"NokiInfKBN", 1},
                                     {"NokiInfPath", QString("C:\\%1.TXT").arg(code)},
                                     {"HenpVerPath", layout}});
        Reset();
    }

    static QString CustomerOf(int order) { return order % 2 ? "C1" : "C2"; }

    /// Orders of 100 pieces without answers, and no answer files.
    void Reset()
    {
        file.Run("DELETE FROM TLSP0010; DELETE FROM TLAC0010");
        for (int order = 1; order <= OrderCount; ++order) {
            file.Insert(
                "TLAC0010",
                {{"AccNo", order}, {"CustCD", CustomerOf(order)}, {"ZanVal", 100}, {"ShpSts", 1}});
            file.Insert("TLSP0010", {{"AccNo", order},
                                     {"AccSubNo", 1},
                                     {"ShpSubNo", 1},
                                     {"CustCD", CustomerOf(order)},
                                     {"OdrNo", QString("PO-%1").arg(order)},
                                     {"LimDate", "20261201"},
                                     {"AccVal", 100},
                                     {"IndVal", 100},
                                     {"ShpSts", 1},
                                     {"DenKBN", 2}});
        }
        for (const auto &name : {"C1.TXT", "C2.TXT", "gate"})
            QFile::remove(file.folder.Path(name));
    }

    Program Start(const QStringList &variables = {}) const
    {
        return Program(file.folder.Path(), variables);
    }

    /// What an order's lines hold: quantity, date as this program set it or not, answer state.
    QString Stored(int order)
    {
        const QString answered = QDate::currentDate().addDays(20).toString("yyyyMMdd");
        return file.Rows(QString("SELECT AnsVal, AnsLimDate = '%1', AnsLimUmu FROM TLSP0010 "
                                 "WHERE AccNo = %2 ORDER BY ShpSubNo")
                             .arg(answered)
                             .arg(order));
    }

    static QString Answered(int order, int state)
    {
        return (order == SplitOrder ? QString("60.0|1|%1 40.0|1|%1") : QString("100.0|1|%1"))
            .arg(state);
    }

    /// The whole records of an order: quantities and answer kind, "60 40 kind 1". A piece at the
    /// file's end is passed over when `isTornAllowed`.
    QStringList Records(int order, bool isTornAllowed)
    {
        QFile answers(file.folder.Path(CustomerOf(order) + ".TXT"));
        QByteArray bytes = answers.open(QIODevice::ReadOnly) ? answers.readAll() : QByteArray();
        if (isTornAllowed)
            bytes.truncate(bytes.contains("\r\n") ? bytes.lastIndexOf("\r\n") + 2 : 0);
        QStringList records;
        for (const DecodedAnswer &answer : DecodeAnswers(bytes)) {
            EXPECT_TRUE(answer.faults.empty()) << answer.position;
            if (answer.Value("orderNumber") != QString("PO-%1").arg(order))
                continue;
            QStringList quantities;
            for (const AnsweredDelivery &delivery : answer.deliveries)
                quantities += delivery.values[3].text;
            records += quantities.join(' ') + " kind " + answer.Value("answerKind");
        }
        return records;
    }

    static QString Record(int order, int kind)
    {
        return (order == SplitOrder ? QString("60 40 kind %1") : QString("100 kind %1")).arg(kind);
    }

    void CheckDatabase()
    {
        QString out;
        QTextStream outStream(&out);
        EXPECT_EQ(RunTool({"check", file.folder.Path()}, outStream, outStream), ExitCode::Ok)
            << out.toStdString();
    }

    TestDatabase file;
};

} // namespace

TEST_F(CrashTest, KilledAtAnyMoment)
{
    const QString countFile = file.folder.Path("count");
    const QStringList count = {"LD_PRELOAD=" CRASH_POINT, "CRASH_COUNT=" + countFile};
    {
        Program program = Start(count);
        EXPECT_TRUE(program.WaitForEnd());
        ASSERT_TRUE(program.IsDone());
    }
    for (int order = 1; order <= OrderCount; ++order) {
        EXPECT_EQ(Stored(order), Answered(order, 3));
        EXPECT_EQ(Records(order, false), QStringList{Record(order, 1)});
    }
    const int operations = file.folder.Read("count").toInt();
    ASSERT_GT(operations, 50);

    const int kills = qEnvironmentVariableIntValue("CRASH_KILLS");
    const int wanted = kills > 0 ? kills : 5;
    int killed = 0;
    for (int kill = 0; kill < wanted; ++kill) {
        // Spread over the whole run; more kills than operations begin again at the first.
        const int at = 1 + (wanted <= operations ? kill * operations / wanted : kill % operations);
        SCOPED_TRACE(testing::Message() << "killed at operation " << at << " of " << operations);
        Reset();
        killed += !Start({"LD_PRELOAD=" CRASH_POINT, QString("CRASH_AT=%1").arg(at)}).WaitForEnd();
        file.WaitUntilAlone();

        CheckDatabase();
        std::vector<bool> wasMarked(OrderCount + 1);
        int unmarkedRecords = 0;
        for (int order = 1; order <= OrderCount; ++order) {
            const QString stored = Stored(order);
            const auto records = Records(order, true);
            wasMarked[order] = stored == Answered(order, 3);
            EXPECT_TRUE(stored == "0.0|0|0" || stored == Answered(order, 0) || wasMarked[order])
                << order << ": " << stored.toStdString();
            EXPECT_TRUE(records.isEmpty() || records == QStringList{Record(order, 1)}) << order;
            EXPECT_TRUE(!wasMarked[order] || !records.isEmpty()) << order << ": a lost answer";
            unmarkedRecords += !wasMarked[order] && !records.isEmpty();
        }
        EXPECT_LE(unmarkedRecords, 1);

        Program again = Start();
        EXPECT_TRUE(again.WaitForEnd());
        EXPECT_TRUE(again.IsDone());
        EXPECT_EQ(again.Boxes().last(), "納期回答作成処理が終了しました");
        CheckDatabase();
        for (int order = 1; order <= OrderCount; ++order) {
            EXPECT_EQ(Stored(order), Answered(order, 3));
            const auto records = Records(order, false);
            ASSERT_FALSE(records.isEmpty());
            EXPECT_EQ(records.last(), Record(order, wasMarked[order] ? 2 : 1));
            EXPECT_LE(records.size(), 2);
        }
        if (HasFailure())
            break;
    }
    EXPECT_EQ(killed, wanted);
}

TEST_F(CrashTest, TwoUsersAnswerTheSameLines)
{
    const QString gate = file.folder.Path("gate");
    Program first = Start({"OPERATOR_GATE=" + gate});
    first.WaitFor("ready");
    Program second = Start();
    EXPECT_TRUE(second.WaitForEnd());
    EXPECT_TRUE(second.IsDone());
    file.folder.Write("gate", "");
    EXPECT_TRUE(first.WaitForEnd());
    EXPECT_TRUE(first.IsDone());
    const QString summary = "納期回答作成処理が終了しました";
    EXPECT_EQ(second.Boxes(), QStringList{summary});
    EXPECT_EQ(first.Boxes(), (QStringList{"このまま納期回答を作成してもよろしいですか", summary}));
    CheckDatabase();
    // Whoever comes second and says yes is seen to have answered again.
    for (const int order : {1, 3, 4, 5})
        EXPECT_EQ(Records(order, false), (QStringList{Record(order, 1), Record(order, 2)}));
    EXPECT_EQ(file.Rows("SELECT ShpSubNo, AnsVal FROM TLSP0010 WHERE AccNo = 2 ORDER BY ShpSubNo"),
              "1|60.0 2|40.0 3|40.0")
        << "both splits are kept";
    EXPECT_EQ(Records(SplitOrder, false), (QStringList{Record(SplitOrder, 1), "60 40 40 kind 2"}));
}

TEST_F(CrashTest, TwoUsersAnswerAtTheSameMoment)
{
    const QString gate = file.folder.Path("gate");
    Program first = Start({"OPERATOR_GATE=" + gate});
    Program second = Start({"OPERATOR_GATE=" + gate});
    first.WaitFor("ready");
    second.WaitFor("ready");
    file.folder.Write("gate", "");
    for (Program *program : {&first, &second}) {
        EXPECT_TRUE(program->WaitForEnd());
        EXPECT_TRUE(program->IsDone());
        EXPECT_TRUE(program->Boxes().contains("納期回答作成処理が終了しました"));
    }
    CheckDatabase();
    for (int order = 1; order <= OrderCount; ++order) {
        const QStringList records = Records(order, false);
        EXPECT_EQ(records.filter("kind 1").size(), 1) << records.join(", ").toStdString();
        EXPECT_TRUE(Stored(order).startsWith(order == SplitOrder ? "60.0|1|3" : "100.0|1|3"));
    }
}
