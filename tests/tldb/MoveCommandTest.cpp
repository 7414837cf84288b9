#include "ToolRun.h"

#include "data/Tables.h"
#include "lines/ListQuery.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"
#include "tldb/NewDatabase.h"

#include <QFile>
#include <gtest/gtest.h>

namespace {

class MoveCommandTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (schema.Settings().isEmpty())
            GTEST_SKIP() << "no server";
    }

    ToolRun Move() { return ToolRun({"move", folder.Path(), "--server", schema.Settings()}); }

    /// What a statement of the system's dialect reads, as it would be stored again.
    static QString Read(Database &database, const QString &sql)
    {
        QStringList rows;
        const auto recordset = database.OpenRecordset(sql);
        for (; !recordset->IsEof(); recordset->MoveNext()) {
            QStringList values;
            for (int field = 0; field < recordset->FieldCount(); ++field)
                values += recordset->SqlLiteral(field);
            rows += values.join(',');
        }
        return rows.join('\n');
    }

    const TestFolder folder;
    const TestFolder other;
    const TestSchema schema;
};

/// A statement that reads a table in the order of its key.
QString AllRows(const TableDefinition &table)
{
    QStringList columns;
    for (const ColumnDefinition &column : table.columns)
        columns += column.name;
    return QString("SELECT %1 FROM %2 ORDER BY %3")
        .arg(columns.join(", "), table.name, table.columns.front().name);
}

} // namespace

TEST_F(MoveCommandTest, TheServerHoldsWhatTheFileHolds)
{
    ASSERT_EQ(ToolRun({"demo", folder.Path(), "--lines", "3000"}).exitCode, ExitCode::Ok);
    const QByteArray bytes = folder.Read("TLDB0010.MDB");
    const ToolRun moved = Move();
    EXPECT_EQ(moved.exitCode, ExitCode::Ok) << moved.err.toStdString();
    EXPECT_TRUE(moved.OutLines().contains("TLSP0010: 3000 rows"));
    EXPECT_EQ(folder.Read("TLDB0010.MDB"), bytes);

    EXPECT_TRUE(QFile::rename(folder.Path("TLDB0010-SERVER.MDB"), other.Path("TLDB0010.MDB")));
    Database file(DatabasePath(folder.Path()), true, ConnectText);
    Database server(DatabasePath(other.Path()), true, ConnectText);
    for (const TableDefinition &table : Tables())
        EXPECT_EQ(Read(server, AllRows(table)), Read(file, AllRows(table))) << table.name;
    for (const char *customer : {"", "C0001", "c00"}) {
        SearchConditions conditions;
        conditions.customerCode = customer;
        const QString list = Read(file, BuildListSql(conditions));
        EXPECT_FALSE(list.isEmpty());
        EXPECT_EQ(Read(server, BuildListSql(conditions)), list) << customer;
    }
    const ToolRun check({"check", other.Path()});
    EXPECT_EQ(check.exitCode, ExitCode::Ok) << check.out.toStdString();
    EXPECT_EQ(check.OutLines().size(), 1);

    EXPECT_TRUE(Move().err.contains("exists already")) << "the server has a database now";
    EXPECT_FALSE(QFile::exists(folder.Path("TLDB0010-SERVER.MDB")));
}

