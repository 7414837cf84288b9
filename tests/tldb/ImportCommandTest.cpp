#include "ToolRun.h"
#include "support/QtPrinters.h"
#include "support/TestFolder.h"

#include "data/Tables.h"
#include "data/dao/Database.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

/// A copy of a database in the original engine's format, and a folder for the new one.
class ImportCommand : public testing::Test
{
protected:
    ImportCommand()
    {
        QFile sample(QT_TESTCASE_SOURCEDIR "/tldb/existing-database.mdb");
        EXPECT_TRUE(sample.open(QIODevice::ReadOnly));
        bytes = sample.readAll();
        folder.Write("OLD.MDB", bytes);
    }

    ToolRun Import() { return ToolRun({"import", folder.Path("OLD.MDB"), folder.Path("new")}); }

    QString Value(const QString &sql)
    {
        Database database(folder.Path("new/TLDB0010.MDB"), true, ConnectText);
        const auto rows = database.OpenRecordset(sql);
        return rows->IsEof() ? "no row" : rows->IsNull(0) ? "null" : rows->Text(0);
    }

    const TestFolder folder;
    QByteArray bytes;
};

} // namespace

TEST_F(ImportCommand, EveryTableComesOver)
{
    const QFileInfo old(folder.Path("OLD.MDB"));
    QFile(old.filePath()).setPermissions(QFile::ReadOwner);
    const QDateTime written = old.lastModified();
    const ToolRun run = Import();
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.exitCode, ExitCode::Found);
    const QStringList lines = run.OutLines();
    ASSERT_EQ(lines.size(), 11 + 26 + 1);
    const QStringList tables = {"TLMT0010: 1",   "TLMT0020: 40",  "TLMT0030: 140", "TLMT0040: 7",
                                "TLMT0050: 21",  "TLAC0010: 400", "TLAC0020: 400", "TLEI0010: 260",
                                "TLEI0011: 201", "TLSP0010: 493", "TLXX9000: 30"};
    for (qsizetype at = 0; at < tables.size(); ++at)
        EXPECT_TRUE(lines[at].startsWith(tables[at] + " rows read, " + tables[at].section(' ', 1)
                                         + " written"))
            << lines[at].toStdString();
    EXPECT_EQ(lines[11], "TLSP0010 AccNo=37 AccSubNo=1 ShpSubNo=1 ShpVal: has more than 3 "
                         "decimals: 191.666666666667");
    EXPECT_TRUE(lines.last().endsWith(", 26 findings"));

    EXPECT_EQ(folder.Read("OLD.MDB"), bytes);
    EXPECT_EQ(QFileInfo(old.filePath()).lastModified(), written);
    EXPECT_EQ(QDir(folder.Path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name),
              (QStringList{"OLD.MDB", "new"}));
    const ToolRun check({"check", folder.Path("new")});
    EXPECT_TRUE(check.out.endsWith("10 tables, 1963 rows read, 26 findings, 2 notes\n"))
        << check.out.toStdString();
}

