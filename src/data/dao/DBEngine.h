#pragma once

#include "data/dao/DaoError.h"
#include "data/dao/Database.h"

#include <array>
#include <memory>
#include <vector>

/// Where databases are opened and transactions run. Every routine throws DaoError.
class Workspace
{
public:
    /// Opens a database for this workspace; it stays the one open until the next is opened.
    Database &OpenDatabase(const QString &localPath, bool isReadOnly, const QString &connect);
    void CloseDatabase() { m_database.reset(); }

    /// A transaction keeps other writers out from its first statement on, so that it can't fail for
    /// another's writes half way; a lock held by another program is waited for, then reported.
    /// An exclusive one can't fail for a reader at its commit either.
    void BeginTrans(bool isExclusive = false);
    void CommitTrans();
    void Rollback(); ///< nothing is left to do when an error has ended the transaction itself

private:
    Database &Opened();

    std::unique_ptr<Database> m_database;
    bool m_isBegun = false; ///< a transaction, not yet committed or rolled back
};

/// The engine: its workspaces and the errors of the last operation that failed.
class DBEngine
{
public:
    Workspace &Workspaces(int number) { return m_workspaces.at(size_t(number)); }

    std::vector<DaoError> Errors;

private:
    std::array<Workspace, 1> m_workspaces;
};
