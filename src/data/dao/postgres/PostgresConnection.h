#pragma once

#include "data/dao/Connection.h"
#include "data/dao/DaoError.h"
#include "data/dao/postgres/OpenPostgres.h"

struct pg_conn;
struct pg_result;
class PostgresCancel;

/// A database on a PostgreSQL server. A connection that breaks is made anew by the next statement,
/// but never within a transaction: what is left of that fails until it is rolled back. The new
/// connection ends the old one on the server, which may not have noticed.
class PostgresConnection : public Connection
{
public:
    /// Connects with settings as libpq takes them; there is no password among them. Refuses a
    /// database whose texts would compare otherwise than they must. Throws DaoError.
    using Access = ServerAccess;
    PostgresConnection(const QString &settings, Access access);
    ~PostgresConnection() override;
    PostgresConnection(const PostgresConnection &) = delete;
    PostgresConnection &operator=(const PostgresConnection &) = delete;

    QString Translated(const QString &statement) const override;

    /// Takes the rows one by one from the network: none is held twice.
    void Read(const QString &sql, RowReceiver &rows) override;
    int Execute(const QString &sql) override;
    void ExecuteScript(const QString &sql) override;

    /// The transaction begins on the server together with its first statement, which costs no round
    /// trip of its own; an error of the one is an error of the other. It locks the lines against
    /// other writers, an exclusive one also against locks on single lines; readers stay free. After
    /// an error nothing more of it is done.
    void Begin(bool isExclusive) override;

    /// When the connection breaks meanwhile, the server is asked what has become of it.
    void Commit() override;
    void Rollback() override;
    bool IsInTransaction() const override { return m_state != State::None; }
    void SetProgress(std::function<bool()> goOn) override { m_goOn = std::move(goOn); }
    void LimitSilence(int milliseconds) override { m_mostSilenceMs = milliseconds; }

    QStringList TableNames() override;
    std::vector<StoredColumn> Columns(const QString &table) override;
    QStringList IndexedColumns(const QString &table) override;
    StoredColumn Wanted(const ColumnDefinition &column) const override;
    QString RowNumber() const override { return "ctid"; }

    /// By COPY: until Finish, the connection does nothing else.
    std::unique_ptr<RowLoader> LoadRows(const QString &table, const QStringList &columns) override;

    void CopyRights(const QString &fromTable, const QString &toTable) override;

    /// False: a backup is the server's own work, and its administrator's.
    bool CopyTo(const QString &) override { return false; }

    /// Nothing: looking for damage is the server's own work, and its administrator's.
    QStringList FindDamage() override { return {}; }
    std::optional<QStringList> FindDamage(const QString &, const std::function<bool()> &) override
    {
        return QStringList();
    }

private:
    enum class State {
        None,
        ToBegin, ///< with the first statement
        Begun,
        Ended ///< by an error; to be rolled back
    };
    struct Finish
    {
        void operator()(pg_conn *connection) const;
    };
    using OnResult = std::function<void(pg_result *)>;

    void Connect();
    void CheckTexts();
    void Run(const QString &sql, const OnResult &onResult, bool isRowByRow = false);
    DaoError Send(const QByteArray &sql, const OnResult &onResult, bool isRowByRow);
    pg_result *NextResult(PostgresCancel &cancel);
    void AskWhetherToGoOn(PostgresCancel &cancel);
    void LookAtTransaction(DaoError &error);
    DaoError NetworkError(const QString &what) const;
    bool WasCommitted();

    friend class PostgresLoader;

    const QString m_settings;
    const Access m_access;
    std::unique_ptr<pg_conn, Finish> m_connection;
    State m_state = State::None;
    bool m_isExclusive = false;
    QByteArray m_process;       ///< the condition for the server's process of the last connection
    QByteArray m_transactionId; ///< of a transaction that has written something
    std::function<bool()> m_goOn;
    int m_mostSilenceMs = -1; ///< without limit
    bool m_isSilent = false;  ///< the connection has been given up for that
};
