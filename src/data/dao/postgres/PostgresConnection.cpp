#include "data/dao/postgres/PostgresConnection.h"

#include "data/dao/Dialect.h"
#include "data/dao/SqlText.h"
#include "data/dao/postgres/PostgresCancel.h"
#include "data/dao/postgres/PostgresErrors.h"
#include "data/dao/postgres/PostgresRows.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QThread>
#include <exception>
#include <libpq-fe.h>
#include <memory>
#include <poll.h>
#include <sys/socket.h>

namespace {

struct Clear
{
    void operator()(PGresult *result) const { PQclear(result); }
};
using Result = std::unique_ptr<PGresult, Clear>;

constexpr auto LostText = "サーバーとの接続が切れました";
constexpr auto LostTransactionText
    = "サーバーとの接続が切れたため、処理中のトランザクションは取り消されました";
constexpr auto SilentText = "サーバーから応答がありません";
constexpr auto EndedText = "前のエラーのため、このトランザクションは続けられません";
constexpr auto UnknownText = "サーバーとの接続が切れました。書き込まれたかどうかは確認できません。"
                             "次の表示にかかわらず、一覧を表示し直して確認してください";

/// One snapshot for all that is read, taken when the lock is there. The stronger one waits for
/// those who have chosen lines to change and not changed them yet: they would be in the way later
/// on.
QByteArray BeginSql(bool isExclusive)
{
    return QByteArray("BEGIN ISOLATION LEVEL REPEATABLE READ;LOCK TABLE TLSP0010 IN ")
           + (isExclusive ? "" : "SHARE ROW ") + "EXCLUSIVE MODE;";
}

/// Asked together with a transaction's first write: by this the server knows later what has become
/// of it.
constexpr auto TransactionIdSql = ";SELECT pg_current_xact_id_if_assigned() AS transaction_id";

/// What holds for a session. A lock is waited for as long as a file's; a desk that hangs or has
/// gone within a transaction keeps the others out for a moment only; a commit is on the disk. A
/// search reads the lines and orders of its customer and no others: what it needs lies in memory,
/// or on a disk without a head to move.
constexpr auto SessionSql
    = "SET standard_conforming_strings = on; SET extra_float_digits = 1; SET bytea_output = hex;"
      "SET random_page_cost = 1.1; SET jit = off;"
      "SET lock_timeout = '10s'; SET idle_in_transaction_session_timeout = '2min';"
      "SET tcp_keepalives_idle = 30; SET tcp_keepalives_interval = 10;"
      "SET tcp_keepalives_count = 3; SET tcp_user_timeout = 30000;"
      "SELECT set_config('synchronous_commit', 'local', false)"
      " WHERE current_setting('synchronous_commit') = 'off';";

/// What tells this connection's process on the server from all others that are or have been.
constexpr auto ProcessSql = "SELECT 'pid = ' || pid || ' AND EXTRACT(EPOCH FROM backend_start) = '"
                            " || EXTRACT(EPOCH FROM backend_start) AS process FROM pg_stat_activity"
                            " WHERE pid = pg_backend_pid();";

/// Whether texts compare as they must: without ASCII case, and in no other way alike.
constexpr auto TextCheckSql
    = "SELECT current_setting('server_encoding') = 'UTF8' AND lower('Ａ') = 'Ａ' AND 'B' < 'a'"
      " AND 'a b' < 'a-b' AND 'a-b' < 'aa' AND upper('ａ') = 'ａ'"
      " AND to_regtype('citext') IS NOT NULL";

void PassOver(PGresult *) {}

} // namespace

