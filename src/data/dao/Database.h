#pragma once

#include "data/dao/Recordset.h"

#include <QByteArrayView>
#include <QString>
#include <functional>
#include <memory>

struct sqlite3;

/// How the original engine's own files begin.
inline constexpr QByteArrayView OldEngineHeader("\0\1\0\0Standard Jet DB\0", 20);

/// One open database file. Statements are in the system's dialect. Every routine throws DaoError.
class Database
{
public:
    /// Opens an existing file, shared with other programs. The connect text carries the password as
    /// ";PWD=...". A file that is no database, has another password, or is in the original engine's
    /// own format is refused.
    Database(const QString &localPath, bool isReadOnly, const QString &connect);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    /// Makes a new, empty file with this password and leaves it open; an existing file is refused.
    static std::unique_ptr<Database> Create(const QString &localPath, const QString &connect);

    std::unique_ptr<Recordset> OpenRecordset(const QString &sql);

    void Execute(const QString &sql);

    /// Rows that the last Execute inserted, changed or deleted.
    int RecordsAffected() const { return m_recordsAffected; }

    /// A property of the database.
    QString Property(const QString &name);
    void SetProperty(const QString &name, const QString &value);

    bool IsInTransaction() const;

    /// Called again and again while a statement runs: False cancels it. It must not use the
    /// database. An empty one ends that.
    void SetProgress(std::function<bool()> goOn);

    /// Runs SQL of the engine itself, untranslated, several statements at once.
    void ExecuteNative(const QString &sql);

    sqlite3 *Connection() const { return m_connection; }

private:
    Database(const QString &localPath, int openFlags);

    sqlite3 *m_connection = nullptr;
    int m_recordsAffected = 0;
    std::function<bool()> m_goOn;
};
