#include "data/ErrorOf.h"
#include "data/Tables.h"
#include "data/dao/DBEngine.h"
#include "data/dao/Dialect.h"
#include "data/dao/SqlText.h"
#include "data/dao/postgres/OpenPostgres.h"
#include "data/dao/postgres/ServerFile.h"
#include "lines/ListQuery.h"
#include "output/AnswerSql.h"
#include "support/QtPrinters.h"
#include "support/ServerProxy.h"
#include "support/TestDatabase.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

namespace {

/// A database on a server; one connection goes through a network of the test's own.
class PostgresTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!file.IsOnServer())
            GTEST_SKIP() << "no server";
        proxy = std::make_unique<ServerProxy>(file.Settings());
        file.folder.Write("FAR.MDB", ServerFile::TextFor(proxy->Settings()));
        database = &workspace.OpenDatabase(file.folder.Path("FAR.MDB"), false, ConnectText);
        proxy->BreakAt(0);
    }

    void Insert(const QString &code)
    {
        database->Execute("INSERT INTO TLMT0020 (AccHinCD) VALUES ('" + code + "')");
    }
    QString Products() { return file.Rows("SELECT AccHinCD FROM TLMT0020 ORDER BY 1"); }

    DaoError OpenError(const QByteArray &text, const char *connect = ConnectText)
    {
        file.folder.Write("OTHER.MDB", text);
        return ErrorOf([&] { Database(file.folder.Path("OTHER.MDB"), false, connect); });
    }

    TestDatabase file;
    std::unique_ptr<ServerProxy> proxy;
    DBEngine engine;
    Workspace &workspace = engine.Workspaces(0);
    Database *database = nullptr;
};

} // namespace

TEST_F(PostgresTest, Translations)
{
    constexpr std::pair<const char *, const char *> cases[] = {
        {"x = 'A' & y & Chr(n)", "x = 'A' || y || chr(n)"},
        {"Left$(Left$(a, 2) & b, 1) = 'x'",
         "CAST(left(CAST(left(a, 2) AS citext) || b, 1) AS citext) = 'x'"},
        {"T.x Not Like 'O''N'", "NOT (CAST(T.x AS citext) = 'O''N')"},
        {"a = 1 AND x LIKE '12[#]4*'",
         "a = 1 AND (CAST(x AS citext) >= '12#4' AND CAST(x AS citext) < '12#4\U0010FFFF')"},
        {"x LIKE 'A.*#'", "(lower(CAST(x AS text)) ~ '^a\\u002e.*[0-9]$')"},
        {"SELECT [Order Date] FROM T", "SELECT \"order date\" FROM T"},
        {"INSERT INTO T VALUES (x'00ff', 'x''00')",
         "INSERT INTO T VALUES (CAST('\\x00ff' AS bytea), 'x''00')"},
        {"SELECT TOP 3 a FROM TLMT0020 ORDER BY a DESC,b",
         "SELECT a FROM TLMT0020 ORDER BY a DESC NULLS LAST,b NULLS FIRST,"
         "TLMT0020.AccHinCD NULLS FIRST LIMIT 3"},
    };
    for (const auto &[statement, native] : cases)
        EXPECT_EQ(ToPostgres(statement).simplified(), native) << statement;
}

TEST_F(PostgresTest, SearchesReadThroughAnIndex)
{
    file.Run("INSERT INTO TLSP0010 (AccNo, AccSubNo, ShpSubNo, CustCD, OdrNo, AccHinCD, MfactNo, "
             "PayKeyNo, LimDate) SELECT i, 1, 1, 'C' || i % 100, 'O''N' || i, 'P-' || i, 'M' || i, "
             "'K' || i, '2026' || i % 365 FROM generate_series(1, 20000) AS i; ANALYZE TLSP0010");
    const QString lines = "SELECT * FROM TLSP0010 WHERE ";
    SearchConditions customer;
    customer.customerCode = "C#1";
    const std::pair<QString, const char *> cases[] = {
        {BuildListSql(customer), "tlsp0010_custcd"},
        {lines + "CUSTCD LIKE 'C_1*'", "tlsp0010_custcd"},
        {lines + "ODRNO LIKE 'O''N11*'", "tlsp0010_odrno"},
        {lines + "ACCHINCD LIKE 'P-11*'", "tlsp0010_acchincd"},
        {lines + "MFACTNO LIKE 'M11*'", "tlsp0010_mfactno"},
        {lines + "PAYKEYNO LIKE 'K11*'", "tlsp0010_paykeyno"},
        {lines + "LimDate >= '2026364'", "tlsp0010_limdate"},
        {lines + "ACCNO = 1 AND ACCSUBNO = 2", "tlsp0010_pkey"},
        {BuildMarkAnsweredSql(1, {}), "tlsp0010_pkey"},
        {BuildAnswerSelectSql(1, true), "tlsp0010_pkey"},
    };
    for (const auto &[sql, index] : cases) {
        const QString steps = file.Rows("EXPLAIN " + ToPostgres(sql));
        EXPECT_TRUE(steps.contains(index)) << sql.toStdString() << ": " << steps.toStdString();
        EXPECT_FALSE(steps.contains("Seq Scan on tlsp0010")) << steps.toStdString();
    }
}

