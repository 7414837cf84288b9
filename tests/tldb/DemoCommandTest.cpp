#include "ToolRun.h"
#include "support/FixedClock.h"
#include "support/QtPrinters.h"
#include "support/TestFolder.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "data/dao/Database.h"
#include "platform/DrivePaths.h"

#include <QDir>
#include <gtest/gtest.h>
#include <map>
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
    EXPECT_GT(dump.count('\n'), 900);
    EXPECT_EQ(Demo(options).Dump(), dump);
    {
        const FixedClock clock(QDateTime(QDate(2026, 4, 1), QTime(23, 59)));
        EXPECT_EQ(Demo({"--lines", "300", "--seed", "7"}).Dump(), dump);
    }
    for (const auto &[option, value] :
         std::map<int, QString>{{1, "301"}, {3, "8"}, {5, "20260402"}}) {
        QStringList other = options;
        other[option] = value;
        EXPECT_NE(Demo(other).Dump(), dump) << value.toStdString();
    }
}

TEST(DemoCommand, DataPassesTheCheck)
{
    const TestFolder folder;
    for (const char *date : {"19520101", "20240229", "20491231"}) {
        SCOPED_TRACE(date);
        const QString dir = folder.Path(date);
        ASSERT_EQ(ToolRun({"demo", dir, "--lines", "400", "--date", date}).exitCode, ExitCode::Ok);
        const ToolRun check({"check", dir});
        EXPECT_EQ(check.exitCode, ExitCode::Ok) << check.out.toStdString();
    }
    const ToolRun check({"check", LargeDemo().folder.Path("demo")});
    EXPECT_EQ(check.exitCode, ExitCode::Ok) << check.out.toStdString();
}

// Each of these has to occur, since somebody wants to see or try it.
TEST(DemoCommand, EverythingOccurs)
{
    const struct
    {
        const char *what;
        const char *from;
        int least;
        int most;
    } cases[] = {
        {"lines", "TLSP0010", 5000, 5000},
        {"open lines of the first customer",
         "TLSP0010 WHERE CustCD = 'C0001' AND ShpSts = 1 AND AnsVal = 0", 200, 2000},
        {"shipped lines of open orders",
         "TLSP0010, TLAC0010 WHERE TLSP0010.AccNo = TLAC0010.AccNo AND TLSP0010.ShpSts = 3 "
         "AND TLAC0010.ShpSts <> 3",
         20, 1000},
        {"lines between open and shipped", "TLSP0010 WHERE ShpSts = 2", 20, 300},
        {"lines in state 4", "TLSP0010 WHERE ShpSts = 4", 5, 200},
        {"shipped orders", "TLAC0010 WHERE ShpSts = 3", 100, 2000},
        {"replacements", "TLSP0010 WHERE DenKBN = 15", 50, 500},
        {"slip kinds that are not listed", "TLSP0010 WHERE DenKBN NOT IN (2, 15)", 50, 500},
        {"answers that were output", "TLSP0010 WHERE AnsLimUmu = 3 AND ShpSts = 1", 200, 3000},
        {"answers not output", "TLSP0010 WHERE AnsLimUmu = 0 AND AnsVal > 0", 50, 1000},
        {"answers on the day", "TLSP0010 WHERE AnsMark = '1'", 200, 3000},
        {"answers on another day", "TLSP0010 WHERE AnsMark = '2' AND AnsLimDate > LimDate", 50,
         2000},
        {"answers without a day", "TLSP0010 WHERE AnsVal > 0 AND AnsLimDate = ''", 10, 500},
        {"split lines", "TLSP0010 WHERE IndVal = 0", 10, 300},
        {"fractions", "TLSP0010 WHERE IndVal <> CAST(IndVal AS INTEGER)", 50, 2000},
        {"orders with sub-lines", "TLAC0020 WHERE AccSubNo = 2", 50, 500},
        {"orders by EDI", "TLAC0010 WHERE EDIKBN = 1", 2000, 4000},
        {"other orders", "TLAC0010 WHERE EDIKBN = 0", 500, 2000},
        {"customers", "TLMT0040", 12, 13},
        {"answered with a quantity", "TLMT0040 WHERE LinKBN = 1", 3, 9},
        {"answered with a date", "TLMT0040 WHERE LinKBN = 2", 3, 9},
        {"short records", "TLMT0040 WHERE SUBSTR(HenpVerPath, 2, 1) = '0'", 2, 10},
        {"long records", "TLMT0040 WHERE SUBSTR(HenpVerPath, 2, 1) = '1'", 2, 10},
        {"customers without records", "TLMT0040 WHERE NokiInfKBN = 0", 1, 4},
        {"delivery keys for order numbers", "TLMT0040 WHERE CustKBN = 2", 1, 2},
        {"no company code", "TLMT0040 WHERE LENGTH(VanCD) < 6", 2, 3},
        {"files on a share", "TLMT0040 WHERE NokiInfPath LIKE '\\\\edisv\\out\\*'", 1, 4},
        {"the default customer",
         "TLMT0010, TLMT0040 WHERE TLMT0010.DefCustCD = TLMT0040.CustCD AND CustCD = 'C0001'", 1,
         1},
        {"transport of no days", "TLMT0050 WHERE PayNeedDays = 0", 1, 90},
        {"transport of a week", "TLMT0050 WHERE PayNeedDays = 7", 1, 90},
        {"products with the digit mark", "TLMT0020 WHERE AccHinCD LIKE '*[#]*'", 1, 50},
    };
    for (const auto &[what, from, least, most] : cases) {
        const double count = LargeDemo().Number(QString("SELECT COUNT(*) FROM ") + from);
        EXPECT_GE(count, least) << what;
        EXPECT_LE(count, most) << what;
    }
}