PostgresConnection::PostgresConnection(const QString &settings, Access access)
    : m_settings(settings)
    , m_access(access)
{
    char *message = nullptr;
    PQconninfoOption *const options = PQconninfoParse(settings.toUtf8(), &message);
    if (!options) {
        // The library quotes what it stumbled over, which may be a piece of a password.
        const bool mayBeSecret
            = settings.contains("passw", Qt::CaseInsensitive) || settings.contains("://");
        const QString what = mayBeSecret ? QString("接続の設定の書き方が正しくありません")
                                         : QString::fromUtf8(message).simplified();
        PQfreemem(message);
        throw DaoErrors::Make(DaoErrors::UnrecognizedFormat, DaoErrors::DatabaseSource, what);
    }
    static const QRegularExpression password("password\\s*=",
                                             QRegularExpression::CaseInsensitiveOption);
    bool hasPassword = false;
    for (const PQconninfoOption *option = options; option->keyword; ++option)
        // Also one that a slip has made a part of another value.
        hasPassword |= option->val
                       && (QByteArrayView(option->keyword).endsWith("password")
                           || QString::fromUtf8(option->val).contains(password));
    PQconninfoFree(options);
    if (hasPassword)
        throw DaoErrors::Make(DaoErrors::UnrecognizedFormat, DaoErrors::DatabaseSource,
                              "接続の設定にパスワードは書けません。~/.pgpass に書いてください");
    Connect();
    if (m_access == Access::Create)
        ExecuteScript("CREATE EXTENSION IF NOT EXISTS citext");
    CheckTexts();
}

std::unique_ptr<Connection> OpenPostgres(const QString &settings, ServerAccess access)
{
    return std::make_unique<PostgresConnection>(settings, access);
}

PostgresConnection::~PostgresConnection() = default;

void PostgresConnection::Finish::operator()(pg_conn *connection) const
{
    PQfinish(connection);
}

void PostgresConnection::Connect()
{
    const QByteArray settings = m_settings.toUtf8();
    // What stands before the settings gives way to them. A network that is silent counts as broken
    // after half a minute.
    const char *const keywords[] = {"fallback_application_name",
                                    "connect_timeout",
                                    "keepalives_idle",
                                    "keepalives_interval",
                                    "keepalives_count",
                                    "tcp_user_timeout",
                                    "dbname",
                                    "client_encoding",
                                    nullptr};
    const char *const values[]
        = {"TL030101", "10", "30", "10", "3", "30000", settings.constData(), "UTF8", nullptr};
    constexpr int MostMsOfAnswer = 5'000;
    QElapsedTimer sinceStart;
    sinceStart.start();
    m_connection.reset(PQconnectdbParams(keywords, values, 1));
    if (PQstatus(m_connection.get()) != CONNECTION_OK) {
        const QString message = QString::fromUtf8(PQerrorMessage(m_connection.get())).simplified();
        m_connection.reset();
        // A server that is there has its reasons.
        const bool isThere = sinceStart.elapsed() < MostMsOfAnswer
                             && PQpingParams(keywords, values, 1) == PQPING_OK;
        throw DaoErrors::Make(isThere ? DaoErrors::CannotOpen : DaoErrors::DiskError,
                              DaoErrors::DatabaseSource, message);
    }
    PQsetNoticeReceiver(
        m_connection.get(), [](void *, const PGresult *) {}, nullptr);
    QByteArray session = SessionSql;
    if (m_access == Access::ReadOnly)
        session += "SET default_transaction_read_only = on;";
    // The connection before this one may have broken without the server's having noticed: its
    // transaction would keep its locks, the next one of this desk out, and its outcome open.
    if (!m_process.isEmpty())
        session
            += "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE " + m_process + ';';
    session += ProcessSql;
    QByteArray process;
    const DaoError error = Send(
        session,
        [&process](PGresult *result) {
            if (PQntuples(result) == 1 && PQfnumber(result, "process") == 0)
                process = PQgetvalue(result, 0, 0);
        },
        false);
    if (error.number != 0) {
        m_connection.reset();
        throw error;
    }
    m_process = process;
}

void PostgresConnection::CheckTexts()
{
    if (FirstColumn(TextCheckSql) != QStringList("1"))
        throw DaoErrors::Make(DaoErrors::UnrecognizedFormat, DaoErrors::DatabaseSource,
                              "文字コード UTF8、LC_COLLATE と LC_CTYPE が C で、拡張 citext の"
                              "あるデータベースでなければなりません");
}

QString PostgresConnection::Translated(const QString &statement) const
{
    return ToPostgres(statement);
}

