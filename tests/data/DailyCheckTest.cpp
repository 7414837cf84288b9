#include "data/DailyCheck.h"

#include "data/Tables.h"
#include "support/FixedClock.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <QTest>
#include <gtest/gtest.h>
#include <optional>

namespace {

/// Lowers the number of cells that a table's first page says it has: its last rows can't be reached
/// any more, and nothing that reads it gives an error.
void LoseRows(TestDatabase &file, const QString &table)
{
    const auto number = [&](const QString &sql) { return file.Rows(sql).toLongLong(); };
    const qint64 page = number("SELECT rootpage FROM sqlite_master WHERE name = '" + table + '\'');
    const qint64 count = (page - 1) * number("PRAGMA page_size") + 3;
    QByteArray bytes = file.folder.Read("TLDB0010.MDB");
    const int cells = uchar(bytes[count]) << 8 | uchar(bytes[count + 1]);
    ASSERT_GT(cells, 1);
    bytes[count] = char((cells - 1) >> 8);
    bytes[count + 1] = char(cells - 1);
    file.folder.Write("TLDB0010.MDB", bytes);
}

class DailyCheckTest : public testing::Test
{
protected:
    DailyCheckTest()
    {
        file.Run("WITH RECURSIVE N(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM N WHERE i < 2000)"
                 " INSERT INTO TLSP0010 (AccNo, AccSubNo, ShpSubNo, Biko)"
                 " SELECT i, 1, 1, 'remarks' FROM N;"
                 "UPDATE TLSP0010 SET AnsVal = 'no number'"); // wrong, but no damage of the file
    }

    void Begin(const QString &path)
    {
        told.reset();
        check.emplace(path, ConnectText, file.folder.Path("settings.ini"),
                      [this](const QStringList &faults) { told = faults; });
    }
    void Begin() { Begin(file.LocalPath()); }

    /// What it tells; nothing when it is silent.
    std::optional<QStringList> Told(int milliseconds = 20'000)
    {
        (void)QTest::qWaitFor([this] { return told.has_value(); }, milliseconds);
        return told;
    }

    static constexpr int Silence = 900; ///< ms; longer than the check of so small a file takes

    TestDatabase file;
    std::optional<QStringList> told;
    std::optional<DailyCheck> check;
};

} // namespace

TEST_F(DailyCheckTest, LinesThatAreLostWithoutAnErrorAreTold)
{
    LoseRows(file, "TLSP0010");
    Begin();
    const auto faults = Told();
    ASSERT_TRUE(faults.has_value());
    ASSERT_FALSE(faults->isEmpty());
    for (const QString &fault : *faults)
        EXPECT_TRUE(fault.startsWith("TLSP0010: ")) << fault.toStdString();
}

TEST_F(DailyCheckTest, IsMadeOnceADayAndFile)
{
    {
        const FixedClock clock(QDateTime(QDate(2026, 5, 1), QTime(9, 0)));
        Begin();
        EXPECT_EQ(Told(), QStringList());
        LoseRows(file, "TLSP0010");
        Begin();
        EXPECT_EQ(Told(Silence), std::nullopt) << "checked already";
        const TestDatabase other;
        Begin(other.LocalPath());
        EXPECT_EQ(Told(), QStringList()) << "another file";
    }
    const FixedClock clock(QDateTime(QDate(2026, 5, 2), QTime(0, 0)));
    Begin();
    EXPECT_FALSE(Told().value_or(QStringList()).isEmpty());
}

TEST_F(DailyCheckTest, GivesWayToAWriter)
{
    SetLockTimeout(file.Other(), 0);
    file.Run("BEGIN IMMEDIATE; UPDATE TLSP0010 SET Biko = 'new'");
    Begin();
    EXPECT_EQ(Told(Silence), std::nullopt);
    file.Run("COMMIT"); // throws when the check keeps the file
    EXPECT_EQ(Told(), QStringList()) << "made when the writer is done";
}

TEST_F(DailyCheckTest, OneThatCannotBeMadeIsSilentAndMadeLater)
{
    Begin(file.folder.Path("NONE.MDB"));
    EXPECT_EQ(Told(Silence), std::nullopt);
    Begin();
    check.reset(); // the program ends before the check does
    Begin();
    EXPECT_EQ(Told(), QStringList());
}
