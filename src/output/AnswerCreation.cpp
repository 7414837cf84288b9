#include "output/AnswerCreation.h"

#include "answerlist/AnswerList.h"
#include "messages/bMessage.h"
#include "output/AnswerFile.h"
#include "output/AnswerSql.h"
#include "platform/MsgBox.h"
#include "platform/RuntimeError.h"
#include "util/VbText.h"

namespace {

constexpr int IsWritten = 1;      ///< NokiInfKBN
constexpr int AnswerOutput = 3;   ///< AnsLimUmu
constexpr int OrdersByPayKey = 2; ///< CustKBN
constexpr auto NoDate = "99999999";
constexpr auto CreationText = "納期回答情報を作成しています…";

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

AnswerCreation::AnswerCreation(bDAO &db, const Files &files, AnswerList &list,
                               const WriteStamp &stamp, ShowStatusText showStatus)
    : m_db(db)
    , m_files(files)
    , m_list(list)
    , m_stamp(stamp)
    , m_showStatus(std::move(showStatus))
{
}

void AnswerCreation::MakeAnswers()
{
    m_counts = {};
    if (RunPreOutputChecks(m_list, m_showStatus, m_counts.participants)) {
        m_list.SetRedraw(false);
        m_showStatus(RegistrationText);
        if (Registration(m_db, m_list).RegisterAnswers(m_counts.registered, m_showStatus)) {
            m_showStatus(CreationText);
            RunAnswerCreation();
            TellOfReplacedCharacters();
        }
        m_list.SetRedraw(true);
    }
    m_showStatus({});
}

bool AnswerCreation::RunAnswerCreation()
{
    qint64 lastAccNo = 0;
    LongWork work(m_showStatus, CreationText, m_list.RowCount());
    for (int row = 1; row <= m_list.RowCount(); ++row) {
        work.Step();
        const ListRow line = m_list.Row(row);
        const bool isAnswered = !line.IsShipped() && line.View(ListColumn::Skipped).isEmpty()
                                && m_list.IsSelected(row) && line.AccNo() != lastAccNo;
        if (!isAnswered)
            continue;
        lastAccNo = line.AccNo();
        bool ok = false;
        bool written = false;
        MakeOrderAnswer(line, ok, written);
        if (!ok) {
            ShowMessage(Message::NotCreated);
            return false;
        }
        m_counts.records += written;
        MarkRowsAnswered(lastAccNo);
    }
    ShowSummary();
    return true;
}

void AnswerCreation::MakeOrderAnswer(const ListRow &row, bool &ok, bool &written)
{
    ok = false;
    written = false;
    const auto lines = m_db.OpenRS(BuildAnswerSelectSql(row.AccNo(), row.IsEdi()));
    if (!lines)
        return;
    if (m_db.IsEOF(lines.get())) {
        ShowMessage(Message::NoData);
        return;
    }
    const QString settings = m_db.NullToRTrim(*lines, u"HenpVerPath");
    const QString path = m_db.NullToTrim(*lines, u"NokiInfPath");
    if (m_db.NullToZero(*lines, u"NokiInfKBN") == IsWritten) {
        // A record that can't be written leaves the order unanswered.
        if (!FillRecord(*lines, row) || !WriteRecord(path, settings, row.OrderNo()))
            return;
        written = true;
    }
    ok = MarkAnswered(row.AccNo());
}

bool AnswerCreation::FillRecord(Recordset &lines, const ListRow &row)
{
    const auto text = [&](QStringView column) { return m_db.NullToRTrim(lines, column); };
    const auto quantity
        = [&](QStringView column) { return Decimal::FromDouble(m_db.NullToZero(lines, column)); };
    const auto stored = [&](QStringView column) { return lines.Text(lines.FieldIndex(column)); };
    ClearAnswerRecord(m_record);
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
    if (row.IsEdi()) {
        m_record.deliveryKind = text(u"CockKBN");
        m_record.buyer = text(u"KobaiTanto");
    }
    m_record.reserve2 = ToWideText({}, 14);
    m_record.reserve3 = ToWideText({}, 60);
    m_record.reserve4 = ToWideText({}, 40);

    m_record.answerKind = "1";
    for (size_t slot = 0; !m_db.IsEOF(&lines); ++slot, m_db.MoveNext(lines)) {
        if (slot == m_record.lines.size()) {
            const int error = RuntimeError::SubscriptOutOfRange;
            MsgBox(QString("実行時エラー '%1':\r\r%2")
                       .arg(error)
                       .arg(RuntimeError::Description(error)),
                   BoxStyle::Critical, ProgramId);
            return false;
        }
        const QString answeredDate = stored(u"AnsLimDate");
        m_record.lines[slot] = {stored(u"LimDate"), stored(u"PayNo"),
                                Trim(answeredDate).isEmpty() ? NoDate : answeredDate,
                                quantity(u"AnsVal"), stored(u"AnsMark")};
        if (m_db.NullToZero(lines, u"AnsLimUmu") == AnswerOutput)
            m_record.answerKind = "2";
    }
    return true;
}

bool AnswerCreation::WriteRecord(const QString &path, const QString &layoutSettings,
                                 const QString &orderNo)
{
    const int length = HasShortLayout(layoutSettings) ? ShortRecordLength : LongRecordLength;
    AnswerFile file(m_files, path);
    if (!file.Open())
        return false;
    bool isComplete = true;
    int error = file.Mend();
    if (error == RuntimeError::None) {
        m_record.recordNumber = Decimal(file.LastRecordNumber(length) + 1);
        isComplete = PackAnswerRecord(m_record, m_buffer);
        error = file.AppendLine(BlankLineBreaks(QByteArray(m_buffer.data(), length), {}));
    }
    if (error != RuntimeError::None) {
        ShowFileError(error, path);
        return false;
    }
    if (!isComplete)
        m_incompleteOrders += orderNo;
    return true;
}

bool AnswerCreation::MarkAnswered(qint64 accNo)
{
    if (!m_db.BeginTrans()) {
        ShowMessage(Message::NotUpdated);
        return false;
    }
    if (m_db.DBExecute(BuildMarkAnsweredSql(accNo, m_stamp)) && m_db.CommitTrans())
        return true;
    m_db.Rollback();
    ShowMessage(Message::NotUpdated);
    return false;
}

void AnswerCreation::MarkRowsAnswered(qint64 accNo)
{
    for (const int row : m_list.RowsOfOrder(accNo)) {
        const ListRow line = m_list.Row(row);
        if (line.IsShipped() || !line.View(ListColumn::Skipped).isEmpty() || !line.IsAnswerable())
            continue;
        m_list.SetCell(row, ListColumn::States, QString(DoneMark) + CellLineBreak + " ");
        ++m_counts.lines;
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
                           "得意先ごとの設定により、件数が異なることがあります";
    MsgBox(text, BoxStyle::Information, "納期回答入力");
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