TEST_F(MoveCommandTest, WhatTheSystemDoesNotKnowIsKept)
{
    ASSERT_EQ(ToolRun({"create", folder.Path()}).exitCode, ExitCode::Ok);
    {
        Database file(DatabasePath(folder.Path()), false, ConnectText);
        file.ExecuteNative(
            "ALTER TABLE TLSP0010 ADD COLUMN \"Order Note\" TEXT;"
            "ALTER TABLE TLSP0010 ADD COLUMN Weight REAL;"
            "ALTER TABLE TLSP0010 ADD COLUMN Seal BLOB;"
            "ALTER TABLE TLSP0010 ADD COLUMN Paid;"
            "INSERT INTO TLSP0010 (AccNo, AccSubNo, ShpSubNo, Biko, AnsVal, AnsLimDate,"
            " \"Order Note\", Weight, Seal, Paid) VALUES"
            " (9007199254740993, 1, 1, 'a\tb\\n' || char(10, 13, 92) || '納期　ｱ''', "
            "0.30000000000000004,"
            " NULL, ' Note ', -0.0, x'00FF5C09', 1.5), (2, 1, 1, '\\N', 1e-7, '', '', 1e300, x'', "
            "'text');"
            "UPDATE TLSP0010 SET OdrNo = char(65279) || 'x' WHERE AccNo = 2;" // a byte order mark
            "CREATE TABLE \"OtherTable\" (Id INTEGER PRIMARY KEY, Name TEXT COLLATE NOCASE, T "
            "TEXT);"
            "INSERT INTO OtherTable VALUES (1, 'Ａ', 'x'), (2, NULL, '')");
    }
    ASSERT_EQ(Move().exitCode, ExitCode::Ok);
    EXPECT_TRUE(QFile::rename(folder.Path("TLDB0010-SERVER.MDB"), other.Path("TLDB0010.MDB")));
    Database file(DatabasePath(folder.Path()), true, ConnectText);
    Database server(DatabasePath(other.Path()), true, ConnectText);
    for (const char *sql :
         {"SELECT AccNo, Biko, AnsVal, AnsLimDate, [Order Note], Weight, Seal FROM TLSP0010"
          " ORDER BY AccNo",
          "SELECT * FROM OtherTable ORDER BY Id", "SELECT Id FROM othertable WHERE Name = 'Ａ'"})
        EXPECT_EQ(Read(server, sql), Read(file, sql)) << sql;
    EXPECT_EQ(Read(server, "SELECT length(OdrNo) AS N FROM TLSP0010 ORDER BY AccNo"),
              Read(file, "SELECT length(OdrNo) AS N FROM TLSP0010 ORDER BY AccNo"));
    EXPECT_EQ(Read(server, "SELECT Paid FROM TLSP0010 ORDER BY AccNo"), "'text'\n'1.5'");
    const auto findings = [](const TestFolder &of) {
        QString out = ToolRun({"check", of.Path()}).out.toLower();
        QStringList lines = out.replace(of.Path().toLower(), "").split('\n');
        lines.sort(); // rows come as each engine finds them
        return lines;
    };
    EXPECT_EQ(findings(other), findings(folder));
}

TEST_F(MoveCommandTest, WhatTheServerCannotHoldIsNamedAndLeavesNothingThere)
{
    ASSERT_EQ(ToolRun({"create", folder.Path()}).exitCode, ExitCode::Ok);
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"AnsVal", "'many'", "is not a number"},
        {"AnsLimUmu", "2.5", "is not a whole number"},
        {"Biko", "CAST(x'83' AS TEXT)", "is not UTF-8"},
        {"Biko", "'a' || char(0) || 'b'", "has NUL characters"},
        {"Biko", "x'41'", "is not a text"},
    };
    for (const auto &[column, value, fault] : cases) {
        Database(DatabasePath(folder.Path()), false, ConnectText)
            .ExecuteNative(QString("DELETE FROM TLSP0010; INSERT INTO TLSP0010 (AccNo, AccSubNo,"
                                   " ShpSubNo, %1) VALUES (7, 1, 2, %2)")
                               .arg(column, value));
        const ToolRun run = Move();
        EXPECT_EQ(run.exitCode, ExitCode::Found);
        EXPECT_TRUE(run.out.contains(
            QString("TLSP0010 AccNo=7 AccSubNo=1 ShpSubNo=2 %1: %2\n").arg(column, fault)))
            << run.out.toStdString();
        EXPECT_FALSE(QFile::exists(folder.Path("TLDB0010-SERVER.MDB")));
    }
    EXPECT_EQ(ToolRun({"create", other.Path(), "--server", schema.Settings()}).exitCode,
              ExitCode::Ok)
        << "nothing is there";
}

