#include "Benches.h"

#include "data/Tables.h"
#include "data/dao/Database.h"
#include "data/dao/sqlite/SqliteConnection.h"
#include "lines/AnswerDates.h"
#include "lines/ListLoading.h"
#include "lines/Registration.h"
#include "output/AnswerCreation.h"
#include "output/AnswerRecord.h"
#include "platform/MsgBox.h"
#include "platform/ShiftJis.h"

#include <QFile>
#include <cstring>
#include <fcntl.h>
#include <sqlite3.h>
#include <stdexcept>
#include <unistd.h>

namespace {

/// A disk is now faster, now slower, for seconds on end.
constexpr int DiskRounds = 5;

/// The orders of a list, each once, as the program comes to them.
std::vector<qint64> OrdersOf(const LineList &list)
{
    std::vector<qint64> orders;
    for (int row = 1; row <= list.Count(); ++row)
        if (const qint64 accNo = list.At(row).Key().accNo; orders.empty() || orders.back() != accNo)
            orders.push_back(accNo);
    return orders;
}

sqlite3 *HandleOf(Database &database)
{
    return static_cast<SqliteConnection &>(database.Engine()).Handle();
}

/// Prepared statements and one commit per order; `before` runs ahead of each.
void ChangeEach(
    Database &database, const std::vector<qint64> &orders,
    std::initializer_list<const char *> statements, const std::function<void()> &before = [] {})
{
    std::vector<sqlite3_stmt *> prepared;
    for (const char *sql : statements)
        sqlite3_prepare_v2(HandleOf(database), sql, -1, &prepared.emplace_back(), nullptr);
    for (const qint64 accNo : orders) {
        before();
        database.ExecuteNative("BEGIN IMMEDIATE");
        for (sqlite3_stmt *statement : prepared) {
            sqlite3_bind_int64(statement, 1, accNo);
            if (sqlite3_step(statement) != SQLITE_DONE)
                throw std::runtime_error(sqlite3_errmsg(HandleOf(database)));
            sqlite3_reset(statement);
        }
        database.ExecuteNative("COMMIT");
    }
    for (sqlite3_stmt *statement : prepared)
        sqlite3_finalize(statement);
}

/// Adds one long record to the file as the program must: open, append, onto the disk, close.
void AppendRecord(const QByteArray &path, const QByteArray &line)
{
    const int file = ::open(path.constData(), O_RDWR | O_CREAT | O_APPEND, 0666);
    const bool isWritten = ::write(file, line.constData(), size_t(line.size())) == line.size();
    ::fdatasync(file);
    ::close(file);
    if (!isWritten)
        throw std::runtime_error("the disk is full");
}

class OutputRun
{
public:
    explicit OutputRun(const Sizes &sizes)
        : m_sizes(sizes)
        , m_large(LargeDatabase(sizes))
        , m_bare(m_large.Folder() + "/TLDB0010.MDB", false, ConnectText)
        , m_customer(BenchDatabase::CustomerOf(sizes.orders).customerCode)
    {
        m_large.Open(m_state);
        LoadAndSetDates();
        m_orders = OrdersOf(m_list);
    }

    void Registering(std::vector<Measurement> &results)
    {
        results.push_back(CompareTimes(
            QString("registration of %L1 changed orders").arg(m_orders.size()), 1.3,
            {.prepare = [this] { LoadAndSetDates(); },
             .run =
                 [this] {
                     const RowSelection everything = Everything();
                     const Surprises surprises(m_state.db, m_list, everything);
                     RegistrationCounts counts;
                     Registration(m_state.db, m_list, everything,
                                  [&](qint64 accNo, const LineList &stored) {
                                      return surprises.IsAsAgreed(accNo, stored);
                                  })
                         .RegisterAnswers(counts);
                 }},
            {.prepare = [this] { LoadAndSetDates(); },
             .run =
                 [this] {
                     ChangeEach(
                         m_bare, m_orders,
                         {"UPDATE TLSP0010 SET AnsLimDate = '20270115', ShpDate = '20270113',"
                          " ArvExpDate = '20270115', AnsVal = 10, AnsMark = '2',"
                          " UpdPGName = 'TL030101', UpdDate = '20260101', UpdTime = '090000'"
                          " WHERE AccNo = ?"});
                 }},
            DiskRounds));
    }

