#include "ToolRun.h"
#include "support/FixedClock.h"
#include "support/QtPrinters.h"
#include "support/TestFolder.h"

#include "data/Tables.h"
#include "data/dao/Database.h"
#include "platform/DrivePaths.h"

#include <QDir>
#include <gtest/gtest.h>
#include <set>

namespace {

/// A folder with demonstration data.
class Demo
{
public:
    explicit Demo(const QStringList &options)
        : run(QStringList{"demo", folder.Path("demo")} + options)
        , m_database(folder.Path("demo/TLDB0010.MDB"), true, ConnectText)
    {
    }

    std::unique_ptr<Recordset> Open(const QString &sql) { return m_database.OpenRecordset(sql); }

    double Number(const QString &sql) { return Open(sql)->Number(0); }

    /// Every row of every table as text.
    QString Dump()
    {
        QString dump;
        for (const TableDefinition &table : Tables())
            for (auto rows = Open(QString("SELECT * FROM %1").arg(table.name)); !rows->IsEof();
                 rows->MoveNext())
                for (int field = 0; field < rows->FieldCount(); ++field)
                    dump += rows->Text(field) + (field + 1 < rows->FieldCount() ? '|' : '\n');
        return dump;
    }

    const TestFolder folder;
    const ToolRun run;

private:
    Database m_database;
};

/// One day's data, large enough that everything rare occurs.
Demo &LargeDemo()
{
    static Demo demo({"--lines", "5000", "--date", "20260401"});
    return demo;
}

} // namespace

TEST(DemoCommand, EqualOptionsMakeEqualRows)
{
    const QStringList options = {"--lines", "300", "--seed", "7", "--date", "20260401"};
    Demo demo(options);
    ASSERT_EQ(demo.run.exitCode, ExitCode::Ok) << demo.run.err.toStdString();
    const QString dump = demo.Dump();
    EXPECT_EQ(Demo(options).Dump(), dump);
    {
        const FixedClock clock(QDateTime(QDate(2026, 4, 1), QTime(23, 59)));
        EXPECT_EQ(Demo({"--lines", "300", "--seed", "7"}).Dump(), dump);
    }
    QStringList other = options;
    other[3] = "8";
    EXPECT_NE(Demo(other).Dump(), dump);
}

TEST(DemoCommand, DataPassesTheCheck)
{
    const TestFolder folder;
    for (const char *date : {"19520101", "20240229", "20491231"}) {
        SCOPED_TRACE(date);
        const QString dir = folder.Path(date);
        ASSERT_EQ(ToolRun({"demo", dir, "--lines", "1000", "--date", date}).exitCode, ExitCode::Ok);
        const ToolRun check({"check", dir});
        EXPECT_EQ(check.exitCode, ExitCode::Ok) << check.out.toStdString();
    }
}

// What must not occur: rows that contradict each other.
TEST(DemoCommand, RowsAgreeWithEachOther)
{
    const std::pair<const char *, const char *> cases[] = {
        {"more than 31 lines", "SELECT AccNo FROM TLSP0010 GROUP BY AccNo HAVING COUNT(*) > 31"},
        {"instructed is not ordered",
         "SELECT AccNo FROM TLSP0010 GROUP BY AccNo HAVING SUM(IndVal) <> MAX(AccVal)"},
        {"open quantity",
         "SELECT o.AccNo FROM TLAC0010 AS o, TLSP0010 AS l WHERE o.AccNo = l.AccNo GROUP BY "
         "o.AccNo HAVING SUM(CASE WHEN l.ShpSts < 3 THEN l.IndVal ELSE 0 END) <> MAX(o.ZanVal)"},
        {"more answered than open",
         "SELECT o.AccNo FROM TLAC0010 AS o, TLSP0010 AS l WHERE o.AccNo = l.AccNo AND "
         "l.ShpSts < 3 GROUP BY o.AccNo HAVING SUM(l.AnsVal) > MAX(o.ZanVal)"},
        {"EIAJ rows only for orders by EDI",
         "SELECT 1 FROM TLAC0010 AS o WHERE (EDIKBN = 1) <> EXISTS (SELECT 1 FROM TLEI0010 AS e, "
         "TLEI0011 AS f WHERE e.AccNo = o.AccNo AND f.AccNo = o.AccNo)"},
        {"destination",
         "SELECT 1 FROM TLSP0010 AS l, TLMT0040 AS c WHERE c.CustCD = l.CustCD AND "
         "(LENGTH(c.VanCD) >= 6) <> EXISTS (SELECT 1 FROM TLMT0050 AS d WHERE d.CustCoCD = "
         "Left$(c.VanCD, 6) AND d.PayDstCD = l.PayDstCD)"},
        {"an answer without its history",
         "SELECT 1 FROM TLSP0010 AS l WHERE (AnsLimUmu = 3) <> EXISTS (SELECT 1 FROM TLAH0010 AS h "
         "WHERE h.AccNo = l.AccNo AND h.AccSubNo = l.AccSubNo AND h.ShpSubNo = l.ShpSubNo "
         "AND h.AnsLimDate IS l.AnsLimDate AND h.AnsVal = l.AnsVal)"},
    };
    for (const auto &[what, rows] : cases)
        EXPECT_EQ(LargeDemo().Open(rows)->RecordCount(), 0) << what;
}

// The answer files of every customer have to land below the folder, wherever the data is used.
TEST(DemoCommand, SettingsLeadEveryPathIntoTheFolder)
{
    Demo &demo = LargeDemo();
    const QString dir = demo.folder.Path("demo");
    const IniFile ini = IniFile::Read(dir + "/TALVEN.INI");
    const DrivePaths drives(ini);
    std::set<QString> paths;
    for (auto rows = demo.Open("SELECT NokiInfPath FROM TLMT0040"); !rows->IsEof();
         rows->MoveNext()) {
        const QString local = drives.ToLocal(rows->Text(0));
        EXPECT_TRUE(local.startsWith(QDir(dir).absolutePath() + "/drives/"))
            << rows->Text(0).toStdString() << " is " << local.toStdString();
        paths.insert(local);
    }
    EXPECT_EQ(double(paths.size()), demo.Number("SELECT COUNT(*) FROM TLMT0040"));
}

TEST(DemoCommand, ASettingsFileIsNotOverwritten)
{
    const TestFolder folder;
    folder.Write("TALVEN.INI", "[PATH]\r\n");
    const ToolRun run({"demo", folder.Path(), "--lines", "10"});
    EXPECT_EQ(run.exitCode, ExitCode::Found);
    EXPECT_EQ(folder.Read("TALVEN.INI"), "[PATH]\r\n");
    EXPECT_EQ(QDir(folder.Path()).entryList(QDir::Files), QStringList{"TALVEN.INI"});
}
