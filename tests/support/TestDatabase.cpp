#include "support/TestDatabase.h"

#include "data/Tables.h"

#include <QStringList>
#include <algorithm>
#include <gtest/gtest.h>
#include <sqlite3.h>

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
    ASSERT_TRUE(db.OpenDB(folder.OnDriveC(), SystemPath(), false, ConnectText));
}

void TestDatabase::Insert(const QString &table,
                          std::initializer_list<std::pair<const char *, QVariant>> values)
{
    const TableDefinition *definition = FindTable(table);
    ASSERT_NE(definition, nullptr) << table.toStdString();
    for (const auto &[name, value] : values)
        ASSERT_TRUE(std::ranges::any_of(definition->columns, [&](const ColumnDefinition &column) {
            return QString(column.name) == name;
        })) << name;
    QStringList names;
    QStringList literals;
    for (const ColumnDefinition &column : definition->columns) {
        const auto *given = std::ranges::find_if(
            values, [&](const auto &value) { return QString(column.name) == value.first; });
        names += column.name;
        if (given != values.end())
            literals += Literal(given->second);
        else
            literals += column.IsText() ? "''" : "0";
    }
    Run("INSERT INTO " + table + " (" + names.join(", ") + ") VALUES (" + literals.join(", ")
        + ')');
}

QString TestDatabase::Rows(const QString &sql)
{
    QStringList rows;
    sqlite3_stmt *statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(m_other->Connection(), sql.toUtf8(), -1, &statement, nullptr),
              SQLITE_OK)
        << sqlite3_errmsg(m_other->Connection());
    while (sqlite3_step(statement) == SQLITE_ROW) {
        QStringList values;
        for (int column = 0; column < sqlite3_column_count(statement); ++column)
            values += QString::fromUtf8(
                reinterpret_cast<const char *>(sqlite3_column_text(statement, column)));
        rows += values.join('|');
    }
    sqlite3_finalize(statement);
    return rows.join(' ');
}

void SetLockTimeout(Database &database, int milliseconds)
{
    sqlite3_busy_timeout(database.Connection(), milliseconds);
}