TEST_F(PostgresTest, AFileThatNamesTheServer)
{
    const QByteArray first = "TLDB0010 on a PostgreSQL server\n";
    const QByteArray settings = file.Settings().toUtf8();
    const std::tuple<QByteArray, int, const char *> cases[] = {
        {first + settings, 0, ""},
        {first.trimmed() + "\r\n\r\n" + settings + "\r\n", 0, ""},
        {"\xEF\xBB\xBF" + first + settings, 0, ""}, // as some editors save it
        {first, 3343, "1 行"},
        {first + settings + "\n" + settings, 3343, "1 行"},
        {first + "no settings", 3343, "no"},
        {first + settings + " password=x", 3343, "~/.pgpass"},
        {first + settings + " sslpassword=x", 3343, "~/.pgpass"},
        {first + settings + " port=1;password=secret", 3343, "~/.pgpass"},
        {first + settings + " password=x secret", 3343, "正しくありません"},
        {first + "postgresql://user:%secret@db/x", 3343, "正しくありません"},
        {first + "host=/nowhere", 3043, "/nowhere"},
        {first + settings + " dbname=none", 3051, "none"},
        {first + settings + " options='-c search_path=public'", 3343, ""}, // no tables
        {"TLDB0010 on another server\n" + settings, 3049, ""},
    };
    for (const auto &[text, number, detail] : cases) {
        const DaoError error = OpenError(text);
        EXPECT_EQ(error.number, number) << text.constData() << error.description.toStdString();
        EXPECT_TRUE(error.description.contains(detail)) << error.description.toStdString();
        EXPECT_FALSE(error.description.contains("secret")) << error.description.toStdString();
    }
    EXPECT_EQ(OpenError(first + settings, ";PWD=other").number, 3031);
    EXPECT_EQ(ErrorOf([&] { Database::CreateOnServer(file.Settings(), ConnectText); }).number,
              3204);

    // Texts that would compare otherwise: of customers Ａ and ａ, one would be the other.
    const QString server = qEnvironmentVariable("TEST_SERVER");
    const auto administrator = OpenPostgres(server, ServerAccess::ReadWrite);
    const QString other = "other_" + file.Settings().section("test_", 1).section(',', 0, 0);
    administrator->ExecuteScript("CREATE DATABASE " + other
                                 + " TEMPLATE template0 ENCODING 'UTF8' LC_CTYPE 'C.UTF-8'");
    EXPECT_EQ(ErrorOf([&] { Database::CreateOnServer(server + " dbname=" + other, ""); }).number,
              3343);
    administrator->ExecuteScript("DROP DATABASE " + other + " WITH (FORCE)");
}

