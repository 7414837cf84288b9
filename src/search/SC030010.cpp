#include "search/SC030010.h"

#include "forms/DateField.h"
#include "forms/FieldInput.h"
#include "forms/ShownText.h"
#include "messages/bMessage.h"
#include "search/SC040220R.h"
#include "search/SC040230R.h"
#include "search/bTLName.h"
#include "ui_SC030010.h"
#include "util/VbText.h"
#include "util/bDate.h"

namespace {

struct DateTab
{
    const char *key;
    const char *caption;
};

constexpr DateTab DateTabs[] = {
    {"SHPDATE", "出荷（予定）"},
    {"LIMDATE", "指定納期"},
    {"ACCDATE", "受注日"},
};

/// Shows a name from its beginning on, however narrow the box.
void ShowName(QLineEdit &box, const QString &name)
{
    box.setText(name);
    box.setCursorPosition(0);
}

} // namespace

SC030010::SC030010(ProgramState &state, QWidget *parent)
    : Form(parent)
    , m_ui(std::make_unique<Ui::SC030010>())
    , m_state(state)
{
    m_ui->setupUi(this);
    AddStatusPanels(*m_ui->stbMain, {"MSG", "DATE"});
    SetPanelText(*m_ui->stbMain, "DATE", NowDateText());
    if (!state.databaseWarning.isEmpty())
        SetPanelWarning(*m_ui->stbMain, "MSG", state.databaseWarning);
    m_ui->tabDate->setDrawBase(false);
    for (const DateTab &tab : DateTabs) {
        const bool isHidden
            = state.isSearchMode && QLatin1String(tab.key) == QLatin1String("SHPDATE");
        if (!isHidden)
            m_ui->tabDate->setTabData(m_ui->tabDate->addTab(tab.caption), tab.key);
    }

    for (QLineEdit *box : {m_ui->txtCustCD, m_ui->txtCustSecCD, m_ui->txtAccHinCD, m_ui->txtOdrNo,
                           m_ui->txtMfactNo, m_ui->txtPayKeyNo})
        FieldInput::AttachCode(*box);
    FieldInput::AttachByteLength(*m_ui->txtAccHinName);
    m_productName = new ShownText(*m_ui->txtAccHinName);
    for (QLineEdit *box : {m_ui->txtFromDate, m_ui->txtToDate}) {
        FieldInput::AttachDate(*box);
        OnFocus(
            box,
            [box] {
                UnformatDateField(*box, 1);
                box->selectAll();
            },
            [this, box](QWidget *newFocus, Qt::FocusReason reason) {
                DateBox_LostFocus(box, newFocus, reason);
            });
    }
    OnFocus(m_ui->txtCustCD, nullptr,
            [this](QWidget *, Qt::FocusReason) { txtCustCD_LostFocus(); });
    OnFocus(m_ui->txtAccHinCD, nullptr,
            [this](QWidget *, Qt::FocusReason) { txtAccHinCD_LostFocus(); });

    SetMainButton(m_ui->cmdList);
    SetThemeIcon(*m_ui->cmdList, {"edit-find"});
    SetThemeIcon(*m_ui->cmdExit, {"application-exit"});
    SetHelperButton(m_ui->cmdTSansho);
    SetHelperButton(m_ui->cmdSSansho);
    // A name belongs to the code it was found for.
    connect(m_ui->txtCustCD, &QLineEdit::textEdited, m_ui->txtCustName, &QLineEdit::clear);
    connect(m_ui->txtAccHinCD, &QLineEdit::textEdited, m_ui->txtAccHinName, &QLineEdit::clear);
    connect(m_ui->tabDate, &QTabBar::currentChanged, this, &SC030010::ShowDateTab);
    connect(m_ui->cmdList, &QPushButton::clicked, this, &SC030010::cmdList_Click);
    connect(m_ui->cmdExit, &QPushButton::clicked, this, &SC030010::cmdExit_Click);
    connect(m_ui->cmdTSansho, &QPushButton::clicked, this, &SC030010::cmdTSansho_Click);
    connect(m_ui->cmdSSansho, &QPushButton::clicked, this, &SC030010::cmdSSansho_Click);
    for (int position = 0; position < 6; ++position) {
        for (int key = 0; key < 6; ++key) {
            auto *button
                = findChild<QRadioButton *>(QString("optSortKey%1_%2").arg(position + 1).arg(key));
            connect(button, &QRadioButton::clicked, this, [this, position, key] {
                m_sortKeys = WithSortKey(m_sortKeys, position, SortKeyNames[size_t(key)]);
                ShowSortKeys();
            });
            m_sortButtons[position][key] = button;
        }
    }
    ShowConditions();
}

SC030010::~SC030010() = default;

void SC030010::ShowSortKeys()
{
    for (int position = 0; position < 6; ++position) {
        for (int key = 0; key < 6; ++key) {
            const bool isHeld = m_sortKeys[size_t(position)] == SortKeyNames[size_t(key)];
            QRadioButton *button = m_sortButtons[position][key];
            if (isHeld)
                button->setChecked(true);
            // A group is one stop: the button that is on.
            button->setFocusPolicy(isHeld ? Qt::StrongFocus : Qt::ClickFocus);
        }
    }
}

