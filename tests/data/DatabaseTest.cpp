#include "data/dao/Database.h"

#include "data/ErrorOf.h"
#include "data/Tables.h"
#include "data/dao/DBEngine.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <QFile>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

namespace {

DaoError OpenError(const QString &localPath, const char *connect = ConnectText)
{
    return ErrorOf([&] { Database(localPath, false, connect); });
}

} // namespace

TEST(Database, TakesOnlyItsPassword)
{
    const TestDatabase database;
    constexpr std::pair<const char *, int> cases[] = {
        {";pwd=velmo", 0}, {"MS Access;PWD=velmo;", 0}, {";PWD=Velmo", 3031}, {"", 3031},
        {"velmo", 3031},   {";PWD=velmo ", 3031},
    };
    for (const auto &[connect, error] : cases)
        EXPECT_EQ(OpenError(database.LocalPath(), connect).number, error) << connect;
    EXPECT_FALSE(database.folder.Read("TLDB0010.MDB").contains("velmo"));
}

TEST(Database, RefusesWhatIsNoDatabaseOfTheSystem)
{
    const TestFolder folder;
    EXPECT_EQ(OpenError(folder.Path("NONE.MDB")).number, 3024);
    EXPECT_FALSE(QFile::exists(folder.Path("NONE.MDB"))) << "a look must not make a file";

    folder.Write("OLD.MDB",
                 QByteArray("\0\1\0\0Standard Jet DB\0\1\0", 22) + QByteArray(4096, 'x'));
    const DaoError old = OpenError(folder.Path("OLD.MDB"));
    EXPECT_EQ(old.number, 3343);
    EXPECT_TRUE(old.description.contains(QString("mv \"%1/OLD.MDB\" \"%1/OLD-OLD.MDB\"\r\n"
                                                 "tldb import \"%1/OLD-OLD.MDB\" \"%1\"\r\n")
                                             .arg(folder.Path(""))))
        << old.description.toStdString();

    folder.Write("EMPTY.MDB", "");
    EXPECT_EQ(OpenError(folder.Path("EMPTY.MDB")).number, 3343);
    EXPECT_EQ(folder.Read("EMPTY.MDB"), "");

    for (const char *sql : {"CREATE TABLE TLSP0010 (AccNo)",
                            "PRAGMA encoding='UTF-16'; CREATE TABLE DBProperty (Name, Value)"}) {
        const TestFolder otherFolder;
        sqlite3 *other = nullptr;
        sqlite3_open(otherFolder.Path("OTHER.MDB").toUtf8(), &other);
        sqlite3_exec(other, sql, nullptr, nullptr, nullptr);
        sqlite3_close(other);
        EXPECT_EQ(OpenError(otherFolder.Path("OTHER.MDB")).number, 3343) << sql;
    }
}

TEST(Database, OpeningItTakesNoLockAwayFromThisProcess)
{
    TestDatabase database;
    database.Run("BEGIN IMMEDIATE");
    EXPECT_TRUE(IsLockedForOthers(database.LocalPath()));
    for (const bool isReadOnly : {true, false}) {
        {
            Database other(database.LocalPath(), isReadOnly, ConnectText);
            EXPECT_TRUE(IsLockedForOthers(database.LocalPath()));
        }
        EXPECT_TRUE(IsLockedForOthers(database.LocalPath()));
    }
    database.Run("COMMIT");
    EXPECT_FALSE(IsLockedForOthers(database.LocalPath()));
}

