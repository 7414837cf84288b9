#include "ToolRun.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <QDir>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

/// A database with one row in each table that others refer to, without findings.
class SoundDatabase : public TestDatabase
{
public:
    SoundDatabase()
    {
        Insert("TLMT0010", {{"CoCD", "SUPPLIER"}});
        Insert("TLMT0040", {{"CustCD", "C0001"}, {"CustName", "月ヶ森電機"}});
        Insert("TLAC0010", {{"AccNo", 7}, {"CustCD", "C0001"}, {"ShpSts", 1}});
        Insert("TLAC0020", {{"AccNo", 7}, {"AccSubNo", 1}});
        Insert(
            "TLSP0010",
            {{"AccNo", 7}, {"AccSubNo", 1}, {"ShpSubNo", 1}, {"CustCD", "C0001"}, {"ShpSts", 1}});
    }

    /// What the check says besides its summary, which has to count it.
    QStringList Findings() const
    {
        const ToolRun run({"check", folder.Path()});
        QStringList lines = run.OutLines();
        const QString summary = lines.isEmpty() ? QString() : lines.takeLast();
        const auto notes = lines.filter(QRegularExpression("^note: ")).size();
        const auto findings = lines.size() - notes;
        EXPECT_EQ(run.exitCode, findings > 0 ? ExitCode::Found : ExitCode::Ok);
        EXPECT_TRUE(summary.endsWith(QString(" %1 findings, %2 notes").arg(findings).arg(notes)))
            << summary.toStdString();
        return lines;
    }
};

} // namespace

TEST(CheckCommand, ValuesOfALine)
{
    const QString row = "TLSP0010 AccNo=7 AccSubNo=1 ShpSubNo=1 ";
    const struct
    {
        const char *assignment;
        const char *finding; ///< null: none
    } cases[] = {
        {"PayNo = '123456789'", "PayNo: has 9 characters, 8 fit: \"123456789\""},
        {"Biko = 'a '", "Biko: ends in blanks: \"a \""},
        {"OdrBiko = '10〜20'", nullptr}, // a record has its twin
        {"OdrBiko = 'a' || char(0) || 'b'", "OdrBiko: has NUL characters: \"\\u0000b\""},
        {"OdrBiko = '배송'", "OdrBiko: has characters outside of Shift-JIS: \"배송\""},
        {"Biko = CAST(x'41ff' AS TEXT)", "Biko: is not UTF-8"},
        {"Biko = 'a' || char(10) || '\" '", "Biko: ends in blanks: \"a\\u000a\\\" \""},
        {"LimDate = '20230229'", "LimDate: is not a date: \"20230229\""},
        {"ShpDate = '        '", "ShpDate: ends in blanks: \"        \""},
        {"UpdTime = '12345'", "UpdTime: is neither blank nor six digits: \"12345\""},
        {"AnsVal = 999999999.999", nullptr},
        {"AnsVal = 0.1 + 0.2", nullptr}, // a binary sum that shows as 0.3
        {"AnsVal = 1000000000", "AnsVal: is not from 0 to 9 integer digits: 1000000000"},
        {"IndVal = -0.5", "IndVal: is not from 0 to 9 integer digits: -0.5"},
        {"ShpVal = 1.0005", "ShpVal: has more than 3 decimals: 1.0005"},
        {"AccVal = 'many'", "AccVal: is not a number"},
        {"Tan = -1.23456", nullptr}, // a price is no quantity
        {"DenKBN = 2.5", "DenKBN: is not a whole number: 2.5"},
        {"DpoFlg = 256", "DpoFlg: is neither 0 nor 1 nor -1: 256"},
    };
    SoundDatabase database;
    database.Run("CREATE TABLE Saved AS SELECT * FROM TLSP0010");
    for (const auto &[assignment, finding] : cases) {
        SCOPED_TRACE(assignment);
        database.Run(QString("UPDATE TLSP0010 SET ") + assignment);
        QStringList found = database.Findings();
        found.removeAll("note: Saved: an unknown table");
        EXPECT_EQ(found, finding ? QStringList{row + finding} : QStringList());
        database.Run("DELETE FROM TLSP0010; INSERT INTO TLSP0010 SELECT * FROM Saved");
    }
}

