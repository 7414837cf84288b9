#include "ToolRun.h"
#include "data/Tables.h"
#include "support/FaultyDisk.h"
#include "support/FixedClock.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <QDir>
#include <QFile>
#include <functional>
#include <gtest/gtest.h>

namespace {

class HistoryCommands : public testing::Test
{
protected:
    HistoryCommands()
    {
        SetLockTimeout(file.Other(), 0);
        file.Insert("TLMT0010", {{"CoCD", "CO"}});
    }

    QString Path() const { return file.folder.Path("TLDB0010.MDB"); }
    QStringList Files() const { return QDir(file.folder.Path()).entryList(QDir::Files); }

    const FixedClock clock{QDateTime(QDate(2026, 11, 25), QTime(10, 11, 12))};
    TestDatabase file;
    const QString backup = "TLDB0010-20261125-101112.MDB";
};

} // namespace

TEST_F(HistoryCommands, UpgradeMakesTheTableOnceAndKeepsACopy)
{
    const QString schema = "SELECT sql FROM sqlite_master WHERE name = 'TLAH0010'";
    const QString made = file.Rows(schema);
    file.Run("DROP TABLE TLAH0010");
    QFile::setPermissions(Path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    bDAO program; // has it open and has read from it
    file.Open(program);
    EXPECT_FALSE(program.HasTable("TLAH0010"));
    EXPECT_EQ(ToolRun({"check", file.folder.Path()}).out,
              Path() + ": 10 tables, 1 rows read, 0 findings, 0 notes\n");
    const QByteArray before = file.folder.Read("TLDB0010.MDB");

    const ToolRun first({"upgrade", file.folder.Path()});
    EXPECT_EQ(first.err, "");
    EXPECT_EQ(first.out,
              Path() + ": upgraded, the database as it was is " + file.folder.Path(backup) + '\n');
    EXPECT_EQ(file.Rows(schema), made);
    constexpr int HeaderLength = 100; // counts who has written
    EXPECT_EQ(file.folder.Read(backup).mid(HeaderLength), before.mid(HeaderLength));
    EXPECT_EQ(QFile::permissions(file.folder.Path(backup)), QFile::permissions(Path()));
    EXPECT_TRUE(program.HasTable("TLAH0010"));
    EXPECT_TRUE(ToolRun({"check", file.folder.Path()}).out.contains(": 11 tables, "));

    const QByteArray after = file.folder.Read("TLDB0010.MDB");
    const ToolRun second({"upgrade", file.folder.Path()});
    EXPECT_EQ(second.exitCode, ExitCode::Ok);
    EXPECT_EQ(second.out, Path() + ": nothing to do\n");
    EXPECT_EQ(file.folder.Read("TLDB0010.MDB"), after);
    EXPECT_EQ(Files(), (QStringList{backup, "TLDB0010.MDB"}));
}

TEST_F(HistoryCommands, ANewDatabaseHasTheTable)
{
    const QString sample = QString(QT_TESTCASE_SOURCEDIR) + "/tldb/existing-database.mdb";
    for (const QStringList &make : {QStringList{"create"}, QStringList{"demo", "--lines", "10"},
                                    QStringList{"import", sample}}) {
        const QString dir = file.folder.Path(make[0]);
        const ToolRun made(make + QStringList{dir});
        EXPECT_FALSE(made.out.contains("TLAH0010")) << made.out.toStdString();
        EXPECT_TRUE(ToolRun({"upgrade", dir}).out.endsWith(": nothing to do\n"))
            << make[0].toStdString();
    }
}

TEST_F(HistoryCommands, NobodyWritesBetweenTheCopyAndTheTable)
{
    file.Run("DROP TABLE TLAH0010");
    int synced = 0;
    FaultyDisk disk;
    disk.SetFault([&](FaultyDisk::Op op) {
        if (op == FaultyDisk::Op::Sync) {
            ++synced;
            EXPECT_TRUE(IsLockedForOthers(Path()));
        }
        return 0;
    });
    EXPECT_EQ(ToolRun({"upgrade", file.folder.Path()}).err, "");
    EXPECT_GE(synced, 2) << "the copy, then the database";
    EXPECT_FALSE(IsLockedForOthers(Path()));
}

TEST_F(HistoryCommands, AnUpgradeThatFailsLeavesTheDatabaseAloneInItsFolder)
{
    file.Run("DROP TABLE TLAH0010; CREATE VIEW TLAH0010 AS SELECT 1 AS x WHERE 0");
    const std::pair<std::function<void()>, const char *> cases[] = {
        {[&] { file.Run("DROP VIEW TLAH0010; CREATE INDEX TLAH0010 ON TLAC0010 (CustCD)"); },
         "database error 3075"}, // the copy is made by then
        {[&] { file.folder.Write(backup, "another"); }, "the database can't be written"},
    };
    for (const auto &[arrange, error] : cases) {
        SCOPED_TRACE(error);
        arrange();
        const QByteArray before = file.folder.Read("TLDB0010.MDB");
        const QStringList files = Files();
        const ToolRun run({"upgrade", file.folder.Path()});
        EXPECT_EQ(run.exitCode, ExitCode::Found);
        EXPECT_EQ(run.out, "");
        EXPECT_TRUE(run.err.startsWith("tldb: " + Path() + ": " + error)) << run.err.toStdString();
        EXPECT_EQ(file.folder.Read("TLDB0010.MDB"), before);
        EXPECT_EQ(Files(), files);
        EXPECT_NO_THROW(file.Run("BEGIN IMMEDIATE; ROLLBACK")) << "the lock is gone";
    }
    EXPECT_EQ(file.folder.Read(backup), "another");
}

TEST_F(HistoryCommands, HistoryIsShownInColumns)
{
    const auto add
        = [&](int accNo, int number, const char *order, const char *time, const char *record) {
              file.Insert("TLAH0010", {{"AccNo", accNo},
                                       {"AccSubNo", 1},
                                       {"ShpSubNo", 2},
                                       {"AnsNo", number},
                                       {"CustCD", "C1"},
                                       {"OdrNo", order},
                                       {"LimDate", "20261201"},
                                       {"AnsLimDate", "20261202"},
                                       {"AnsVal", 2.5},
                                       {"AnsMark", "2"},
                                       {"AnsKBN", QString::number(number)},
                                       {"RecNo", record},
                                       {"RecPath", *record ? "C:\\A B.TXT" : ""},
                                       {"UserName", "tanaka"},
                                       {"MachineName", "desk1"},
                                       {"UpdDate", "20261125"},
                                       {"UpdTime", time}});
          };
    add(7, 2, "PO-7\n", "101113", "00002");
    add(8, 1, "PO'8", "101112", "");
    add(7, 1, "PO-7\n", "101112", "00001");
    const QString heading = "date      time    user    machine  customer  order  line   delivery  "
                            "wanted    answered  quantity  mark  kind  record  file\n";
    const auto row = [](const QString &time, const QString &order, const QString &end) {
        return "20261125  " + time + "  tanaka  desk1    C1        " + order
               + "/1/2  -         20261201  20261202  2.5       2     " + end + '\n';
    };
    const QString ofEight = row("101112", "PO'8   8", "1     -       -");
    const std::pair<QStringList, QString> cases[] = {
        {{},
         heading + row("101112", "PO-7   7", "1     00001   C:\\A B.TXT") + ofEight
             + row("101113", "PO-7   7", "2     00002   C:\\A B.TXT")},
        {{"po'8 "}, QString(heading).replace("order  ", "order  ") + ofEight},
        {{"PO-9"},
         "date  time  user  machine  customer  order  line  delivery  wanted  answered  "
         "quantity  mark  kind  record  file\n"},
    };
    for (const auto &[order, shown] : cases) {
        const ToolRun run(QStringList{"history", file.folder.Path()} + order);
        EXPECT_EQ(run.exitCode, ExitCode::Ok);
        EXPECT_EQ(run.out, shown);
    }
    file.Run("DROP TABLE TLAH0010");
    const ToolRun without({"history", file.folder.Path()});
    EXPECT_EQ(without.exitCode, ExitCode::Found);
    EXPECT_TRUE(without.err.contains("keeps no history")) << without.err.toStdString();
}
