#include "output/AnswerCreation.h"

#include "data/Tables.h"
#include "lines/ListLoading.h"
#include "messages/bMessage.h"
#include "output/AnswerFile.h"
#include "output/RecordLayout.h"
#include "platform/Log.h"
#include "platform/MsgBox.h"
#include "platform/RuntimeError.h"
#include "platform/System.h"
#include "util/VbText.h"

#include <QElapsedTimer>
#include <QThread>

namespace {

constexpr int IsWritten = 1;      ///< NokiInfKBN
constexpr int AnswerOutput = 3;   ///< AnsLimUmu
constexpr int OrdersByPayKey = 2; ///< CustKBN
constexpr auto NoDate = "99999999";
constexpr auto CreationText = "納期回答情報を作成しています…";

/// Over a slow network the customer's file is held nearly all the time: who waits for it looks
/// again and again, and gets his turn in a pause after such an order.
constexpr int SlowOrderMs = 100;
constexpr int TurnMs = 30;

/// The customer's composite setting: character 2 is the layout flag, 3 to 14 the customer-side
/// code.
bool HasShortLayout(const QString &settings)
{
    return settings.mid(1, 1) == "0";
}

QString CustomerSideCode(const QString &settings)
{
    return Trim(settings.mid(2, 12));
}

} // namespace

AnswerCreation::AnswerCreation(bDAO &db, const Files &files, LineList &list, RowSelection &selected,
                               const WriteStamp &stamp, ShowStatusText showStatus)
    : m_db(db)
    , m_files(files)
    , m_list(list)
    , m_selected(selected)
    , m_stamp(stamp)
    , m_showStatus(std::move(showStatus))
    , m_surprises(db, list, selected)
{
}

int AnswerCreation::MakeAnswers()
{
    const CheckResult check = RunPreOutputChecks(m_list, m_selected, m_showStatus);
    m_counts.participants = check.participants;
    if (check.isPassed && m_surprises.Confirm(m_showStatus)) {
        m_showStatus(RegistrationText);
        Registration registration(m_db, m_list, m_selected,
                                  [this](qint64 accNo, const LineList &stored) {
                                      return m_surprises.IsAsAgreed(accNo, stored);
                                  });
        const bool isRegistered = registration.RegisterAnswers(m_counts.registered, m_showStatus);
        m_leftOut = registration.LeftOut();
        m_isStopped = registration.IsStopped();
        if (isRegistered) {
            m_showStatus(CreationText);
            RunAnswerCreation();
            TellOfReplacedCharacters();
        } else {
            m_leftOut.Tell();
        }
    }
    m_selected = m_selected.Without(std::move(m_answeredRows));
    m_showStatus({});
    return check.failedRow;
}

bool AnswerCreation::RunAnswerCreation()
{
    if (m_db.HasTable(HistoryTable))
        m_trace = {UserName(), MachineName(), {}, {}, {}};
    const bool isDone = AnswerOrders();
    m_leftOut.Tell();
    if (isDone)
        ShowSummary();
    return isDone;
}

/// Answers the order of each selected row, until the operator stops it.
bool AnswerCreation::AnswerOrders()
{
    qint64 lastAccNo = 0;
    LongWork work(m_showStatus, CreationText, m_list.Count(), LongWork::Pieces::Long);
    for (int row = 1; row <= m_list.Count() && !m_isStopped; ++row) {
        const Line &line = m_list.At(row);
        m_isStopped = !work.Step();
        const qint64 accNo = line.Key().accNo;
        if (m_isStopped || line.IsShipped() || !m_selected.Contains(row) || accNo == lastAccNo)
            continue;
        lastAccNo = accNo;
        QElapsedTimer sinceStart;
        sinceStart.start();
        if (!AnswerOrder(row))
            return false;
        if (sinceStart.elapsed() > SlowOrderMs)
            QThread::msleep(TurnMs);
    }
    return true;
}

