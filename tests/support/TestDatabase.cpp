#include "support/TestDatabase.h"

#include "data/Tables.h"
#include "data/dao/postgres/OpenPostgres.h"
#include "data/dao/postgres/ServerFile.h"
#include "data/dao/sqlite/SqliteConnection.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QStringList>
#include <QTest>
#include <algorithm>
#include <cmath>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

QString Literal(const QVariant &value)
{
    if (value.isNull())
        return "NULL";
    if (value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QByteArray)
        return '\'' + value.toString().replace("'", "''") + '\'';
    return value.toString();
}

} // namespace

TestSchema::TestSchema()
{
    const QString server = qEnvironmentVariable("TEST_SERVER");
    if (server.isEmpty())
        return;
    static int count = 0;
    m_name = QString("test_%1_%2").arg(QCoreApplication::applicationPid()).arg(++count);
    m_settings = server + " options='-c search_path=" + m_name + ",public'";
    OpenPostgres(server, ServerAccess::ReadWrite)->ExecuteScript("CREATE SCHEMA " + m_name);
}

TestSchema::~TestSchema()
{
    if (m_name.isEmpty())
        return;
    EXPECT_NO_THROW(OpenPostgres(m_settings, ServerAccess::ReadWrite)
                        ->ExecuteScript("DROP SCHEMA " + m_name + " CASCADE"));
}

TestDatabase::TestDatabase()
{
    if (IsOnServer()) {
        folder.Write("TLDB0010.MDB", ServerFile::TextFor(Settings()));
        m_other = Database::CreateOnServer(Settings(), ConnectText);
    } else {
        m_other = Database::Create(LocalPath(), ConnectText);
        m_other->ExecuteNative("PRAGMA synchronous=OFF");
    }
    CreateTables(*m_other);
}

void TestDatabase::Open(bDAO &db) const
{
    ASSERT_TRUE(db.OpenDB(folder.OnDriveC(), "C:\\TLDB0010.MDB", false, ConnectText));
}

void TestDatabase::Insert(const QString &table,
                          std::initializer_list<std::pair<const char *, QVariant>> values)
{
    const TableDefinition *definition = FindTable(table);
    ASSERT_NE(definition, nullptr) << table.toStdString();
    QHash<QString, QVariant> given;
    for (const auto &[name, value] : values)
        given.insert(name, value);
    QStringList names;
    QStringList literals;
    for (const ColumnDefinition &column : definition->columns) {
        const QVariant blank = column.IsText() ? QVariant("") : QVariant(0);
        literals += Literal(given.contains(column.name) ? given.take(column.name) : blank);
        names += column.name;
    }
    ASSERT_TRUE(given.isEmpty()) << given.begin().key().toStdString();
    Run("INSERT INTO " + table + " (" + names.join(", ") + ") VALUES (" + literals.join(", ")
        + ')');
}

void TestDatabase::Lock()
{
    if (!IsOnServer())
        return Run("BEGIN IMMEDIATE");
    try {
        Run("BEGIN; LOCK TABLE TLSP0010 IN SHARE ROW EXCLUSIVE MODE");
    } catch (const DaoError &) {
        Unlock();
        throw;
    }
}

void TestDatabase::WaitUntilAlone()
{
    const QString others = "SELECT COUNT(*) FROM pg_stat_activity WHERE backend_type = "
                           "'client backend' AND pid <> pg_backend_pid()";
    EXPECT_TRUE(!IsOnServer() || QTest::qWaitFor([&] { return Rows(others) == "0"; }, 20'000));
}

void TestDatabase::Refuse(const QString &event, const QString &condition, const QString &table)
{
    const QString trigger = "CREATE TRIGGER Refuse BEFORE " + event + " ON " + table + ' ';
    const QString when = condition.isEmpty() ? QString() : "WHEN (" + condition + ") ";
    if (!IsOnServer())
        return Run(trigger + when + "BEGIN SELECT RAISE(ABORT, '変更できません'); END");
    Run("CREATE OR REPLACE FUNCTION refused() RETURNS trigger LANGUAGE plpgsql AS"
        " $$ BEGIN RAISE EXCEPTION '変更できません'; END $$;"
        + trigger + "FOR EACH ROW " + when + "EXECUTE FUNCTION refused()");
}

void TestDatabase::RefuseNothing(const QString &table)
{
    Run(IsOnServer() ? "DROP TRIGGER Refuse ON " + table : QString("DROP TRIGGER Refuse"));
}

QString TestDatabase::Rows(const QString &sql)
{
    QStringList rows;
    m_other->VisitRows(sql, [&rows](std::span<const RowValue> row) {
        QStringList values;
        for (const RowValue &value : row) {
            // A double without decimals is told from a whole number.
            const bool isWholeDouble
                = value.type == ValueType::Real && value.Number() == std::trunc(value.Number());
            values += value.Text() + (isWholeDouble ? ".0" : "");
        }
        rows += values.join('|');
    });
    return rows.join(' ');
}

void SetLockTimeout(Database &database, int milliseconds)
{
    if (auto *file = dynamic_cast<SqliteConnection *>(&database.Engine()))
        sqlite3_busy_timeout(file->Handle(), milliseconds);
    else // 0 would be for ever
        database.ExecuteNative(QString("SET lock_timeout = %1").arg(std::max(milliseconds, 1)));
}

void SetLockTimeout(bDAO &db, const TestDatabase &file, int milliseconds)
{
    const QString setting = file.IsOnServer() ? "SET lock_timeout = " : "PRAGMA busy_timeout = ";
    EXPECT_TRUE(db.OpenRS(setting + QString::number(milliseconds)));
}

bool IsLockedForOthers(const QString &localPath)
{
    const pid_t other = ::fork();
    if (other == 0) {
        constexpr off_t ReservedByte = 0x40000001;
        struct flock lock = {};
        lock.l_type = F_WRLCK;
        lock.l_whence = SEEK_SET;
        lock.l_start = ReservedByte;
        lock.l_len = 1;
        ::fcntl(::open(QFile::encodeName(localPath), O_RDWR), F_GETLK, &lock);
        ::_exit(lock.l_type == F_WRLCK ? 1 : 0);
    }
    int status = 0;
    ::waitpid(other, &status, 0);
    return WEXITSTATUS(status) == 1;
}