TEST(Database, CreateMakesAFileOfItsGroupAndSparesAnExistingOne)
{
    const TestFolder folder;
    const QString path = folder.Path("資材.MDB");
    {
        const mode_t oldMask = ::umask(0022);
        const auto database = Database::Create(path, ";PWD=a'b");
        ::umask(oldMask);
        struct stat status = {};
        ASSERT_EQ(::stat(QFile::encodeName(path), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0660u);
    }
    EXPECT_EQ(ErrorOf([&] { Database::Create(path, ConnectText); }).number, 3204);
    EXPECT_EQ(OpenError(path, ";PWD=a'b").number, 0);
    EXPECT_EQ(OpenError(path).number, 3031);
}

TEST(Database, ErrorsNameTheirCause)
{
    TestDatabase database;
    database.Run("INSERT INTO TLMT0020 (AccHinCD) VALUES ('A'), ('B')");
    database.Run("CREATE TABLE Rated (Rate CHECK (Rate < 100));"
                 "CREATE TRIGGER Kept BEFORE DELETE ON TLMT0020"
                 " BEGIN SELECT RAISE(ABORT, '消せない商品'); END");
    Database readOnly(database.LocalPath(), true, ConnectText);
    Database &engine = database.Other();
    const struct
    {
        Database &database;
        QString sql;
        int number;
        const char *ownText = ""; ///< of the engine, shown with the number's
    } cases[] = {
        {engine, "UPDATE TLMT0099 SET A = 1", 3075},
        {engine, "DELETE FROM TLMT0010; DELETE FROM TLMT0020", 3075},
        {engine, QString("DELETE FROM TLMT0010") + QChar(0) + " WHERE CoCD = 'A'", 3075},
        {engine, "INSERT INTO TLMT0020 (AccHinCD) VALUES ('a')", 3022, "TLMT0020.AccHinCD"},
        {engine, "INSERT INTO Rated VALUES (100)", 3317, "Rate < 100"},
        {engine, "DELETE FROM TLMT0020", 3317, "消せない商品"},
        {engine, "INSERT INTO TLMT0020 (AccHinCD) VALUES (NULL)", 3314, "TLMT0020.AccHinCD"},
        {readOnly, "DELETE FROM TLMT0020", 3027},
    };
    for (const auto &[on, sql, number, ownText] : cases) {
        const DaoError error = ErrorOf([&on = on, sql = sql] { on.Execute(sql); });
        EXPECT_EQ(error.number, number)
            << sql.toStdString() << ' ' << error.description.toStdString();
        EXPECT_TRUE(error.description.contains(ownText)) << error.description.toStdString();
    }
    EXPECT_EQ(database.Rows("SELECT AccHinCD FROM TLMT0020"), "A B");
}

class WorkspaceTest : public testing::Test
{
protected:
    QString Products() { return file.Rows("SELECT AccHinCD FROM TLMT0020 ORDER BY 1"); }

    TestDatabase file;
    DBEngine engine;
    Workspace &workspace = engine.Workspaces(0);
    Database &database = workspace.OpenDatabase(file.LocalPath(), false, ConnectText);
};

TEST_F(WorkspaceTest, RollbackTakesEverythingBackAlsoAfterAFailedStatement)
{
    const QString insert = "INSERT INTO TLMT0020 (AccHinCD) VALUES ('%1')";
    workspace.BeginTrans();
    database.Execute(insert.arg("A"));
    workspace.CommitTrans();
    workspace.BeginTrans();
    database.Execute(insert.arg("B"));
    database.Execute("DELETE FROM TLMT0020 WHERE AccHinCD = 'A'");
    EXPECT_EQ(Products(), "A") << "nobody else sees it before the commit";
    EXPECT_EQ(ErrorOf([&] { database.Execute(insert.arg("B")); }).number, 3022);
    workspace.Rollback();
    EXPECT_EQ(Products(), "A");
}

TEST_F(WorkspaceTest, ClosingGivesUpAnOpenTransaction)
{
    workspace.BeginTrans();
    database.Execute("INSERT INTO TLMT0020 (AccHinCD) VALUES ('A')");
    workspace.CloseDatabase();
    EXPECT_EQ(Products(), "");
    EXPECT_EQ(ErrorOf([&] { workspace.BeginTrans(); }).number, 3420);
}

TEST_F(WorkspaceTest, ALockedFileIsReportedWhenTheTransactionBegins)
{
    SetLockTimeout(database, 50);
    file.Run("BEGIN IMMEDIATE; INSERT INTO TLMT0020 (AccHinCD) VALUES ('X')");
    EXPECT_EQ(ErrorOf([&] { workspace.BeginTrans(); }).number, 3260);
    EXPECT_EQ(ErrorOf([&] { database.Execute("DELETE FROM TLMT0020"); }).number, 3260);
    EXPECT_TRUE(database.OpenRecordset("SELECT * FROM TLMT0020")->IsEof())
        << "reading goes on meanwhile";
    file.Run("COMMIT");
    workspace.BeginTrans();
    database.Execute("DELETE FROM TLMT0020");
    workspace.CommitTrans();
    EXPECT_EQ(Products(), "");
}

TEST_F(WorkspaceTest, CommitsReachTheDiskAndLocksAreWaitedFor)
{
    const auto setting
        = [this](const QString &name) { return database.OpenRecordset("PRAGMA " + name)->Text(0); };
    EXPECT_EQ(setting("journal_mode"), "delete");
    EXPECT_EQ(setting("synchronous"), "2");
    EXPECT_GE(setting("busy_timeout").toInt(), 1000);
}