void SC030010::ShowConditions()
{
    const SearchConditions &conditions = m_state.conditions;
    const struct
    {
        QLineEdit *box;
        QString text;
    } texts[] = {
        {m_ui->txtCustCD, conditions.customerCode},
        {m_ui->txtCustSecCD, conditions.customerSectionCode},
        {m_ui->txtAccHinCD, conditions.productCode},
        {m_ui->txtOdrNo, conditions.orderNo},
        {m_ui->txtMfactNo, conditions.makerNo},
        {m_ui->txtPayKeyNo, conditions.payKeyNo},
        {m_ui->txtFromDate, FormatDateText(conditions.fromDate, 3)},
        {m_ui->txtToDate, FormatDateText(conditions.toDate, 3)},
    };
    for (const auto &[box, text] : texts)
        if (box->text() != text) // setting a text lays it out even when it is the same
            box->setText(text);
    ShowName(*m_ui->txtCustName, conditions.customerName);
    if (conditions.isProductNameLiteral)
        m_productName->Show(conditions.productName);
    else
        ShowName(*m_ui->txtAccHinName, conditions.productName);
    for (int tab = 0; tab < m_ui->tabDate->count(); ++tab)
        if (m_ui->tabDate->tabData(tab) == conditions.dateBasis)
            m_ui->tabDate->setCurrentIndex(tab);
    ShowDateTab();
    m_sortKeys = ValidSortKeys(conditions.sortKeys);
    ShowSortKeys();
}

void SC030010::ShowDateTab()
{
    const QString basis = m_ui->tabDate->tabText(m_ui->tabDate->currentIndex());
    m_ui->lblDate->setText(basis);
    m_ui->txtFromDate->setAccessibleName(basis + " 開始日");
    m_ui->txtToDate->setAccessibleName(basis + " 終了日");
}

void SC030010::TakeConditions()
{
    SearchConditions &conditions = m_state.conditions;
    conditions.customerCode = m_ui->txtCustCD->text();
    conditions.customerName = m_ui->txtCustName->text();
    conditions.customerSectionCode = m_ui->txtCustSecCD->text();
    conditions.productCode = m_ui->txtAccHinCD->text();
    conditions.productName = m_ui->txtAccHinName->text();
    conditions.isProductNameLiteral = m_productName->IsShown();
    conditions.orderNo = m_ui->txtOdrNo->text();
    conditions.makerNo = m_ui->txtMfactNo->text();
    conditions.payKeyNo = m_ui->txtPayKeyNo->text();
    conditions.dateBasis = m_ui->tabDate->tabData(m_ui->tabDate->currentIndex()).toString();
    conditions.fromDate = StoredDate(m_ui->txtFromDate->text());
    conditions.toDate = StoredDate(m_ui->txtToDate->text());
    conditions.sortKeys = m_sortKeys;
}

void SC030010::cmdList_Click()
{
    // A value typed and not yet left is looked up and checked now.
    txtCustCD_LostFocus();
    if (m_ui->txtAccHinCD->hasFocus())
        txtAccHinCD_LostFocus();
    if (!CheckDateBox(m_ui->txtFromDate) || !CheckDateBox(m_ui->txtToDate))
        return;
    TakeConditions();
    m_state.isListRequested = true;
    accept();
}

void SC030010::cmdExit_Click()
{
    m_state.isListRequested = false;
    QDialog::reject();
}

void SC030010::reject()
{
    cmdExit_Click();
}

void SC030010::cmdTSansho_Click()
{
    m_state.pickedCustomer = {m_ui->txtCustCD->text(), m_ui->txtCustName->text()};
    if (!SC040230R(m_state, this).Pick() || m_state.pickedCustomer.code.isEmpty())
        return;
    m_ui->txtCustCD->setText(m_state.pickedCustomer.code);
    if (focusWidget() == m_ui->txtCustCD)
        m_ui->txtCustCD->selectAll();
    ShowName(*m_ui->txtCustName, m_state.pickedCustomer.name);
}

void SC030010::cmdSSansho_Click()
{
    m_state.pickedProduct = {m_ui->txtAccHinCD->text(), m_ui->txtAccHinName->text()};
    if (!SC040220R(m_state, this).Pick() || m_state.pickedProduct.code.isEmpty())
        return;
    m_ui->txtAccHinCD->setText(m_state.pickedProduct.code);
    if (focusWidget() == m_ui->txtAccHinCD)
        m_ui->txtAccHinCD->selectAll();
    m_productName->Show(m_state.pickedProduct.name);
}

void SC030010::txtCustCD_LostFocus()
{
    if (!m_ui->txtCustCD->text().isEmpty())
        ShowName(*m_ui->txtCustName, CustomerName(m_state.db, m_ui->txtCustCD->text()));
}

void SC030010::txtAccHinCD_LostFocus()
{
    QString name;
    const QString code = m_ui->txtAccHinCD->text();
    if (!code.isEmpty() && FindProductName(m_state.db, code, name))
        m_productName->Show(name);
}

void SC030010::DateBox_LostFocus(QLineEdit *box, QWidget *newFocus, Qt::FocusReason reason)
{
    // The exit button leaves the screen whatever stands in the box; the list button checks it
    // itself when it is clicked.
    const bool isListClick = newFocus == m_ui->cmdList && reason == Qt::MouseFocusReason;
    if (newFocus == m_ui->cmdExit || isListClick)
        return;
    CheckDateBox(box);
}

bool SC030010::CheckDateBox(QLineEdit *box)
{
    if (IsDateBoxValid(box->text())) {
        FormatDateField(*box, 1);
        return true;
    }
    box->setFocus();
    box->selectAll(); // to be typed anew
    ShowMessage(Message::WrongDate);
    return false;
}
