#include "answerlist/SC030120.h"

#include "answerlist/AnswerHistory.h"
#include "data/Tables.h"
#include "forms/DecimalAlignment.h"
#include "forms/FieldInput.h"
#include "messages/bMessage.h"
#include "platform/MsgBox.h"
#include "platform/System.h"
#include "ui_SC030120.h"
#include "util/VbText.h"
#include "util/bDate.h"
#include "util/bValue.h"

#include <QHeaderView>
#include <QRegularExpression>
#include <QShowEvent>

namespace {

/// Stands for a line break in a box of one line. The code page does not have it, so nobody types
/// it.
constexpr auto LineBreakSign = "↵";

const QRegularExpression &LineBreak()
{
    static const QRegularExpression lineBreak("\\r\\n|\\r|\\n");
    return lineBreak;
}

/// Puts another form of the same entry into its box.
void ShowForm(QLineEdit &box, ShownText &shown, const QString &text)
{
    if (shown.IsShown())
        shown.Show(text);
    else
        box.setText(text);
}

/// A quantity as it stands in its box to be typed over. A text that is no quantity stays.
QString TypedQuantity(const QString &shown)
{
    const QString typed = Trim(shown).remove(',');
    return IsNumberInSpec(typed, DigitSpec::Quantity) ? QuantityOf(typed).ToText() : shown;
}

} // namespace

SC030120::SC030120(ProgramState &state, QWidget *parent)
    : Form(parent)
    , m_ui(std::make_unique<Ui::SC030120>())
    , m_state(state)
{
    m_ui->setupUi(this);
    m_date = new ShownText(*m_ui->txtAnsLimDate);
    m_quantity = new ShownText(*m_ui->txtAnsVal);
    for (ShownText *text : {m_date, m_quantity})
        text->Show({}); // until there is a line
    QHeaderView *headings = m_ui->spdHistory->horizontalHeader();
    headings->setSectionResizeMode(QHeaderView::ResizeToContents);
    headings->setSectionResizeMode(headings->count() - 1, QHeaderView::Stretch);
    MakeRoom();
    SetEscapeButton(m_ui->cmdExit);
    SetThemeIcon(*m_ui->cmdRegister, {"document-save"});
    SetThemeIcon(*m_ui->cmdExit, {"go-previous"});
    for (QLineEdit *box : {m_ui->txtAccVal, m_ui->txtZanVal, m_ui->txtIndVal, m_ui->txtAnsVal})
        new DecimalAlignment(*box, DigitSpec::Quantity);
    new DecimalAlignment(*m_ui->txtAccTan, DigitSpec::LargeQuantity);
    AddStatusPanels(*m_ui->stbMain, {"MSG", "DATE"});
    SetPanelText(*m_ui->stbMain, "DATE", NowDateText());
    FieldInput::AttachDate(*m_ui->txtAnsLimDate);
    FieldInput::AttachNumber(*m_ui->txtAnsVal, DigitSpec::Quantity);
    FieldInput::AttachByteLength(*m_ui->txtBiko);
    OnFocus(
        m_ui->txtAnsLimDate, [this] { EnterDate(); },
        [this](QWidget *newFocus, Qt::FocusReason) {
            if (newFocus != m_ui->cmdExit)
                CheckDate();
        });
    OnFocus(
        m_ui->txtAnsVal, [this] { EnterQuantity(); },
        [this](QWidget *newFocus, Qt::FocusReason) {
            if (newFocus != m_ui->cmdExit)
                CheckQuantity();
        });
    connect(m_ui->cmdRegister, &QPushButton::clicked, this, &SC030120::cmdRegister_Click);
    connect(m_ui->cmdExit, &QPushButton::clicked, this, &SC030120::reject);
}

SC030120::~SC030120() = default;

