#pragma once

#include "data/bDAO.h"
#include "support/TestFolder.h"

#include <QString>
#include <QVariant>
#include <initializer_list>
#include <memory>
#include <utility>

/// A database with every table and no rows, alone in a temporary folder. It holds a connection of
/// its own, as another program of the suite would, through which rows are put in and looked at.
class TestDatabase
{
public:
    TestDatabase();

    QString LocalPath() const { return folder.Path("TLDB0010.MDB"); }

    /// Opens the database for the program.
    void Open(bDAO &db) const;

    /// Inserts a row; a column that is not named gets an empty text or 0, as the suite writes it.
    void Insert(const QString &table,
                std::initializer_list<std::pair<const char *, QVariant>> values);

    /// Runs untranslated SQL.
    void Run(const QString &sql) { m_other->ExecuteNative(sql); }

    /// The rows of untranslated SQL as text: columns joined by "|", rows by a blank.
    QString Rows(const QString &sql);

    /// The other program's connection.
    Database &Other() { return *m_other; }

    const TestFolder folder;

private:
    std::unique_ptr<Database> m_other;
};

/// Makes a connection give up on a lock after some milliseconds.
void SetLockTimeout(Database &database, int milliseconds);

/// Whether another process could not begin to write to the database now.
bool IsLockedForOthers(const QString &localPath);
