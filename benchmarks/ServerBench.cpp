#include "Benches.h"

#include "data/dao/Dialect.h"
#include "data/dao/postgres/OpenPostgres.h"
#include "lines/AnswerDates.h"
#include "lines/ListLoading.h"
#include "lines/Registration.h"
#include "output/AnswerCreation.h"
#include "output/AnswerRecord.h"
#include "output/AnswerSql.h"
#include "platform/MsgBox.h"
#include "support/ServerProxy.h"
#include "tldb/Commands.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <unistd.h>

#ifdef HAVE_LIBPQ
#include <libpq-fe.h>

namespace {

QString Server()
{
    return qEnvironmentVariable("TEST_SERVER");
}

/// Demo data moved to the server, in a schema of its own.
class ServerDatabase
{
public:
    ServerDatabase(const BenchDatabase &source, const QString &schema)
        : m_settings(Server() + " options='-c search_path=" + schema + ",public'")
        , m_folder(source.Folder() + "-server")
    {
        OpenPostgres(Server(), ServerAccess::ReadWrite)->ExecuteScript("CREATE SCHEMA " + schema);
        const QString moved = source.Folder() + "/TLDB0010-SERVER.MDB";
        QFile::remove(moved);
        QTextStream out(stderr);
        if (RunTool({"move", source.Folder(), "--server", m_settings}, out, out) != ExitCode::Ok)
            throw std::runtime_error("the demo data can't be moved to the server");
        QDir(m_folder).removeRecursively();
        QDir().mkpath(m_folder);
        QFile::rename(moved, m_folder + "/TLDB0010.MDB");
        QFile::copy(source.Folder() + "/TALVEN.INI", m_folder + "/TALVEN.INI");
    }

    const QString &Settings() const { return m_settings; }
    const QString &Folder() const { return m_folder; }

    void Open(ProgramState &state) const { BenchDatabase::Open(m_folder, state); }

private:
    QString m_settings;
    QString m_folder;
};

/// The library and nothing else.
class BareConnection
{
public:
    explicit BareConnection(const QString &settings)
        : m_connection(PQconnectdb(settings.toUtf8()))
    {
        PQsetNoticeReceiver(
            m_connection, [](void *, const PGresult *) {}, nullptr);
    }
    ~BareConnection() { PQfinish(m_connection); }
    Q_DISABLE_COPY(BareConnection)

    void Run(const QString &sql)
    {
        PGresult *const result = PQexec(m_connection, sql.toUtf8());
        const bool isDone = PQresultStatus(result) != PGRES_FATAL_ERROR;
        PQclear(result);
        if (!isDone)
            throw std::runtime_error(PQerrorMessage(m_connection));
    }