TEST_F(PostgresTest, ErrorsHaveTheEnginesNumbers)
{
    file.Insert("TLMT0020", {{"AccHinCD", "A"}});
    file.Insert("TLSP0010", {{"AccNo", 1}, {"AccSubNo", 1}, {"ShpSubNo", 1}});
    file.Run("CREATE TABLE Rated (Rate int CHECK (Rate < 100))");
    file.Refuse("DELETE");
    const std::tuple<const char *, int, const char *> cases[] = {
        {"UPDATE TLMT0099 SET A = 1", 3075, "tlmt0099"},
        {"SELEKT", 3075, "SELEKT"},
        {"INSERT INTO TLMT0020 (AccHinCD) VALUES ('a')", 3022, "(acchincd)=(a)"},
        {"INSERT INTO TLMT0020 (AccHinCD) VALUES (NULL)", 3314, "acchincd"},
        {"INSERT INTO Rated VALUES (100)", 3317, "rated"},
        {"DELETE FROM TLSP0010", 3317, "変更できません"},
        {"UPDATE TLSP0010 SET AnsVal = 'x'", 3464, "x"},
        {"SELECT pg_sleep(0), 1 / 0", 3464, "zero"},
    };
    for (const auto &[sql, number, detail] : cases) {
        const DaoError error = ErrorOf([&, sql = sql] { database->Execute(sql); });
        EXPECT_EQ(error.number, number) << sql << error.description.toStdString();
        EXPECT_TRUE(error.description.contains(detail)) << error.description.toStdString();
        EXPECT_EQ(error.source, "DAO.Database");
    }
    Database readOnly(file.LocalPath(), true, ConnectText);
    EXPECT_EQ(ErrorOf([&] { readOnly.Execute("DELETE FROM TLMT0020"); }).number, 3027);
    database->ExecuteNative("SET statement_timeout = 20");
    EXPECT_EQ(ErrorOf([&] { database->OpenRecordset("SELECT pg_sleep(5)"); }).number, 3000)
        << "not asked for by the operator: it is shown";
}

TEST_F(PostgresTest, AWriterKeepsWritersOutAndNoReader)
{
    SetLockTimeout(file.Other(), 50);
    file.Insert("TLSP0010", {{"AccNo", 1}, {"AccSubNo", 1}, {"ShpSubNo", 1}});
    const QString highest = "SELECT MAX(ShpSubNo) AS N FROM TLSP0010 WHERE AccNo = 1";
    workspace.BeginTrans();
    EXPECT_EQ(database->OpenRecordset(highest)->Text(0), "1");
    EXPECT_EQ(file.Rows(highest), "1") << "readers go on";
    for (const char *sql : {"UPDATE TLSP0010 SET AnsVal = 1", "DELETE FROM TLSP0010"})
        EXPECT_EQ(ErrorOf([&] { file.Run(sql); }).number, 3260) << sql;
    Workspace other;
    Database &second = other.OpenDatabase(file.LocalPath(), false, ConnectText);
    SetLockTimeout(second, 50);
    other.BeginTrans(true);
    EXPECT_EQ(ErrorOf([&] { second.OpenRecordset(highest); }).number, 3260);
    other.Rollback();
    // What another program changes elsewhere is not seen half-way.
    file.Insert("TLMT0020", {{"AccHinCD", "A"}});
    EXPECT_EQ(database->OpenRecordset("SELECT COUNT(*) AS N FROM TLMT0020")->Text(0), "0");
    database->Execute("INSERT INTO TLSP0010 (AccNo, AccSubNo, ShpSubNo) VALUES (1, 1, 2)");
    workspace.CommitTrans();

    other.BeginTrans();
    EXPECT_EQ(second.OpenRecordset(highest)->Text(0), "2") << "read when the lock is there";
    other.Rollback();
}

TEST_F(PostgresTest, AnExclusiveOneIsSureOfTheLinesBeforeItsFirstWrite)
{
    file.Insert("TLSP0010", {{"AccNo", 1}, {"AccSubNo", 1}, {"ShpSubNo", 1}});
    SetLockTimeout(*database, 50);
    file.Run("BEGIN; SELECT 1 FROM TLSP0010 FOR UPDATE");
    for (const bool isExclusive : {false, true}) {
        workspace.BeginTrans(isExclusive);
        EXPECT_EQ(ErrorOf([&] { database->OpenRecordset("SELECT 1"); }).number,
                  isExclusive ? 3260 : 0);
        workspace.Rollback();
    }
    file.Run("ROLLBACK");
    workspace.BeginTrans(true);
    Insert("A");
    EXPECT_EQ(file.Rows("SELECT AccNo FROM TLSP0010"), "1") << "readers go on";
    workspace.CommitTrans();
}