/// Answers the order of a row. False when it failed and the run is to end: the operator has been
/// told.
bool AnswerCreation::AnswerOrder(int row)
{
    const qint64 accNo = m_list.At(row).Key().accNo;
    bool written = false;
    const Outcome outcome
        = m_leftOut.Contains(accNo) ? Outcome::ChangedElsewhere : MakeOrderAnswer(row, written);
    if (outcome == Outcome::ChangedElsewhere) {
        m_leftOut.Add(m_db, m_list, accNo);
        return true;
    }
    if (outcome != Outcome::Answered) {
        if (written)
            LogAnswered(row, written, "マークできない回答");
        ShowMessage(Message::NotCreated);
        return false;
    }
    m_counts.records += written;
    ++m_ordersDone;
    LogAnswered(row, written, "回答");
    MarkRowsAnswered(accNo);
    return true;
}

void AnswerCreation::LogAnswered(int row, bool written, const char *what) const
{
    const Line &line = m_list.At(row);
    const QString record
        = written ? QString("レコード %1（区分 %2） %3")
                        .arg(m_record.recordNumber.ToText(), m_record.answerKind, m_answeredFile)
                  : QString("レコードなし");
    qCInfo(LogAnswer).noquote() << QString("%1 注文№ %2（AccNo %3） %4")
                                       .arg(what)
                                       .arg(line.OrderNo())
                                       .arg(line.Key().accNo)
                                       .arg(record);
}

/// One order, from its file's lock to the mark of its lines. The file comes first, so that nobody
/// waits for it while holding the database; what went wrong is told when both are free again.
AnswerCreation::Outcome AnswerCreation::MakeOrderAnswer(int row, bool &written)
{
    const Line &line = m_list.At(row);
    std::optional<QString> path = line.OutputPath();
    Outcome outcome = Outcome::PathChanged;
    // The customer's file may have been changed in the master since the list was loaded.
    for (int attempt = 0; attempt < 2 && outcome == Outcome::PathChanged; ++attempt) {
        const bDAO::BoxesKept kept(m_db); // told when the file is free again
        std::unique_ptr<AnswerFile> file;
        if (path) {
            file = std::make_unique<AnswerFile>(m_files, *path);
            if (!file->Open())
                return Outcome::DatabaseError; // told already
        }
        // Exclusive: a reader that keeps the commit waiting would leave a record without its mark.
        if (!m_db.BeginTrans(true)) {
            outcome = Outcome::NotMarked;
            break;
        }
        outcome = AnswerInTransaction(line, file.get(), path, written);
        if (outcome == Outcome::Answered && !m_db.CommitTrans())
            outcome = Outcome::NotMarked;
        if (outcome != Outcome::Answered)
            m_db.Rollback();
    }
    m_answeredFile = path.value_or(QString());
    TellWhy(outcome, m_answeredFile);
    return outcome;
}

AnswerCreation::Outcome AnswerCreation::AnswerInTransaction(const Line &line, AnswerFile *file,
                                                            std::optional<QString> &path,
                                                            bool &written)
{
    const qint64 accNo = line.Key().accNo;
    if (!ReadOrders(m_db, {accNo}, m_stored))
        return Outcome::DatabaseError;
    if (!m_surprises.IsAsAgreed(accNo, m_stored))
        return Outcome::ChangedElsewhere;
    const auto lines = m_db.OpenRS(BuildAnswerSelectSql(accNo, line.IsEdi()));
    if (!lines)
        return Outcome::DatabaseError;
    if (m_db.IsEOF(lines.get()))
        return Outcome::NoLines;
    const bool isFileKept = m_db.NullToZero(*lines, u"NokiInfKBN") == IsWritten;
    const auto storedPath
        = isFileKept ? std::optional(m_db.NullToTrim(*lines, u"NokiInfPath")) : std::nullopt;
    if (storedPath != path) {
        path = storedPath;
        return Outcome::PathChanged;
    }
    ClearAnswerRecord(m_record);
    m_record.answerKind = AnswerKind(*lines);
    QByteArray record;
    if (file) {
        const QString settings = m_db.NullToRTrim(*lines, u"HenpVerPath");
        Outcome outcome = FillRecord(*lines, line.IsEdi());
        if (outcome == Outcome::Answered)
            outcome = PackRecord(*file, settings, record);
        if (outcome != Outcome::Answered)
            return outcome;
    }
    // Before the record goes out: who may not write to the history, or can't, sends none.
    if (!KeepInHistory(accNo, path))
        return Outcome::NotMarked;
    if (file) {
        m_fileError = file->AppendLine(record);
        if (m_fileError != RuntimeError::None)
            return Outcome::FileError; // a record that can't be written leaves the order unanswered
        if (!m_isRecordComplete)
            m_incompleteOrders += line.OrderNo();
        written = true;
    }
    return MarkAnswered(accNo);
}

