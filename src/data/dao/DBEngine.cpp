#include "data/dao/DBEngine.h"

Database &Workspace::OpenDatabase(const QString &localPath, bool isReadOnly, const QString &connect)
{
    m_database = std::make_unique<Database>(localPath, isReadOnly, connect);
    return *m_database;
}

void Workspace::BeginTrans(bool isExclusive)
{
    Run(isExclusive ? "BEGIN EXCLUSIVE" : "BEGIN IMMEDIATE");
    m_isBegun = true;
}

void Workspace::CommitTrans()
{
    Run("COMMIT");
    m_isBegun = false;
}

void Workspace::Rollback()
{
    const bool isEnded = m_isBegun && m_database && !m_database->IsInTransaction();
    m_isBegun = false;
    if (!isEnded)
        Run("ROLLBACK");
}

void Workspace::Run(const char *sql)
{
    if (!m_database)
        throw DaoErrors::Make(DaoErrors::ObjectInvalid, "DAO.Workspace");
    m_database->ExecuteNative(sql);
}
