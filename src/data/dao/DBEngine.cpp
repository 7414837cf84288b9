#include "data/dao/DBEngine.h"

Database &Workspace::OpenDatabase(const QString &localPath, bool isReadOnly, const QString &connect)
{
    m_database = std::make_unique<Database>(localPath, isReadOnly, connect);
    return *m_database;
}

Database &Workspace::Opened()
{
    if (!m_database)
        throw DaoErrors::Make(DaoErrors::ObjectInvalid, "DAO.Workspace");
    return *m_database;
}

void Workspace::BeginTrans(bool isExclusive)
{
    Opened().BeginTrans(isExclusive);
    m_isBegun = true;
}

void Workspace::CommitTrans()
{
    Opened().CommitTrans();
    m_isBegun = false;
}

void Workspace::Rollback()
{
    const bool isEnded = m_isBegun && m_database && !m_database->IsInTransaction();
    m_isBegun = false;
    if (!isEnded)
        Opened().Rollback();
}
