#pragma once

#include "data/bDAO.h"
#include "support/TestFolder.h"

#include <QString>
#include <QVariant>
#include <initializer_list>
#include <memory>
#include <utility>

/// A schema of its own on the server that the environment names in TEST_SERVER, dropped with all it
/// holds.
class TestSchema
{
public:
    TestSchema();
    ~TestSchema();
    TestSchema(const TestSchema &) = delete;
    TestSchema &operator=(const TestSchema &) = delete;

    /// The connection settings; empty when there is no server.
    QString Settings() const { return m_settings; }

private:
    QString m_name;
    QString m_settings;
};

/// A database with every table and no rows, alone in a temporary folder; where the environment
/// names a server in TEST_SERVER, in a schema of its own there. It holds a connection of its own,
/// as another program of the suite would, through which rows are put in and looked at.
class TestDatabase
{
public:
    TestDatabase();

    bool IsOnServer() const { return !Settings().isEmpty(); }

    /// The connection settings of a database on a server.
    QString Settings() const { return m_schema.Settings(); }

    QString LocalPath() const { return folder.Path("TLDB0010.MDB"); }

    /// Opens the database for the program.
    void Open(bDAO &db) const;

    /// Inserts a row; a column that is not named gets an empty text or 0, as the suite writes it.
    void Insert(const QString &table,
                std::initializer_list<std::pair<const char *, QVariant>> values);

    /// Takes the lock for writing, as another program does, until Unlock. Throws DaoError when it
    /// is taken already.
    void Lock();
    void Unlock() { Run("ROLLBACK"); }

    /// On a server: waits until it has done with what programs that are gone have left it to do.
    void WaitUntilAlone();

    /// Makes every INSERT, UPDATE or DELETE of a table's rows fail (those of which the condition
    /// holds, when there is one: "NEW.AccNo = 2"), until RefuseNothing.
    void Refuse(const QString &event, const QString &condition = {},
                const QString &table = "TLSP0010");
    void RefuseNothing(const QString &table = "TLSP0010");

    /// Runs untranslated SQL.
    void Run(const QString &sql) { m_other->ExecuteNative(sql); }

    /// The rows of untranslated SQL as text: columns joined by "|", rows by a blank.
    QString Rows(const QString &sql);

    /// The other program's connection.
    Database &Other() { return *m_other; }

    const TestFolder folder;

private:
    const TestSchema m_schema;
    std::unique_ptr<Database> m_other;
};

/// Makes a connection give up on a lock after some milliseconds.
void SetLockTimeout(Database &database, int milliseconds);
void SetLockTimeout(bDAO &db, const TestDatabase &file, int milliseconds);

/// Whether another process could not begin to write to the database now.
bool IsLockedForOthers(const QString &localPath);