/// Each box shows the longest text of its column, in whatever font.
void SC030120::MakeRoom()
{
    const struct
    {
        QLineEdit *box;
        int halfWidths;
    } rooms[] = {
        {m_ui->txtCustName, 40},   {m_ui->txtCustSecName, 20}, {m_ui->txtAccHinCD, 25},
        {m_ui->txtHinCD, 25},      {m_ui->txtHinName, 40},     {m_ui->txtF019, 60},
        {m_ui->txtOdrNo, 23},      {m_ui->txtMfactNo, 19},     {m_ui->txtContractKBN, 21},
        {m_ui->txtLimDate, 8},     {m_ui->txtPayNo, 8},        {m_ui->txtAccVal, 15},
        {m_ui->txtZanVal, 15},     {m_ui->txtIndVal, 15},      {m_ui->txtAccTan, 17},
        {m_ui->txtTanKBNName, 14}, {m_ui->txtF082Name, 32},    {m_ui->txtAnsLimDate, 8},
        {m_ui->txtAnsVal, 15},     {m_ui->txtBiko, 30},
    };
    constexpr int Margins = 12;
    for (const auto &[box, halfWidths] : rooms)
        box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QString(halfWidths, '0'))
                             + Margins);
    // Two answers at least; more where the form has room left.
    constexpr int Answers = 2;
    QTableWidget *history = m_ui->spdHistory;
    const int rowHeight = history->fontMetrics().height() + 4;
    history->verticalHeader()->setMinimumSectionSize(rowHeight);
    history->verticalHeader()->setDefaultSectionSize(rowHeight);
    history->setMinimumHeight(history->horizontalHeader()->sizeHint().height() + Answers * rowHeight
                              + 2 * history->frameWidth());
}

void SC030120::changeEvent(QEvent *event)
{
    Form::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        MakeRoom();
}

void SC030120::showEvent(QShowEvent *event)
{
    Form::showEvent(event);
    // After the window itself has been painted.
    if (!event->spontaneous())
        QMetaObject::invokeMethod(this, &SC030120::ShowLine, Qt::QueuedConnection);
}

void SC030120::ShowLine()
{
    const DetailLine &line = m_state.detail;
    std::optional<DetailTexts> detail;
    bool isFailed = false;
    {
        const Hourglass hourglass;
        detail = ReadDetail(m_state.db, {line.accNo, line.accSubNo, line.shpSubNo}, isFailed);
    }
    if (!detail) {
        if (!isFailed)
            ShowMessage(Message::NoData);
        ShowNothing();
        return;
    }
    m_stored = {line.storedDate, line.storedQuantity, detail->biko, line.isAnswered};
    m_shownRemarks = QString(detail->biko).replace(LineBreak(), LineBreakSign);
    const std::pair<QLineEdit *, QString> texts[] = {
        {m_ui->txtCustCD, detail->custCD},
        {m_ui->txtCustName, detail->custName},
        {m_ui->txtCustSecCD, detail->custSecCD},
        {m_ui->txtCustSecName, detail->custSecName},
        {m_ui->txtKobaiTanto, detail->kobaiTanto},
        {m_ui->txtAccHinCD, detail->accHinCD},
        {m_ui->txtHinCD, detail->hinCD},
        {m_ui->txtHinName, detail->hinName},
        {m_ui->txtAccTan, detail->accTan},
        {m_ui->txtTanKBN, detail->tanKBN},
        {m_ui->txtTanKBNName, detail->tanKBNName},
        {m_ui->txtUnit, detail->unit},
        {m_ui->txtReadTime, detail->readTime},
        {m_ui->txtOdrNo, detail->odrNo},
        {m_ui->txtContractKBN, detail->contractKBN},
        {m_ui->txtMfactNo, detail->mfactNo},
        {m_ui->txtPayNo, detail->payNo},
        {m_ui->txtZanVal, detail->zanVal},
        {m_ui->txtIndVal, detail->indVal},
        {m_ui->txtAccVal, detail->accVal},
        {m_ui->txtLimDate, detail->limDate},
        {m_ui->txtF082, detail->f082},
        {m_ui->txtF082Name, detail->f082Name},
        {m_ui->txtF019, detail->f019},
        {m_ui->txtBiko, m_shownRemarks},
    };
    for (const auto &[box, text] : texts) {
        box->setText(text);
        box->setCursorPosition(0);
    }
    // What the list holds, registered there or not, is what the operator goes on from.
    m_date->Show(ShownDate(line.answeredDate));
    m_quantity->Show(ShownQuantity(line.answeredQuantity));
    ShowHistory({line.accNo, line.accSubNo, line.shpSubNo});
    m_ui->txtAnsLimDate->setFocus();
    EnterDate();
}

/// The line's earlier answers; a database that keeps none has no table to show them in.
void SC030120::ShowHistory(const LineKey &key)
{
    const bool isKept = m_state.db.HasTable(HistoryTable);
    m_ui->lblHistory->setVisible(isKept);
    m_ui->spdHistory->setVisible(isKept);
    if (!isKept)
        return;
    QTableWidget *table = m_ui->spdHistory;
    constexpr int QuantityColumn = 2;
    for (const PastAnswer &answer : ReadHistory(m_state.db, key)) {
        const QStringList texts{answer.when, answer.date, answer.quantity, answer.who, answer.kind};
        const int row = table->rowCount();
        table->insertRow(row);
        for (int column = 0; column < texts.size(); ++column) {
            auto *cell = new QTableWidgetItem(texts[column]);
            cell->setToolTip(answer.record);
            if (column == QuantityColumn)
                cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            table->setItem(row, column, cell);
        }
    }
}