/// Asks while a statement runs whether it is to go on, and cancels it when not. A server that does
/// not even do that is given up: what waits for it then gets the error of a broken connection.
void PostgresConnection::AskWhetherToGoOn(PostgresCancel &cancel)
{
    if (!cancel.IsAsked() && m_goOn && !m_goOn())
        cancel.Ask(m_connection.get());
    if (cancel.IsOverdue())
        ::shutdown(PQsocket(m_connection.get()), SHUT_RDWR);
}

/// The next result of what was sent, waited for; null after the last.
PGresult *PostgresConnection::NextResult(PostgresCancel &cancel)
{
    constexpr int WaitMs = 20;
    const int mostSilenceMs = m_goOn ? -1 : m_mostSilenceMs; // who is asked has a way out
    QDeadlineTimer silence(mostSilenceMs);
    while (PQisBusy(m_connection.get())) {
        pollfd socket{PQsocket(m_connection.get()), POLLIN, 0};
        if (::poll(&socket, 1, WaitMs) > 0)
            silence.setRemainingTime(mostSilenceMs);
        AskWhetherToGoOn(cancel);
        m_isSilent |= silence.hasExpired();
        if (m_isSilent)
            ::shutdown(PQsocket(m_connection.get()), SHUT_RDWR);
        if (PQconsumeInput(m_connection.get()) == 0)
            break; // the result will tell
    }
    return PQgetResult(m_connection.get());
}

/// Sends statements and hands their results over. Returns the first error, number 0 without one.
/// Whatever happens, nothing is left unread.
DaoError PostgresConnection::Send(const QByteArray &sql, const OnResult &onResult, bool isRowByRow)
{
    constexpr int RowsPerCall = 64;
    m_isSilent = false;
    if (PQsendQuery(m_connection.get(), sql) == 0)
        return NetworkError(LostText);
    if (isRowByRow)
        PQsetSingleRowMode(m_connection.get());
    DaoError error;
    std::exception_ptr thrown;
    PostgresCancel cancel;
    int count = 0;
    while (const Result result{NextResult(cancel)}) {
        if (PQresultStatus(result.get()) == PGRES_COPY_IN)
            break; // PostgresLoader goes on from here
        if (++count % RowsPerCall == 0)
            AskWhetherToGoOn(cancel);
        if (error.number != 0 || thrown || cancel.IsAsked())
            continue;
        error = PostgresErrors::Of(result.get());
        try {
            if (error.number == 0)
                onResult(result.get());
        } catch (...) {
            thrown = std::current_exception();
        }
    }
    if (cancel.IsAsked() && !cancel.WaitUntilTaken())
        m_connection.reset();
    if (thrown)
        std::rethrow_exception(thrown);
    if (cancel.IsAsked())
        return DaoErrors::Make(DaoErrors::Cancelled, DaoErrors::DatabaseSource);
    if (PQstatus(m_connection.get()) == CONNECTION_BAD)
        return NetworkError(LostText);
    return error;
}

/// Runs statements as a part of the transaction when there is one.
void PostgresConnection::Run(const QString &sql, const OnResult &onResult, bool isRowByRow)
{
    // The library would take what stands before a NUL for the whole.
    if (sql.contains(QChar(0)))
        throw DaoErrors::Make(DaoErrors::SyntaxError, DaoErrors::DatabaseSource, sql);
    if (m_state == State::Ended)
        throw DaoErrors::Make(DaoErrors::InternalError, DaoErrors::DatabaseSource, EndedText);
    if (!m_connection)
        Connect();
    QByteArray text = sql.toUtf8();
    if (m_state == State::ToBegin) {
        text.prepend(BeginSql(m_isExclusive));
        m_state = State::Begun;
    }
    DaoError error = Send(text, onResult, isRowByRow);
    if (error.number != 0) {
        LookAtTransaction(error);
        throw error;
    }
}

/// After an error: what has become of the connection and of the transaction.
void PostgresConnection::LookAtTransaction(DaoError &error)
{
    if (m_state == State::Begun)
        m_state = State::Ended;
    if (PQstatus(m_connection.get()) == CONNECTION_OK)
        return;
    if (m_state == State::Ended)
        error = NetworkError(LostTransactionText);
    m_connection.reset();
}