TEST_F(PostgresTest, WhatHasFailedIsNotCommitted)
{
    workspace.BeginTrans();
    Insert("A");
    EXPECT_EQ(ErrorOf([&] { Insert("A"); }).number, 3022);
    EXPECT_EQ(ErrorOf([&] { Insert("B"); }).number, 3000) << "nothing more of it is done";
    EXPECT_EQ(ErrorOf([&] { workspace.CommitTrans(); }).number, 3000);
    EXPECT_TRUE(database->IsInTransaction());
    workspace.Rollback();
    EXPECT_EQ(Products(), "");

    // Failed without the program's knowing: the server answers COMMIT with ROLLBACK.
    workspace.BeginTrans();
    Insert("A");
    database->ExecuteNative("DO $$ BEGIN PERFORM 1; END $$; SAVEPOINT p");
    file.Run("SELECT 1");
    try {
        database->Engine().ExecuteScript("SELECT 1 / 0");
    } catch (const DaoError &) {
    }
    EXPECT_NE(ErrorOf([&] { workspace.CommitTrans(); }).number, 0);
    workspace.Rollback();
    EXPECT_EQ(Products(), "");

    // A first statement that can't be parsed leaves no transaction behind to write outside of.
    workspace.BeginTrans();
    EXPECT_EQ(ErrorOf([&] { database->OpenRecordset("SELEKT"); }).number, 3075);
    EXPECT_NE(ErrorOf([&] { Insert("C"); }).number, 0);
    workspace.Rollback();
    Insert("D");
    EXPECT_EQ(Products(), "D");
}

TEST_F(PostgresTest, CommitsReachTheDiskWhateverTheDatabaseIsSetTo)
{
    const auto setting = [&](const QString &name) {
        return database->OpenRecordset("SELECT current_setting('" + name + "')")->Text(0);
    };
    EXPECT_EQ(setting("synchronous_commit"), "on");
    EXPECT_EQ(setting("lock_timeout"), "10s");
    file.folder.Write("FAST.MDB", ServerFile::TextFor(file.Settings().replace(
                                      ",public'", ",public -c synchronous_commit=off'")));
    database = &workspace.OpenDatabase(file.folder.Path("FAST.MDB"), false, ConnectText);
    EXPECT_EQ(setting("synchronous_commit"), "local");
}

TEST_F(PostgresTest, TransactionsThatDoNothing)
{
    workspace.BeginTrans();
    EXPECT_EQ(ErrorOf([&] { workspace.BeginTrans(); }).number, 3075) << "there is one already";
    workspace.CommitTrans();
    workspace.BeginTrans();
    workspace.Rollback();
    EXPECT_EQ(proxy->Statements(), 0);
    EXPECT_EQ(ErrorOf([&] { workspace.CommitTrans(); }).number, 3075);
    EXPECT_EQ(ErrorOf([&] { workspace.Rollback(); }).number, 3075);
}

TEST_F(PostgresTest, ABrokenConnectionLosesItsTransactionAndIsMadeAnew)
{
    for (const auto how : {ServerProxy::Break::Before, ServerProxy::Break::Killed}) {
        workspace.BeginTrans();
        Insert("A");
        proxy->BreakAt(1, how);
        const DaoError lost = ErrorOf([&] { Insert("B"); });
        EXPECT_EQ(lost.number, 3043);
        EXPECT_TRUE(lost.description.contains("トランザクションは取り消されました"));
        proxy->BreakAt(0);
        EXPECT_NE(ErrorOf([&] { Insert("C"); }).number, 0) << "it would be written by itself";
        EXPECT_EQ(proxy->Statements(), 0);
        EXPECT_NE(ErrorOf([&] { workspace.CommitTrans(); }).number, 0);
        workspace.Rollback();
        EXPECT_EQ(Products(), "");

        proxy->BreakAt(1, how);
        EXPECT_EQ(ErrorOf([&] { database->OpenRecordset("SELECT 1"); }).number, 3043);
        EXPECT_EQ(database->OpenRecordset("SELECT 1")->Text(0), "1");
    }
}