TEST_F(ImportCommand, ValuesAreAsTheyWere)
{
    Import();
    const struct
    {
        const char *sql;
        const char *value;
    } cases[] = {
        {"SELECT CustName FROM TLMT0040 WHERE CustCD = 'C0002'", "南海通信工業㈱"},
        {"SELECT Biko FROM TLSP0010 WHERE AccNo = 2 AND ShpSubNo = 1", "至急　O'Neil 様分 | 50%"},
        {"SELECT LabelNo FROM TLSP0010 WHERE AccNo = 2 AND ShpSubNo = 1", "L2"},
        {"SELECT Tan = 91.25 FROM TLSP0010 WHERE AccNo = 1", "1"},
        {"SELECT PayKeyNo FROM TLSP0010 WHERE AccNo = 1", "null"},
        {"SELECT COUNT(*) FROM TLSP0010 WHERE AnsLimDate IS NULL", "214"},
        {"SELECT COUNT(*) FROM TLSP0010 WHERE AnsLimDate = ''", "183"},
        // What the old file lacks.
        {"SELECT COUNT(*) FROM TLAC0020 WHERE DpoFlg = 0 AND UpdPGName = ''", "400"},
        // The table that the system does not know: memo, date, currency, boolean, float, byte.
        {"SELECT LENGTH(Note) FROM TLXX9000 ORDER BY 1 DESC", "8300"},
        {"SELECT COUNT(*) FROM TLXX9000 WHERE Note IS NULL", "5"},
        {"SELECT At FROM TLXX9000 WHERE ID = 2", "2003-04-02 09:01:30"},
        {"SELECT Money = 1234.1001 FROM TLXX9000 WHERE ID = 2", "1"},
        {"SELECT SUM(Yes) FROM TLXX9000", "15"},
        {"SELECT F4 = 0.3333333432674408 FROM TLXX9000 WHERE ID = 2", "1"},
        {"SELECT B1 FROM TLXX9000 WHERE ID = 5", "4"},
        {"SELECT Value FROM DBProperty WHERE Name = 'AccessVersion'", "08.50"},
    };
    for (const auto &[sql, value] : cases)
        EXPECT_EQ(Value(sql), value) << sql;
}

TEST_F(ImportCommand, ADatabaseThatTheProgramWillRefuseIsAFinding)
{
    const auto utf16 = [](const char *text) {
        const QString wide = text;
        return QByteArray(reinterpret_cast<const char *>(wide.utf16()), 2 * wide.size());
    };
    folder.Write("OLD.MDB", bytes.replace(utf16("08.50"), utf16("07.50")));
    EXPECT_TRUE(Import().OutLines().contains("DBProperty AccessVersion: 07.50 is older than 8.0"));
}

TEST_F(ImportCommand, WhatCannotBeImportedLeavesNothingBehind)
{
    folder.Write("TEXT.MDB", "注文情報");
    folder.Write("FORMAT3.MDB", QByteArray(bytes).replace(20, 1, QByteArray(1, '\0')));
    folder.Write("TORN.MDB", bytes.left(100'000));
    folder.Write("START.MDB", bytes.left(4096));
    folder.Write("SQLITE.MDB", QByteArray("SQLite format 3\0", 16) + QByteArray(4080, '\0'));
    folder.Write("file", "");
    folder.MakeFolder("full");
    folder.Write("full/TLDB0010.MDB", "");
    for (const char *name :
         {"TEXT.MDB", "FORMAT3.MDB", "TORN.MDB", "START.MDB", "SQLITE.MDB", "NONE.MDB", "."}) {
        const ToolRun run({"import", folder.Path(name), folder.Path("new")});
        EXPECT_EQ(run.exitCode, ExitCode::Found) << name;
        EXPECT_EQ(run.err.count('\n'), 1) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(name)) << run.err.toStdString();
    }
    for (const char *name : {"file", "full"}) {
        const ToolRun run({"import", folder.Path("OLD.MDB"), folder.Path(name)});
        EXPECT_EQ(run.exitCode, ExitCode::Found) << name;
        EXPECT_EQ(run.err.count('\n'), 1) << run.err.toStdString();
    }
    EXPECT_EQ(folder.Read("full/TLDB0010.MDB"), "");
    EXPECT_FALSE(QFileInfo::exists(folder.Path("new/TLDB0010.MDB")));

    // The old file itself under the new one's name.
    folder.MakeFolder("own");
    folder.Write("own/TLDB0010.MDB", bytes);
    const ToolRun run({"import", folder.Path("own/TLDB0010.MDB"), folder.Path("own")});
    EXPECT_EQ(run.exitCode, ExitCode::Found);
    EXPECT_TRUE(run.err.contains("another one first")) << run.err.toStdString();
    EXPECT_EQ(folder.Read("own/TLDB0010.MDB"), bytes);
}
