#pragma once

#include "data/dao/Connection.h"
#include "data/dao/DaoError.h"

struct sqlite3;

/// A database file of SQLite, shared with other programs.
class SqliteConnection : public Connection
{
public:
    enum class Access { Create, ReadOnly, ReadWrite };

    /// Opens the file or makes a new one. Throws DaoError.
    SqliteConnection(const QString &localPath, Access access);
    ~SqliteConnection() override;
    SqliteConnection(const SqliteConnection &) = delete;
    SqliteConnection &operator=(const SqliteConnection &) = delete;

    QString Translated(const QString &statement) const override;
    void Read(const QString &sql, RowReceiver &rows) override;
    int Execute(const QString &sql) override;
    void ExecuteScript(const QString &sql) override;

    /// Takes the file's write lock at once, so that the transaction can't fail for another's writes
    /// half way. An exclusive one keeps readers out as well, so that it can't fail for one at its
    /// commit.
    void Begin(bool isExclusive) override;
    void Commit() override;
    void Rollback() override;
    bool IsInTransaction() const override;
    void SetProgress(std::function<bool()> goOn) override;

    QStringList TableNames() override;
    std::vector<StoredColumn> Columns(const QString &table) override;
    QStringList IndexedColumns(const QString &table) override;
    StoredColumn Wanted(const ColumnDefinition &column) const override;
    QString RowNumber() const override { return "rowid"; }
    std::unique_ptr<RowLoader> LoadRows(const QString &table, const QStringList &columns) override;

    void CopyRights(const QString &, const QString &) override {} // they are the file's
    bool CopyTo(const QString &localPath) override;

    QStringList FindDamage() override;
    std::optional<QStringList> FindDamage(const QString &table,
                                          const std::function<bool()> &isToGiveWay) override;

    sqlite3 *Handle() const { return m_handle; }

    /// The error that the last call on the connection left.
    static DaoError ErrorOf(sqlite3 *handle);

private:
    sqlite3 *m_handle = nullptr;
    std::function<bool()> m_goOn;
};