TEST_F(PostgresTest, ACommitOfWhichNobodyHearsIsLookedUp)
{
    workspace.BeginTrans();
    Insert("A");
    Insert("B");
    proxy->BreakAt(1, ServerProxy::Break::After);
    EXPECT_EQ(ErrorOf([&] { workspace.CommitTrans(); }).number, 0);
    EXPECT_EQ(Products(), "A B");

    workspace.BeginTrans();
    Insert("C");
    proxy->BreakAt(1, ServerProxy::Break::Before);
    EXPECT_EQ(ErrorOf([&] { workspace.CommitTrans(); }).number, 3043);
    workspace.Rollback();
    EXPECT_EQ(Products(), "A B");
}

TEST_F(PostgresTest, AConnectionThatTheServerBelievesInIsEnded)
{
    // Its transaction would be in progress for as long as the server waits for it, with its lock.
    workspace.BeginTrans();
    Insert("A");
    proxy->BreakAt(1, ServerProxy::Break::Silent);
    const DaoError error = ErrorOf([&] { workspace.CommitTrans(); });
    EXPECT_TRUE(error.description.contains("トランザクションは取り消されました"))
        << error.description.toStdString();
    workspace.Rollback();
    for (const int left : {1, 0}) {
        workspace.BeginTrans();
        Insert("B");
        proxy->BreakAt(left, ServerProxy::Break::Silent);
        EXPECT_EQ(ErrorOf([&] { Insert("C"); }).number, left == 0 ? 0 : 3043);
        left == 0 ? workspace.CommitTrans() : workspace.Rollback();
    }
    EXPECT_EQ(Products(), "B C");
}

TEST_F(PostgresTest, ALongStatementIsCancelledOnTheServer)
{
    int calls = 0;
    for (const char *sql :
         {"SELECT pg_sleep(60)", "SELECT repeat('x', 100) FROM generate_series(1, 50000000)"}) {
        calls = 0;
        database->SetProgress([&] { return ++calls < 5; });
        QElapsedTimer time;
        time.start();
        EXPECT_EQ(ErrorOf([&] { database->OpenRecordset(sql); }).number, 3059);
        EXPECT_LT(time.elapsed(), 5'000) << sql;
        database->SetProgress({});
        EXPECT_EQ(database->OpenRecordset("SELECT 1")->Text(0), "1");
        EXPECT_EQ(file.Rows("SELECT COUNT(*) FROM pg_stat_activity WHERE state = 'active'"
                            " AND query = "
                            + SqlQuoted(sql)),
                  "0");
    }
}

TEST_F(PostgresTest, AStatementOfAServerThatHangsIsGivenUp)
{
    proxy->BreakAt(1, ServerProxy::Break::Hung);
    database->SetProgress([&] { return proxy->Statements() == 0; });
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(ErrorOf([&] { database->OpenRecordset("SELECT 1"); }).number, 3059);
    EXPECT_LT(time.elapsed(), 8'000);
    database->SetProgress({});
    proxy->BreakAt(0);
    EXPECT_EQ(database->OpenRecordset("SELECT 2")->Text(0), "2");

    // Where the operator is not asked, it counts as gone after a while.
    database->LimitSilence(200);
    workspace.BeginTrans();
    Insert("A");
    proxy->BreakAt(1, ServerProxy::Break::Hung);
    EXPECT_EQ(ErrorOf([&] { Insert("B"); }).number, 3043);
    proxy->BreakAt(0);
    workspace.Rollback();
    Insert("C");
    EXPECT_EQ(Products(), "C");
}

TEST_F(PostgresTest, ValuesOfTheServersTypes)
{
    const auto rows = database->OpenRecordset(
        "SELECT CAST(-12.5 AS float8), 9007199254740993, 123456789012345678.125, true, x'00ff5c',"
        " CAST('a' AS citext), NULL, CAST('20260102' AS date)");
    const std::tuple<const char *, const char *> values[] = {
        {"-12.5", "-1.25e+01"},
        {"9007199254740993", "9007199254740993"},
        {"123456789012345678.125", "'123456789012345678.125'"},
        {"1", "'1'"},
        {nullptr, "x'00ff5c'"},
        {"a", "'a'"},
        {"", "NULL"},
        {"2026-01-02", "'2026-01-02'"},
    };
    int field = 0;
    for (const auto &[text, literal] : values) {
        if (text) {
            EXPECT_EQ(rows->Text(field), text);
        }
        EXPECT_EQ(rows->SqlLiteral(field), literal);
        ++field;
    }
}