    /// Every row taken from the network as it comes, each text copied once.
    size_t CopyTexts(const QString &sql)
    {
        std::vector<char> texts;
        PQsendQuery(m_connection, ToPostgres(sql).toUtf8());
        PQsetSingleRowMode(m_connection);
        while (PGresult *const result = PQgetResult(m_connection)) {
            for (int row = 0; row < PQntuples(result); ++row)
                for (int column = 0; column < PQnfields(result); ++column) {
                    const char *text = PQgetvalue(result, row, column);
                    texts.insert(texts.end(), text, text + PQgetlength(result, row, column));
                }
            PQclear(result);
        }
        return texts.size();
    }

private:
    PGconn *m_connection;
};

int Load(bDAO &db, int lines, LineList &list, const ShowStatusText &showStatus = {})
{
    const int count = LoadList(db, BenchDatabase::CustomerOf(lines), list, showStatus).lineCount;
    if (count != lines)
        throw std::runtime_error("the list has another number of lines");
    return count;
}

void BenchServerLoad(const Sizes &sizes, bDAO &db, const QString &settings,
                     std::vector<Measurement> &results)
{
    BareConnection bare(settings);
    LineList list;
    const QString sql = BuildListSql(BenchDatabase::CustomerOf(sizes.list));
    results.push_back(CompareTimes(
        QString("list load, %L1 lines of %L2").arg(sizes.list).arg(sizes.database), 1.5,
        {.prepare = [&] { list.Clear(); },
         .run = [&] { Load(db, sizes.list, list); },
         .clean = [&] { list.Clear(); }},
        {.run = [&] { bare.CopyTexts(sql); }}));

    const double before = AllocatedBytes();
    double highest = before;
    Load(db, sizes.list, list,
         [&](const QString &) { highest = std::max(highest, AllocatedBytes()); });
    results.push_back({"most memory while loading, against that of the list", "B",
                       std::max(highest, AllocatedBytes()) - before, AllocatedBytes() - before,
                       1.1});
}

void BenchServerSearch(const Sizes &sizes, bDAO &db, std::vector<Measurement> &results)
{
    const ServerDatabase small(BenchDatabase(sizes.folder, sizes.smallDatabase, {sizes.search}),
                               "small");
    ProgramState state;
    small.Open(state);
    LineList list;
    results.push_back(CompareTimes(QString("search for %L1 lines in %L2 against in %L3")
                                       .arg(sizes.search)
                                       .arg(sizes.database)
                                       .arg(sizes.smallDatabase),
                                   1.3, {.run = [&] { Load(db, sizes.search, list); }},
                                   {.run = [&] { Load(state.db, sizes.search, list); }}));
}

/// Esc while the server looks for lines and while they come.
void BenchEscape(bDAO &db, std::vector<Measurement> &results)
{
    double worst = 0;
    for (const char *sql : {"SELECT pg_sleep(60)",
                            "SELECT repeat('x', 200) AS T FROM generate_series(1, 100000000)"}) {
        QElapsedTimer sinceStart;
        QElapsedTimer sinceEscape;
        sinceStart.start();
        db.SetProgress([&] {
            if (sinceStart.elapsed() < 1'000)
                return true;
            sinceEscape.start();
            return false;
        });
        db.OpenRS(sql);
        worst = std::max(worst, double(sinceEscape.nsecsElapsed()) / 1e6);
        db.SetProgress({});
    }
    results.push_back({"Esc in a statement that runs on", "ms", worst, 300, 1});
}

/// The orders of a customer, over and over registered and answered.
class ServerOrders
{
public:
    ServerOrders(bDAO &db, const Files &files, const QString &settings, int customer, int orders)
        : m_db(db)
        , m_files(files)
        , m_bare(settings)
        , m_customer(customer)
        , m_orders(orders)
    {
    }

    Measurement Registering(const QString &where, int rounds)
    {
        return CompareTimes(
            QString("registration of %L1 changed orders").arg(m_orders) + where, 1.3,
            {.prepare = [this] { LoadAndSetDates(); },
             .run =
                 [this] {
                     const RowSelection all = Everything();
                     const Surprises surprises(m_db, m_list, all);
                     RegistrationCounts counts;
                     Registration(m_db, m_list, all, [&](qint64 accNo, const LineList &stored) {
                         return surprises.IsAsAgreed(accNo, stored);
                     }).RegisterAnswers(counts);
                     if (counts.changed != m_orders)
                         throw std::runtime_error("not every order was registered");
                 }},
            {.prepare = [this] { LoadAndSetDates(); }, .run = [this] { RegisterBare(); }}, rounds);
    }

    Measurement Creating(const QString &where, int rounds)
    {
        const QByteArray path = QDir::temp().filePath("bare-answers.txt").toUtf8();
        SetMsgBoxHandler([](const MessageBoxRequest &) { return BoxButton::Yes; });
        const Measurement measured = CompareTimes(
            QString("creation of %L1 orders, records and marks").arg(m_orders) + where, 1.3,
            {.prepare =
                 [this] {
                     LoadAndSetDates();
                     RegisterBare();
                     LoadList(m_db, BenchDatabase::CustomerOf(m_customer), m_list);
                 },
             .run =
                 [this] {
                     RowSelection all = Everything();
                     AnswerCreation creation(m_db, m_files, m_list, all, WriteStamp::Now(),
                                             [](const QString &) {});
                     creation.RunAnswerCreation();
                     if (creation.Count().records != m_orders)
                         throw std::runtime_error("not every order got its record");
                 }},
            {.prepare = [this] { LoadAndSetDates(); }, .run = [&] { CreateBare(path); }}, rounds);
        SetMsgBoxHandler({});
        QFile::remove(path);
        return measured;
    }

private:
    RowSelection Everything() const { return RowSelection({{1, m_orders}}); }

    void LoadAndSetDates()
    {
        m_bare.Run("UPDATE TLSP0010 SET AnsLimDate = '', AnsLimUmu = 0 WHERE CustCD = '"
                   + BenchDatabase::CustomerOf(m_customer).customerCode + "'");
        Load(m_db, m_customer, m_list);
        if (m_list.Count() < m_orders)
            throw std::runtime_error("the data have fewer orders than are to be answered");
        LineEdits edits(m_list);
        SetAnswerDates(edits, Everything(), "20270115");
    }

    QString BeginBare(qint64 accNo) const
    {
        return "BEGIN ISOLATION LEVEL REPEATABLE READ;"
               "LOCK TABLE TLSP0010 IN SHARE ROW EXCLUSIVE MODE;"
               + ToPostgres(BuildOrdersSql({accNo}));
    }

    void RegisterBare()
    {
        for (int row = 1; row <= m_orders; ++row) {
            const LineKey &key = m_list.At(row).Key();
            m_bare.Run(BeginBare(key.accNo));
            m_bare.Run(BuildLineSql(key));
            m_bare.Run("SELECT PAYNEEDDAYS FROM TLMT0040,TLMT0050 WHERE TLMT0040.CUSTCD = '"
                       + BenchDatabase::CustomerOf(m_customer).customerCode
                       + "' AND TLMT0050.CUSTCOCD = left(TLMT0040.VANCD,6)::citext"
                         " AND TLMT0050.PAYDSTCD = '1' AND TLMT0040.DPOFLG = 0"
                         " AND TLMT0050.DPOFLG = 0");
            m_bare.Run(BuildUpdateSql(
                key, {"20270115", "20270113", "20270115", m_list.At(row).Now().quantity, "2"},
                WriteStamp::Now()));
            m_bare.Run("COMMIT");
        }
    }

    void CreateBare(const QByteArray &path)
    {
        const QByteArray line = QByteArray(LongRecordLength, 'x') + "\r\n";
        for (int row = 1; row <= m_orders; ++row) {
            const qint64 accNo = m_list.At(row).Key().accNo;
            m_bare.Run(BeginBare(accNo));
            m_bare.Run(ToPostgres(BuildAnswerSelectSql(accNo, false)));
            const int file = ::open(path.constData(), O_RDWR | O_CREAT | O_APPEND, 0666);
            if (::write(file, line.constData(), size_t(line.size())) != line.size())
                throw std::runtime_error("the disk is full");
            ::fdatasync(file);
            ::close(file);
            m_bare.Run(ToPostgres(BuildHistorySql(accNo, {}, WriteStamp::Now())));
            m_bare.Run(ToPostgres(BuildMarkAnsweredSql(accNo, WriteStamp::Now())));
            m_bare.Run("COMMIT");
        }
    }

    bDAO &m_db;
    const Files &m_files;
    BareConnection m_bare;
    const int m_customer; ///< by his number of lines
    const int m_orders;
    LineList m_list;
};

/// The same over a network on which every statement takes 10 ms.
void BenchFarServer(const Sizes &sizes, const ServerDatabase &database,
                    std::vector<Measurement> &results)
{
    ServerProxy proxy(database.Settings());
    const QString folder = database.Folder() + "-far";
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    QFile::copy(database.Folder() + "/TALVEN.INI", folder + "/TALVEN.INI");
    QFile file(folder + "/TLDB0010.MDB");
    if (!file.open(QIODevice::WriteOnly)
        || file.write("TLDB0010 on a PostgreSQL server\n" + proxy.Settings().toUtf8()) < 0)
        throw std::runtime_error("no folder for the far server");
    file.close();
    ProgramState state;
    BenchDatabase::Open(folder, state);
    proxy.SetRoundTrip(std::chrono::milliseconds(10));
    ServerOrders orders(state.db, state.files, proxy.Settings(), sizes.orders, sizes.farOrders);
    results.push_back(orders.Registering(", 10 ms away", 1));
    results.push_back(orders.Creating(", 10 ms away", 1));
}

} // namespace

void BenchServer(const Sizes &sizes, std::vector<Measurement> &results)
{
    if (Server().isEmpty())
        return;
    const ServerDatabase large(LargeDatabase(sizes), "large");
    ProgramState state;
    large.Open(state);
    BenchServerLoad(sizes, state.db, large.Settings(), results);
    BenchServerSearch(sizes, state.db, results);
    BenchEscape(state.db, results);
    ServerOrders orders(state.db, state.files, large.Settings(), sizes.orders, sizes.orders);
    results.push_back(orders.Registering("", 5));
    results.push_back(orders.Creating("", 5));
    BenchFarServer(sizes, large, results);
}

#else

void BenchServer(const Sizes &, std::vector<Measurement> &) {}

#endif
