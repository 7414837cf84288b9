#include "data/dao/DBEngine.h"

Database &Workspace::OpenDatabase(const QString &localPath, bool isReadOnly, const QString &connect)
{
    m_database = std::make_unique<Database>(localPath, isReadOnly, connect);
    return *m_database;
}

void Workspace::Run(const char *sql)
{
    if (!m_database)
        throw DaoErrors::Make(DaoErrors::ObjectInvalid, "DAO.Workspace");
    m_database->ExecuteNative(sql);
}
