#pragma once

#include "data/dao/Database.h"
#include "tldb/check/DatabaseCheck.h"
#include "tldb/import/OldDatabase.h"

#include <QString>

struct ImportCount
{
    qint64 read = 0;
    qint64 written = 0;
};

/// Copies a table of an old database into a new one that has the system's tables, and makes it
/// there when it is none of them. Columns are matched by name without case. A column of the system
/// that the old table lacks is blank or 0, one that the system does not know follows the table's
/// own. Texts of the system's columns lose trailing blanks, which the program's comparisons do not
/// expect.
///
/// A row or value that can't be written is handed to `found`, a column that is missing to `noted`.
/// Throws DaoError when the table can't be made or the new database can't be written any more.
ImportCount ImportTable(Database &database, const QString &name, OldTable &table,
                        const FindingSink &found, const FindingSink &noted);