/// Without a line there is nothing to answer; what is left is the way back.
void SC030120::ShowNothing()
{
    m_ui->Frame6->setEnabled(false);
    m_ui->cmdRegister->setEnabled(false);
    m_ui->cmdExit->setFocus();
}

void SC030120::EnterDate()
{
    QLineEdit *box = m_ui->txtAnsLimDate;
    ShowForm(*box, *m_date, UnformatDateText(box->text(), 1));
    box->selectAll();
}

void SC030120::EnterQuantity()
{
    // A text that has been refused comes back as it was typed.
    QLineEdit *box = m_ui->txtAnsVal;
    ShowForm(*box, *m_quantity, TypedQuantity(box->text()));
    box->selectAll();
}

bool SC030120::CheckDate()
{
    QLineEdit *box = m_ui->txtAnsLimDate;
    if (EnteredDate()) {
        ShowForm(*box, *m_date, FormatDateText(box->text(), 1));
        return true;
    }
    box->setFocus();
    box->selectAll(); // to be typed anew
    ShowMessage(Message::WrongDate);
    return false;
}

bool SC030120::CheckQuantity()
{
    QLineEdit *box = m_ui->txtAnsVal;
    if (const auto quantity = EnteredQuantity()) {
        ShowForm(*box, *m_quantity, ShownQuantity(*quantity));
        return true;
    }
    box->setFocus();
    box->selectAll(); // to be typed anew
    ShowMessage(Message::WrongNumber);
    return false;
}

std::optional<QString> SC030120::EnteredDate() const
{
    // What was shown goes back as it came, be it a date or not.
    if (!IsDateEdited())
        return m_state.detail.answeredDate;
    const QString text = m_ui->txtAnsLimDate->text();
    const bool isDate = text.isEmpty() || IsTypedOrShownDate(text);
    return isDate ? std::optional(StoredDate(text)) : std::nullopt;
}

std::optional<Decimal> SC030120::EnteredQuantity() const
{
    if (!IsQuantityEdited())
        return m_state.detail.answeredQuantity;
    const QString typed = Trim(m_ui->txtAnsVal->text()).remove(',');
    const bool isNumber = IsNumberInSpec(typed, DigitSpec::Quantity);
    return isNumber ? std::optional(QuantityOf(typed)) : std::nullopt;
}

QString SC030120::EnteredRemarks() const
{
    const QString text = m_ui->txtBiko->text();
    if (text == m_shownRemarks)
        return m_stored.remarks;
    return QString(text).replace(LineBreakSign, LineBreak().match(m_stored.remarks).captured());
}

bool SC030120::IsDateEdited() const
{
    const QString text = m_ui->txtAnsLimDate->text();
    const QString shown = ShownDate(m_state.detail.answeredDate);
    return !m_date->IsShown() && text != shown && text != UnformatDateText(shown, 1);
}

bool SC030120::IsQuantityEdited() const
{
    const QString text = m_ui->txtAnsVal->text();
    const QString shown = ShownQuantity(m_state.detail.answeredQuantity);
    return !m_quantity->IsShown() && text != shown && text != TypedQuantity(shown);
}

bool SC030120::IsEdited() const
{
    return IsDateEdited() || IsQuantityEdited() || m_ui->txtBiko->text() != m_shownRemarks;
}

void SC030120::reject()
{
    if (IsEdited()
        && MsgBox("登録していない変更があります。破棄して戻りますか",
                  BoxStyle::Question + BoxStyle::YesNo + BoxStyle::DefaultButton2, "確認")
               != BoxButton::Yes)
        return;
    QDialog::reject();
}

void SC030120::cmdRegister_Click()
{
    if (!CheckDate() || !CheckQuantity())
        return;
    DetailLine &line = m_state.detail;
    const DetailEntry entry{*EnteredDate(), *EnteredQuantity(), EnteredRemarks()};
    if (!SaveDetail(m_state.db, {line.accNo, line.accSubNo, line.shpSubNo}, entry, m_stored))
        return;
    ShowMessage(Message::Registered);
    line.answeredDate = entry.answeredDate;
    line.answeredQuantity = entry.quantity;
    accept();
}