TEST(CheckCommand, RowsOfOtherTablesSchemaAndProperties)
{
    const std::pair<const char *, QStringList> cases[] = {
        {"DELETE FROM TLAC0010",
         {"TLSP0010 AccNo=7 AccSubNo=1 ShpSubNo=1 AccNo: the line's order is missing: \"7\"",
          "TLAC0020 AccNo=7 AccSubNo=1 AccNo: the sub-line's order is missing: \"7\""}},
        {"UPDATE TLSP0010 SET CustCD = 'C9'",
         {"TLSP0010 AccNo=7 AccSubNo=1 ShpSubNo=1 CustCD: the line's customer is missing: "
          "\"C9\""}},
        // The engine compares codes without case, and so do the joins.
        {"UPDATE TLSP0010 SET CustCD = 'c0001'", {}},
        {"INSERT INTO TLEI0010 (AccNo) VALUES (8)",
         {"TLEI0010 AccNo=8 AccNo: the row's order is missing: \"8\""}},
        {"UPDATE TLSP0010 SET ShpSubNo = 2147483646", {}},
        {"UPDATE TLSP0010 SET ShpSubNo = 2147483647",
         {"TLSP0010 AccNo=7 AccSubNo=1 ShpSubNo=2147483647 ShpSubNo: leaves no number for a split "
          "line: 2147483647"}},
        {"INSERT INTO TLMT0050 (CustCoCD, PayDstCD, PayNeedDays) VALUES ('V', 'A', 0), "
         "('V', 'B', 3650), ('V', 'C', -1), ('V', 'D' || char(0), 1e9)",
         {"TLMT0050 CustCoCD=V PayDstCD=C PayNeedDays: gives no ship date: -1",
          "TLMT0050 CustCoCD=V PayDstCD=D\\u0000 PayDstCD: has NUL characters: \"\\u0000\"",
          "TLMT0050 CustCoCD=V PayDstCD=D\\u0000 PayNeedDays: gives no ship date: 1000000000"}},
        {"DELETE FROM TLMT0010", {"TLMT0010: 0 company rows, one is wanted"}},
        {"UPDATE TLMT0010 SET TEL = '0'; UPDATE TLMT0010 SET TEL = '000-000-00001'",
         {"TLMT0010 rowid=1 TEL: has 13 characters, 12 fit: \"000-000-00001\""}},
        {"DROP INDEX TLSP0010_CustCD", {"TLSP0010 CustCD: the index is missing"}},
        {"DROP INDEX TLSP0010_OdrNo; CREATE INDEX x ON TLSP0010 (OdrNo) WHERE ShpSts = 1",
         {"TLSP0010 OdrNo: the index is missing"}},
        {"DROP INDEX TLSP0010_OdrNo; CREATE INDEX x ON TLSP0010 (OdrNo, AccNo)", {}},
        {"DROP TABLE TLAH0010", {}},
        {"ALTER TABLE TLAH0010 DROP COLUMN RecNo", {"TLAH0010 RecNo: the column is missing"}},
        // What was answered to a line stays when the line has gone.
        {"INSERT INTO TLAH0010 (AccNo, AccSubNo, ShpSubNo, AnsNo, AnsKBN, RecPath) VALUES "
         "(9, 1, 1, 1, '1', NULL), (9, 1, 1, 2, '12', '')",
         {"TLAH0010 AccNo=9 AccSubNo=1 ShpSubNo=1 AnsNo=2 AnsKBN: has 2 characters, 1 fit: "
          "\"12\""}},
        // A table as another program might leave it: no key, a column short, types of its own.
        {"DROP TABLE TLMT0050; CREATE TABLE TLMT0050 (CustCoCD TEXT, PayDstCD TEXT "
         "COLLATE NOCASE, PayDstName INTEGER, DpoFlg INTEGER, UpdPGName TEXT "
         "COLLATE NOCASE, UpdDate TEXT COLLATE NOCASE, UpdTime TEXT COLLATE NOCASE, Extra TEXT);"
         "INSERT INTO TLMT0050 (CustCoCD, PayDstCD) VALUES ('V1', 'D1'), ('V1', 'd1'), "
         "('V1', NULL)",
         {"TLMT0050 CustCoCD: compares as BINARY, not as NOCASE",
          "TLMT0050 CustCoCD: is not part of the key", "TLMT0050 CustCoCD: allows null in the key",
          "TLMT0050 PayDstCD: is not part of the key", "TLMT0050 PayDstCD: allows null in the key",
          "TLMT0050 PayDstName: is INTEGER, not TEXT",
          "TLMT0050 PayNeedDays: the column is missing", "note: TLMT0050 Extra: an unknown column",
          "TLMT0050 CustCoCD=V1 PayDstCD=null PayDstCD: is null",
          "TLMT0050 CustCoCD=V1 PayDstCD=D1: 2 rows have this key"}},
        {"DELETE FROM DBProperty WHERE Name = 'AccessVersion'",
         {"DBProperty AccessVersion: is missing"}},
        {"UPDATE DBProperty SET Value = '07.53' WHERE Name = 'AccessVersion'",
         {"DBProperty AccessVersion: 07.53 is older than 8.0"}},
        {"UPDATE DBProperty SET Value = 'x' WHERE Name = 'PasswordHash'",
         {"the password does not open the database"}},
    };
    for (const auto &[change, findings] : cases) {
        SCOPED_TRACE(change);
        SoundDatabase database;
        database.Run(change);
        EXPECT_EQ(database.Findings(), findings);
    }
}

TEST(CheckCommand, ADamagedFileIsFoundAndNeverWritten)
{
    SoundDatabase database;
    // An index that lost its entries: the rows are there, a search would not find them.
    database.Run("PRAGMA writable_schema=ON;"
                 "UPDATE sqlite_master SET sql = 'CREATE INDEX TLSP0010_PayKeyNo ON TLSP0010 "
                 "(OdrBiko)' WHERE name = 'TLSP0010_PayKeyNo';"
                 "PRAGMA writable_schema=OFF; UPDATE TLSP0010 SET OdrBiko = 'x'");
    const QByteArray before = database.folder.Read("TLDB0010.MDB");
    const QStringList findings = database.Findings();
    EXPECT_FALSE(findings.filter("TLSP0010_PayKeyNo").isEmpty())
        << findings.join('\n').toStdString();
    EXPECT_EQ(database.folder.Read("TLDB0010.MDB"), before);
    EXPECT_EQ(QDir(database.folder.Path()).entryList(QDir::Files).size(), 1);
}
