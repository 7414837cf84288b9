#include "answerlist/SC030120.h"

#include "answerlist/AnswerDetail.h"
#include "forms/DateField.h"
#include "forms/FieldInput.h"
#include "messages/bMessage.h"
#include "platform/System.h"
#include "ui_SC030120.h"
#include "util/VbText.h"
#include "util/bDate.h"
#include "util/bValue.h"

#include <QShowEvent>

SC030120::SC030120(ProgramState &state, QWidget *parent)
    : Form(parent)
    , m_ui(std::make_unique<Ui::SC030120>())
    , m_state(state)
{
    m_ui->setupUi(this);
    SetEscapeButton(m_ui->cmdExit);
    AddStatusPanels(*m_ui->stbMain, {"DATE"});
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
    connect(m_ui->cmdExit, &QPushButton::clicked, this, &QDialog::reject);
}

SC030120::~SC030120() = default;

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
    {
        const Hourglass hourglass;
        detail = ReadDetail(m_state.db, {line.accNo, line.accSubNo, line.shpSubNo});
    }
    if (!detail) {
        ShowMessage(Message::NoData);
        // Nothing to answer; what is left is the way back.
        m_ui->Frame6->setEnabled(false);
        m_ui->cmdRegister->setEnabled(false);
        m_ui->cmdExit->setFocus();
        return;
    }
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
    };
    for (const auto &[box, text] : texts) {
        box->setText(text);
        box->setCursorPosition(0);
    }
    // What the list holds, registered there or not, is what the operator goes on from.
    m_ui->txtAnsLimDate->setText(ShownDate(line.answeredDate));
    m_ui->txtAnsVal->setText(ShownQuantity(line.answeredQuantity));
    m_ui->txtBiko->setText(detail->biko);
    m_ui->txtAnsLimDate->setFocus();
    EnterDate();
}

void SC030120::EnterDate()
{
    UnformatDateField(*m_ui->txtAnsLimDate, 1);
    m_ui->txtAnsLimDate->selectAll();
}

void SC030120::EnterQuantity()
{
    // A text that has been refused comes back as it was typed.
    const QString shown = Trim(m_ui->txtAnsVal->text()).remove(',');
    if (IsNumberInSpec(shown, DigitSpec::Quantity))
        m_ui->txtAnsVal->setText(QuantityOf(shown).ToText());
    m_ui->txtAnsVal->selectAll();
}

bool SC030120::CheckDate()
{
    QLineEdit *box = m_ui->txtAnsLimDate;
    if (box->text().isEmpty())
        return true;
    if (IsValidDate(StoredDate(box->text()))) {
        FormatDateField(*box, 1);
        return true;
    }
    box->setFocus();
    ShowMessage(Message::WrongDate);
    return false;
}

bool SC030120::CheckQuantity()
{
    QLineEdit *box = m_ui->txtAnsVal;
    const QString typed = Trim(box->text()).remove(',');
    if (IsNumberInSpec(typed, DigitSpec::Quantity)) {
        box->setText(ShownQuantity(QuantityOf(typed)));
        return true;
    }
    box->setFocus();
    ShowMessage(Message::WrongNumber);
    return false;
}

void SC030120::cmdRegister_Click()
{
    if (!CheckDate() || !CheckQuantity())
        return;
    DetailLine &line = m_state.detail;
    const DetailEntry entry{StoredDate(m_ui->txtAnsLimDate->text()),
                            QuantityOf(Trim(m_ui->txtAnsVal->text())), m_ui->txtBiko->text()};
    if (!SaveDetail(m_state.db, {line.accNo, line.accSubNo, line.shpSubNo}, entry))
        return;
    ShowMessage(Message::Registered);
    line.answeredDate = entry.answeredDate;
    line.answeredQuantity = entry.quantity;
    accept();
}
