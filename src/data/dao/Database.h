#pragma once

#include "data/dao/Connection.h"
#include "data/dao/Recordset.h"

#include <QByteArrayView>
#include <QString>
#include <functional>
#include <memory>
#include <span>

/// How the original engine's own files begin.
inline constexpr QByteArrayView OldEngineHeader("\0\1\0\0Standard Jet DB\0", 20);

/// One open database, whatever engine has it. Statements are in the system's dialect where nothing
/// else is said. Every routine throws DaoError.
class Database
{
public:
    /// Opens an existing database, shared with other programs: a file, or one on a server where the
    /// file says so. The connect text carries the
    /// password as ";PWD=...". A file that is no database, has another password, or is in the
    /// original engine's own format is refused.
    Database(const QString &localPath, bool isReadOnly, const QString &connect);
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    /// Makes a new, empty file with this password and leaves it open; an existing file is refused.
    static std::unique_ptr<Database> Create(const QString &localPath, const QString &connect);

    /// The same in a database on a server, whose connection settings are given; one that has a
    /// database of the system already is refused. Nothing of it is there until
    /// ExecuteNative("COMMIT").
    static std::unique_ptr<Database> CreateOnServer(const QString &settings,
                                                    const QString &connect);

    std::unique_ptr<Recordset> OpenRecordset(const QString &sql);

    void Execute(const QString &sql);

    /// Rows that the last Execute inserted, changed or deleted.
    int RecordsAffected() const { return m_recordsAffected; }

    /// A property of the database.
    QString Property(const QString &name);
    void SetProperty(const QString &name, const QString &value);

    void BeginTrans(bool isExclusive) { m_connection->Begin(isExclusive); }
    void CommitTrans() { m_connection->Commit(); }
    void Rollback() { m_connection->Rollback(); }
    bool IsInTransaction() const { return m_connection->IsInTransaction(); }

    /// Called again and again while a statement runs: False cancels it. It must not use the
    /// database. An empty one ends that.
    void SetProgress(std::function<bool()> goOn) { m_connection->SetProgress(std::move(goOn)); }
    void LimitSilence(int milliseconds) { m_connection->LimitSilence(milliseconds); }

    /// Runs SQL of the engine itself, untranslated, several statements at once.
    void ExecuteNative(const QString &sql) { m_connection->ExecuteScript(sql); }

    using RowVisitor = std::function<void(std::span<const RowValue> row)>;

    /// Reads the rows of untranslated SQL one by one: a table need not fit into memory. What is
    /// called must not use the database.
    void VisitRows(const QString &sql, const RowVisitor &visit);

    /// What else the engine can do.
    Connection &Engine() { return *m_connection; }

private:
    Database(std::unique_ptr<Connection> connection, const QString &connect);

    std::unique_ptr<Connection> m_connection;
    int m_recordsAffected = 0;
};
