#pragma once

#include "data/dao/Database.h"

#include <QString>
#include <memory>

struct DaoError;

/// The database file's path in a folder.
QString DatabasePath(const QString &folder);

/// Opens a database that is only to be read. What a crash has interrupted is rolled back, though,
/// which is the work of the next one who opens the file for writing. Throws DaoError.
Database OpenToRead(const QString &path);

/// A database error in one English line.
QString ErrorText(const DaoError &error);

/// A database in the making. It is built under another name and gets its own only when Finish is
/// called, so a run that fails half way leaves no half-filled TLDB0010.MDB behind. One that is to
/// be on a server is built as a file all the same, and copied there by Finish.
class NewDatabase
{
public:
    /// Makes the folder when it is missing, and in it an empty database with every table. Throws
    /// DaoError: FileExists when the folder has a database already, which then stays as it is.
    /// `server` is the connection settings of a server; empty: the database is a file.
    explicit NewDatabase(const QString &folder, const QString &server = {});

    /// Takes an unfinished database away.
    ~NewDatabase();
    NewDatabase(const NewDatabase &) = delete;
    NewDatabase &operator=(const NewDatabase &) = delete;

    Database &Content() { return *m_database; }

    /// Closes the database and gives it its name, or to the file that names its server. Throws
    /// DaoError when another program made one of that name meanwhile.
    void Finish();

private:
    void CopyToItsServer();

    QString m_path;
    QString m_buildPath;
    QString m_server;
    std::unique_ptr<Database> m_database;
};
