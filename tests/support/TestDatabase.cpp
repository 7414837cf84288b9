#include "support/TestDatabase.h"

#include "data/Tables.h"
#include "data/dao/sqlite/SqliteConnection.h"

#include <QFile>
#include <QHash>
#include <QStringList>
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

TestDatabase::TestDatabase()
    : m_other(Database::Create(LocalPath(), ConnectText))
{
    m_other->ExecuteNative("PRAGMA synchronous=OFF");
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
    sqlite3_busy_timeout(static_cast<SqliteConnection &>(database.Engine()).Handle(), milliseconds);
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
