#pragma once

#include "data/dao/Database.h"
#include "tldb/check/DatabaseCheck.h"

/// What was copied.
struct CopyCount
{
    int tables = 0;
    qint64 rows = 0;
};

/// Copies every table of a database file, with the columns and tables that the system does not
/// know, to a new database on a server (Database::CreateOnServer), and compares what has arrived
/// there with what was read. A value that the server can't hold as it is, or a difference, is
/// handed to `found`; then nothing is to be committed. Each table's rows are told in a line on
/// `out`. Throws DaoError.
CopyCount CopyToServer(Database &file, Database &server, const FindingSink &found,
                       QTextStream &out);

/// The settings file of a folder whose database goes to a server, while the file is still in use.
QString ServerFilePath(const QString &folder);

/// Writes the file that names the server, on which nothing may stand yet. Throws DaoError.
void WriteServerFile(const QString &path, const QString &settings);