    void Creating(std::vector<Measurement> &results)
    {
        const QByteArray path = QFile::encodeName(m_large.Folder() + "/bare-answers.txt");
        const QByteArray line = QByteArray(LongRecordLength, 'x') + "\r\n";
        SetMsgBoxHandler([](const MessageBoxRequest &) { return BoxButton::Yes; });
        results.push_back(CompareTimes(
            QString("creation of %L1 orders, questions, records, marks and history")
                .arg(m_orders.size()),
            1.5,
            {.prepare = [this] { LoadAndRegister(); },
             .run =
                 [this] {
                     RowSelection selected = Everything();
                     AnswerCreation creation(m_state.db, m_state.files, m_list, selected,
                                             WriteStamp::Now(), [](const QString &) {});
                     if (!Surprises(m_state.db, m_list, selected).Confirm())
                         throw std::runtime_error("the questions went wrong");
                     creation.RunAnswerCreation();
                     if (creation.Count().records != int(m_orders.size()))
                         throw std::runtime_error("not every order got its record");
                 }},
            {.prepare = [this] { LoadAndRegister(); },
             .run =
                 [&] {
                     ChangeEach(m_bare, m_orders,
                                {"INSERT INTO TLAH0010 VALUES (?, 1, 1, 1, 'CUSTOMER',"
                                 " '2609-00010093', '00373441', '20270115', '20270115', 10, '2',"
                                 " '1', '00001', 'C:\\EDI\\OUT\\CUSTOMER\\ANS.TXT', 'user',"
                                 " 'machine', 0, 'TL030101', '20260101', '090000')",
                                 "UPDATE TLSP0010 SET AnsLimUmu = 3, UpdPGName = 'TL030101',"
                                 " UpdDate = '20260101', UpdTime = '090000' WHERE AccNo = ?"},
                                [&] { AppendRecord(path, line); });
                 }},
            DiskRounds));
        SetMsgBoxHandler({});
    }

private:
    /// Loads the customer's lines and gives each another date than it has.
    void LoadAndSetDates()
    {
        m_bare.ExecuteNative(QString("DELETE FROM ") + HistoryTable);
        m_bare.ExecuteNative("UPDATE TLSP0010 SET AnsLimDate = '', AnsLimUmu = 0 WHERE CustCD = '"
                             + m_customer + "'");
        LoadList(m_state.db, BenchDatabase::CustomerOf(m_sizes.orders), m_list);
        LineEdits edits(m_list);
        SetAnswerDates(edits, Everything(), "20270115");
    }

    RowSelection Everything() const { return RowSelection({{1, m_list.Count()}}); }

    /// What a creation begins with.
    void LoadAndRegister()
    {
        LoadAndSetDates();
        RegistrationCounts counts;
        Registration(m_state.db, m_list, Everything()).RegisterAnswers(counts);
    }

    const Sizes &m_sizes;
    BenchDatabase m_large;
    Database m_bare;
    QString m_customer;
    std::vector<qint64> m_orders;
    ProgramState m_state;
    LineList m_list;
};

/// A record as it comes from the demo data, all its slots filled.
AnswerRecord FullRecord()
{
    AnswerRecord record;
    record.recordNumber = 1;
    record.infoKind = "0702";
    record.processingDate = "20260528";
    record.vanCode = "V00001748878";
    record.customerSideCode = "SUP1201";
    record.customerSectionCode = "1100";
    record.orderNo = "2609-00010093";
    record.makerNo = "S2609-0223";
    record.answerKind = "1";
    record.unit = "個";
    record.orderQuantity = 360;
    record.buyer = "宇佐木";
    record.customerProductCode = "BT-00007";
    record.ownProductCode = "A100143";
    record.customerSectionName = "資材部購買一課";
    for (AnswerSlot &slot : record.lines)
        slot = {"20260610", "00373441", "20260612", Decimal::FromText(u"12.5"), "2"};
    record.reserve2 = ToWideText({}, 14);
    record.reserve3 = ToWideText({}, 60);
    record.reserve4 = ToWideText({}, 40);
    return record;
}

void BenchPacking(std::vector<Measurement> &results)
{
    constexpr int Times = 10'000;
    const AnswerRecord record = FullRecord();
    AnswerBuffer buffer = {};
    PackAnswerRecord(record, buffer);
    const QString texts = FromShiftJis(QByteArrayView(buffer.data(), qsizetype(buffer.size())));
    size_t sink = 0;
    results.push_back(CompareTimes(QString("packing %L1 records").arg(Times), 3,
                                   {.run =
                                        [&] {
                                            for (int time = 0; time < Times; ++time) {
                                                PackAnswerRecord(record, buffer);
                                                sink += size_t(buffer[100]);
                                            }
                                        }},
                                   {.run = [&] {
                                       AnswerBuffer copy;
                                       for (int time = 0; time < Times; ++time) {
                                           const QByteArray bytes = ToShiftJis(texts);
                                           std::memcpy(copy.data(), bytes.data(), copy.size());
                                           sink += size_t(copy[100]);
                                       }
                                   }}));
}

} // namespace

void BenchOutput(const Sizes &sizes, std::vector<Measurement> &results)
{
    BenchPacking(results);
    OutputRun run(sizes);
    run.Registering(results);
    run.Creating(results);
}