// What must not occur: rows that contradict each other.
TEST(DemoCommand, RowsAgreeWithEachOther)
{
    const struct
    {
        const char *what;
        const char *rows;
    } cases[] = {
        {"more than 31 lines", "SELECT AccNo FROM TLSP0010 GROUP BY AccNo HAVING COUNT(*) > 31"},
        {"instructed is not ordered",
         "SELECT AccNo FROM TLSP0010 GROUP BY AccNo HAVING SUM(IndVal) <> MAX(AccVal)"},
        {"ordered quantities of one order differ",
         "SELECT AccNo FROM TLSP0010 GROUP BY AccNo HAVING MIN(AccVal) <> MAX(AccVal)"},
        {"open quantity",
         "SELECT o.AccNo FROM TLAC0010 AS o, TLSP0010 AS l WHERE o.AccNo = l.AccNo GROUP BY "
         "o.AccNo HAVING SUM(CASE WHEN l.ShpSts < 3 THEN l.IndVal ELSE 0 END) <> MAX(o.ZanVal)"},
        {"shipped order with an open quantity",
         "SELECT 1 FROM TLAC0010 WHERE (ShpSts = 3) <> (ZanVal = 0)"},
        {"more answered than open",
         "SELECT o.AccNo FROM TLAC0010 AS o, TLSP0010 AS l WHERE o.AccNo = l.AccNo AND "
         "l.ShpSts < 3 GROUP BY o.AccNo HAVING SUM(l.AnsVal) > MAX(o.ZanVal)"},
        {"shipped quantity", "SELECT 1 FROM TLSP0010 WHERE (ShpSts >= 3) <> (ShpVal > 0)"},
        {"mark without an answer", "SELECT 1 FROM TLSP0010 WHERE (AnsVal > 0) <> (AnsMark <> '')"},
        {"mark 1 on another day",
         "SELECT 1 FROM TLSP0010 WHERE AnsMark <> '' AND (AnsMark = '1') <> "
         "(AnsLimDate = LimDate)"},
        {"EIAJ rows only for orders by EDI",
         "SELECT 1 FROM TLAC0010 AS o WHERE (EDIKBN = 1) <> EXISTS (SELECT 1 FROM TLEI0010 AS e, "
         "TLEI0011 AS f WHERE e.AccNo = o.AccNo AND f.AccNo = o.AccNo)"},
        {"sub-lines",
         "SELECT 1 FROM TLSP0010 AS l WHERE NOT EXISTS (SELECT 1 FROM TLAC0020 AS s WHERE "
         "s.AccNo = l.AccNo AND s.AccSubNo = l.AccSubNo)"},
        {"conversion",
         "SELECT 1 FROM TLSP0010 AS l WHERE NOT EXISTS (SELECT 1 FROM TLMT0030 AS c, TLMT0020 AS "
         "p WHERE c.CustCD = l.CustCD AND c.HinCD = l.HinCD AND c.AccHinCD = l.AccHinCD AND "
         "p.AccHinCD = l.AccHinCD)"},
        {"destination",
         "SELECT 1 FROM TLSP0010 AS l, TLMT0040 AS c WHERE c.CustCD = l.CustCD AND "
         "(LENGTH(c.VanCD) >= 6) <> EXISTS (SELECT 1 FROM TLMT0050 AS d WHERE d.CustCoCD = "
         "Left$(c.VanCD, 6) AND d.PayDstCD = l.PayDstCD)"},
        {"delivery key twice", "SELECT 1 FROM TLSP0010 GROUP BY PayKeyNo HAVING COUNT(*) > 1"},
        {"due too early or late",
         "SELECT 1 FROM TLSP0010 WHERE LimDate < '20260302' OR LimDate > '20260630'"},
        {"ordered after the day or delivery",
         "SELECT 1 FROM TLAC0010 AS o, TLSP0010 AS l WHERE o.AccNo = l.AccNo AND (o.AccDate >= "
         "l.LimDate OR o.AccDate > '20260401')"},
        {"shipped in the future",
         "SELECT 1 FROM TLSP0010 WHERE ShpSts >= 3 AND ShpDate > '20260401'"},
    };
    for (const auto &[what, rows] : cases)
        EXPECT_EQ(LargeDemo().Open(rows)->RecordCount(), 0) << what;
}