/// "2" for an order of which a line has been answered before. The first line is current again.
QString AnswerCreation::AnswerKind(Recordset &lines)
{
    bool isAnsweredBefore = false;
    for (; !m_db.IsEOF(&lines); m_db.MoveNext(lines))
        isAnsweredBefore |= m_db.NullToZero(lines, u"AnsLimUmu") == AnswerOutput;
    m_db.MoveFirst(lines);
    return isAnsweredBefore ? "2" : "1";
}

AnswerCreation::Outcome AnswerCreation::FillRecord(Recordset &lines, bool isEdi)
{
    const auto text = [&](QStringView column) { return m_db.NullToRTrim(lines, column); };
    const auto exact = [&](QStringView column) { return lines.Text(lines.FieldIndex(column)); };
    const auto quantity
        = [&](QStringView column) { return Decimal::FromDouble(m_db.NullToZero(lines, column)); };
    m_record.infoKind = AnswerInfoKind;
    m_record.processingDate = m_stamp.date;
    m_record.vanCode = text(u"VanCD");
    m_record.customerSideCode = CustomerSideCode(text(u"HenpVerPath"));
    m_record.customerSectionCode = text(u"CustSecCD");
    m_record.orderNo
        = m_db.NullToZero(lines, u"CustKBN") == OrdersByPayKey ? text(u"PayKeyNo") : text(u"OdrNo");
    m_record.makerNo = text(u"MfactNo");
    m_record.unit = text(u"Unit");
    m_record.orderQuantity = quantity(u"AccVal");
    m_record.customerProductCode = text(u"AccHinCD");
    m_record.ownProductCode = text(u"HinCD");
    m_record.customerSectionName = text(u"CustSecName");
    if (isEdi) {
        m_record.deliveryKind = text(u"CockKBN");
        m_record.buyer = text(u"KobaiTanto");
    }
    m_record.reserve2 = ToWideText({}, 14);
    m_record.reserve3 = ToWideText({}, 60);
    m_record.reserve4 = ToWideText({}, 40);

    for (size_t slot = 0; !m_db.IsEOF(&lines); ++slot, m_db.MoveNext(lines)) {
        if (slot == m_record.lines.size())
            return Outcome::TooManyLines;
        const QString answeredDate = exact(u"AnsLimDate");
        m_record.lines[slot] = {exact(u"LimDate"), exact(u"PayNo"),
                                Trim(answeredDate).isEmpty() ? NoDate : answeredDate,
                                quantity(u"AnsVal"), exact(u"AnsMark")};
    }
    return Outcome::Answered;
}

/// The record as it goes to the end of the file, numbered.
AnswerCreation::Outcome AnswerCreation::PackRecord(AnswerFile &file, const QString &layoutSettings,
                                                   QByteArray &record)
{
    const int length = HasShortLayout(layoutSettings) ? ShortRecordLength : LongRecordLength;
    m_fileError = file.Mend();
    if (m_fileError != RuntimeError::None)
        return Outcome::FileError;
    m_record.recordNumber = Decimal(file.LastRecordNumber(length) + 1);
    m_isRecordComplete = PackAnswerRecord(m_record, m_buffer);
    record = BlankLineBreaks(QByteArray(m_buffer.data(), length), {});
    return Outcome::Answered;
}

/// Every line that is answered has its row, marked or not. `path` is of the file that the record
/// was written to; nothing: there is none.
bool AnswerCreation::KeepInHistory(qint64 accNo, const std::optional<QString> &path)
{
    if (!m_trace)
        return true;
    constexpr int NumberLength = RecordFields::Head[0].length;
    m_trace->answerKind = m_record.answerKind;
    m_trace->recordNumber = path ? QString::fromLatin1(m_buffer.data(), NumberLength) : QString();
    m_trace->path = path.value_or(QString());
    return m_db.DBExecute(BuildHistorySql(accNo, *m_trace, WriteStamp::Now()));
}

