#include "output/Desks.h"

namespace {

class CrashTest : public Desks
{
};

} // namespace

TEST_F(CrashTest, KilledAtAnyMoment)
{
    AddOrders();
    QProcess whole;
    Start(whole, 1, 1, {"LD_PRELOAD=" CRASH_POINT, "CRASH_COUNT=" + file.folder.Path("count")});
    CheckOrders(SaidBy(whole));
    const int operations = file.folder.Read("count").toInt();
    ASSERT_GT(operations, 50);

    const int kills = qEnvironmentVariableIntValue("CRASH_KILLS");
    const int wanted = kills > 0 ? kills : 5;
    for (int kill = 0; kill < wanted && !HasFailure(); ++kill) {
        // Spread over the whole run; more kills than operations begin again at the first.
        const int at = 1 + (wanted <= operations ? kill * operations / wanted : kill % operations);
        SCOPED_TRACE(testing::Message() << "killed at operation " << at << " of " << operations);
        AddOrders();
        QProcess killed;
        Start(killed, 1, 1, {"LD_PRELOAD=" CRASH_POINT, QString("CRASH_AT=%1").arg(at)});
        QStringList said = SaidBy(killed);
        EXPECT_EQ(killed.exitStatus(), QProcess::CrashExit);
        CheckOrders(said, 0, true);

        // What was on its way to the disk is sent once more, and nothing else.
        QProcess again;
        Start(again, 2, 1);
        said += SaidBy(again);
        EXPECT_EQ(again.exitCode(), 0);
        CheckOrders(said, 1);
        EXPECT_EQ(file.Rows("SELECT COUNT(DISTINCT AccNo) FROM TLSP0010 WHERE AnsLimUmu = 3"),
                  QString::number(OrderCount));
    }
}