TEST(DemoCommand, IndexesAreBackAfterTheFill)
{
    for (const TableDefinition &table : Tables())
        EXPECT_EQ(LargeDemo().Number(QString("SELECT COUNT(*) FROM sqlite_master WHERE type = "
                                             "'index' AND sql IS NOT NULL AND tbl_name = '%1'")
                                         .arg(table.name)),
                  double(table.indexes.size()))
            << table.name;
}

// The answer files of every customer have to land below the folder, wherever the data is used.
TEST(DemoCommand, SettingsLeadEveryPathIntoTheFolder)
{
    Demo &demo = LargeDemo();
    const QString dir = demo.folder.Path("demo");
    const QByteArray bytes = demo.folder.Read("demo/TALVEN.INI");
    EXPECT_EQ(bytes.count('\n'), bytes.count("\r\n"));
    const IniFile ini = IniFile::Read(dir + "/TALVEN.INI");
    EXPECT_EQ(ini.Value("PATH", "DBPATH"), QDir(dir).absolutePath());
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
    EXPECT_TRUE(QDir(dir + "/drives/c").exists());
    EXPECT_TRUE(QDir(dir + "/drives/edisv_out").exists());
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

TEST(DemoCommand, AFolderOutsideOfShiftJisIsNamedAllTheSame)
{
    const TestFolder folder;
    for (const QString &name : {QStringLiteral("納期"), QStringLiteral("배송")}) {
        const QString dir = folder.Path(name);
        ASSERT_EQ(ToolRun({"demo", dir, "--lines", "5"}).exitCode, ExitCode::Ok);
        EXPECT_EQ(IniFile::Read(dir + "/TALVEN.INI").Value("PATH", "DBPATH"),
                  QDir(dir).absolutePath());
    }
}