/// What the operator is told of a connection that is lost, with the cause that is known.
DaoError PostgresConnection::NetworkError(const QString &what) const
{
    if (m_isSilent)
        return PostgresErrors::OfNetwork(what, SilentText);
    return PostgresErrors::OfNetwork(what, m_connection ? PQerrorMessage(m_connection.get()) : "");
}

void PostgresConnection::Read(const QString &sql, RowReceiver &rows)
{
    PostgresRows reader(rows);
    Run(
        sql, [&reader](PGresult *result) { reader.Take(result); }, true);
}

int PostgresConnection::Execute(const QString &sql)
{
    int affected = 0;
    const bool isIdWanted = m_state != State::None && m_transactionId.isEmpty();
    Run(isIdWanted ? sql + TransactionIdSql : sql, [&](PGresult *result) {
        const QByteArrayView tag(PQcmdStatus(result));
        if (tag.startsWith("INSERT") || tag.startsWith("UPDATE") || tag.startsWith("DELETE"))
            affected = QByteArray(PQcmdTuples(result)).toInt();
        if (isIdWanted && PQntuples(result) == 1)
            m_transactionId = PQgetvalue(result, 0, 0);
    });
    return affected;
}

void PostgresConnection::ExecuteScript(const QString &sql)
{
    Run(sql, PassOver);
}

void PostgresConnection::Begin(bool isExclusive)
{
    if (m_state != State::None)
        throw DaoErrors::Make(DaoErrors::SyntaxError, DaoErrors::DatabaseSource, "BEGIN");
    m_state = State::ToBegin;
    m_isExclusive = isExclusive;
    m_transactionId.clear();
}

void PostgresConnection::Commit()
{
    if (m_state == State::None)
        throw DaoErrors::Make(DaoErrors::SyntaxError, DaoErrors::DatabaseSource, "COMMIT");
    if (m_state == State::Ended)
        throw DaoErrors::Make(DaoErrors::InternalError, DaoErrors::DatabaseSource, EndedText);
    if (m_state == State::Begun) {
        // A transaction in which something has failed "commits" with the tag ROLLBACK.
        bool isCommitted = false;
        try {
            Run("COMMIT", [&](PGresult *result) {
                isCommitted = qstrcmp(PQcmdStatus(result), "COMMIT") == 0;
            });
        } catch (const DaoError &) {
            if (m_connection || m_transactionId.isEmpty() || !WasCommitted())
                throw;
            isCommitted = true;
        }
        if (!isCommitted) {
            m_state = State::Ended;
            throw DaoErrors::Make(DaoErrors::InternalError, DaoErrors::DatabaseSource, EndedText);
        }
    }
    m_state = State::None;
}

/// Asks the server for the transaction whose connection broke at its commit. Throws when there is
/// no answer.
bool PostgresConnection::WasCommitted()
{
    constexpr int MostWaitMs = 10'000;
    constexpr int PauseMs = 100;
    const State state = std::exchange(m_state, State::None);
    QString status;
    for (const QDeadlineTimer deadline(MostWaitMs); !deadline.hasExpired();
         QThread::msleep(PauseMs)) {
        try {
            status = FirstColumn("SELECT pg_xact_status('" + QString::fromLatin1(m_transactionId)
                                 + "'::xid8)")
                         .value(0);
            if (status != "in progress")
                break;
        } catch (const DaoError &) {
            // The server is perhaps starting.
        }
    }
    m_state = state;
    if (status != "committed" && status != "aborted")
        throw PostgresErrors::OfNetwork(UnknownText, "");
    return status == "committed";
}

void PostgresConnection::Rollback()
{
    const State state = std::exchange(m_state, State::None);
    if (state == State::None)
        throw DaoErrors::Make(DaoErrors::SyntaxError, DaoErrors::DatabaseSource, "ROLLBACK");
    if (m_connection && PQtransactionStatus(m_connection.get()) != PQTRANS_IDLE)
        Run("ROLLBACK", PassOver);
}