TEST_F(MoveCommandTest, WhereItCannotBeToldNothingIsOnTheServer)
{
    ASSERT_EQ(ToolRun({"create", folder.Path()}).exitCode, ExitCode::Ok);
    QFile::link("nowhere", folder.Path("TLDB0010-SERVER.MDB"));
    EXPECT_TRUE(Move().err.contains("TLDB0010-SERVER.MDB: "));
    QFile::remove(folder.Path("TLDB0010-SERVER.MDB"));
    EXPECT_EQ(Move().exitCode, ExitCode::Ok);
}

TEST_F(MoveCommandTest, NewDatabasesOnTheServer)
{
    const QStringList server = {"--server", schema.Settings()};
    const ToolRun demo(QStringList{"demo", folder.Path(), "--lines", "200"} + server);
    EXPECT_EQ(demo.exitCode, ExitCode::Ok) << demo.err.toStdString();
    EXPECT_TRUE(folder.Read("TLDB0010.MDB").startsWith("TLDB0010 on a PostgreSQL server\n"));
    EXPECT_EQ(ToolRun({"check", folder.Path()}).exitCode, ExitCode::Ok);
    const ToolRun again(QStringList{"create", other.Path()} + server);
    EXPECT_EQ(again.exitCode, ExitCode::Found);
    EXPECT_TRUE(again.err.contains("exists already"));
    EXPECT_EQ(ToolRun({"move", other.Path()}).exitCode, ExitCode::WrongUse);
    const ToolRun secret({"create", other.Path(), "--server", "host=x password=y"});
    EXPECT_TRUE(secret.err.contains("~/.pgpass")) << secret.err.toStdString();
    EXPECT_EQ(ToolRun({"move", folder.Path(), "--server", schema.Settings()}).exitCode,
              ExitCode::Found)
        << "it is there already";
}

TEST_F(MoveCommandTest, TheHistoryOnTheServer)
{
    ASSERT_EQ(
        ToolRun({"demo", folder.Path(), "--lines", "200", "--server", schema.Settings()}).exitCode,
        ExitCode::Ok);
    const ToolRun history({"history", folder.Path()});
    EXPECT_EQ(history.exitCode, ExitCode::Ok) << history.err.toStdString();
    EXPECT_GT(history.OutLines().size(), 1);

    Database(DatabasePath(folder.Path()), false, ConnectText).ExecuteNative("DROP TABLE TLAH0010");
    EXPECT_EQ(ToolRun({"history", folder.Path()}).exitCode, ExitCode::Found);
    EXPECT_TRUE(ToolRun({"upgrade", folder.Path()}).out.endsWith("TLDB0010.MDB: upgraded\n"));
    EXPECT_TRUE(ToolRun({"upgrade", folder.Path()}).out.endsWith(": nothing to do\n"));
    EXPECT_TRUE(ToolRun({"check", folder.Path()}).out.contains(": 11 tables, "));
}

TEST_F(MoveCommandTest, TheHistoryMadeLaterHasTheRightsOfTheLines)
{
    ASSERT_EQ(ToolRun({"create", folder.Path(), "--server", schema.Settings()}).exitCode,
              ExitCode::Ok);
    Database server(DatabasePath(folder.Path()), false, ConnectText);
    server.ExecuteNative("DROP TABLE TLAH0010; GRANT SELECT ON TLSP0010 TO PUBLIC;"
                         "GRANT SELECT, INSERT, UPDATE ON TLSP0010 TO pg_monitor");
    const ToolRun upgrade({"upgrade", folder.Path()});
    EXPECT_EQ(upgrade.exitCode, ExitCode::Ok) << upgrade.err.toStdString();
    const QString rights = "SELECT grantee & ' ' & privilege_type AS T FROM"
                           " information_schema.table_privileges WHERE table_name = '%1'"
                           " AND table_schema = current_schema AND grantee <> current_user"
                           " ORDER BY 1";
    EXPECT_EQ(Read(server, rights.arg("tlah0010")),
              "'PUBLIC SELECT'\n'pg_monitor INSERT'\n'pg_monitor SELECT'\n'pg_monitor UPDATE'");
}
