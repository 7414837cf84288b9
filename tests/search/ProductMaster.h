#pragma once

#include "support/TestDatabase.h"

#include <QRegularExpression>

/// Makes the product master one that may hold a code twice, as a file without its key does.
inline void DropProductKey(TestDatabase &database)
{
    QString table = database.Rows("SELECT sql FROM sqlite_master WHERE name = 'TLMT0020'");
    table.remove(QRegularExpression(",\\s*PRIMARY KEY \\([^)]*\\)"));
    database.Run("DROP TABLE TLMT0020");
    database.Run(table);
}