/// Where all lines that the record holds are on their way already, none is to be marked.
AnswerCreation::Outcome AnswerCreation::MarkAnswered(qint64 accNo)
{
    bool isAnyToMark = false;
    for (int row = 1; row <= m_stored.Count(); ++row) {
        const Line &line = m_stored.At(row);
        isAnyToMark |= line.MayBeMarked() && line.IsAnswerable(line.Stored());
    }
    return !isAnyToMark || m_db.DBExecute(BuildMarkAnsweredSql(accNo, m_stamp))
               ? Outcome::Answered
               : Outcome::NotMarked;
}

void AnswerCreation::TellWhy(Outcome outcome, const QString &path) const
{
    constexpr int Error = RuntimeError::SubscriptOutOfRange;
    switch (outcome) {
    case Outcome::NoLines:
        ShowMessage(Message::NoData);
        break;
    case Outcome::TooManyLines:
        MsgBox(QString("実行時エラー '%1':\r\r%2").arg(Error).arg(RuntimeError::Description(Error)),
               BoxStyle::Critical, ProgramId);
        break;
    case Outcome::FileError:
        ShowFileError(m_fileError, path);
        break;
    case Outcome::NotMarked:
        ShowMessage(Message::NotUpdated);
        break;
    default:
        break; // told elsewhere
    }
}

/// The rows of an answered order, by what its transaction has read: the record and the marks are of
/// that.
void AnswerCreation::MarkRowsAnswered(qint64 accNo)
{
    for (const int row : m_list.RowsOfOrder(accNo)) {
        Line &line = m_list.At(row);
        m_answeredRows.push_back(row);
        const int read = m_stored.RowOf(line.Key());
        if (read == 0 || !m_stored.At(read).MayBeAnswered()
            || !m_stored.At(read).IsAnswerable(m_stored.At(read).Stored()))
            continue;
        line.Answered();
        m_counts.lines += line.MayBeMarked();
    }
}

void AnswerCreation::ShowSummary() const
{
    const auto line = [](const char *label, int count) {
        return QString("%1\t\t： %2 件\r").arg(label).arg(count);
    };
    const QString text = QString("納期回答作成処理が終了しました\r\r")
                         + line("追加された件数", m_counts.registered.added)
                         + line("変更された件数", m_counts.registered.changed)
                         + line("行を選択された件数", m_counts.participants)
                         + line("納期回答処理件数", m_counts.lines)
                         + "―――――――――――――――――――――――――――――\r"
                         + line("納期回答情報作成件数", m_counts.records)
                         + "\r＜補足説明＞\r"
                           "行を選択された件数、納期回答処理件数、納期回答情報作成件数は\r"
                           "得意先ごとの設定により、件数が異なることがあります"
                         + SummaryNotes();
    MsgBox(text, BoxStyle::Information, "納期回答入力");
}

/// What the run left undone; empty when nothing.
QString AnswerCreation::SummaryNotes() const
{
    QString notes;
    if (m_isStopped)
        notes += QString("\r\rEsc で中断しました。%1 件の注文を回答し、残りは回答していません")
                     .arg(m_ordersDone);
    if (m_leftOut.Count() > 0)
        notes += QString("\r\rほかの人が変更したため、%1 件の注文を回答していません\r%2")
                     .arg(m_leftOut.Count())
                     .arg(m_leftOut.Text());
    return notes;
}

void AnswerCreation::TellOfReplacedCharacters() const
{
    constexpr int MostNamed = 10;
    if (m_incompleteOrders.isEmpty())
        return;
    const qsizetype others = m_incompleteOrders.size() - MostNamed;
    MsgBox("シフトJISにない文字を、納期回答情報に「?」で出力しました。\r\r注文№ "
               + m_incompleteOrders.mid(0, MostNamed).join("\r注文№ ")
               + (others > 0 ? QString("\rほか %1 件").arg(others) : QString()),
           BoxStyle::Exclamation, "注意");
}
