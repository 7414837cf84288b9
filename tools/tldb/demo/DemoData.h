#pragma once

#include "data/dao/Database.h"

#include <QDate>

/// What demonstration data to make. Equal options make equal rows.
struct DemoOptions
{
    qint64 lineCount = 2000;
    quint64 seed = 1;
    QDate day; ///< the day that the data is made for: delivery dates lie around it
};

/// Fills an empty database that no other program uses yet. Throws DaoError.
void FillWithDemoData(Database &database, const DemoOptions &options);

/// Writes TALVEN.INI for the database in `folder`, and makes the folders there that its drives
/// stand for. Returns false when one of them can't be written.
bool WriteDemoSettings(const QString &folder);
