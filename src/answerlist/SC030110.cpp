#include "answerlist/SC030110.h"

#include "answerlist/AnswerDates.h"
#include "answerlist/AnswerDetail.h"
#include "answerlist/LineSplit.h"
#include "answerlist/ListLoading.h"
#include "answerlist/SC030120.h"
#include "grid/SpreadGrid.h"
#include "messages/bMessage.h"
#include "platform/System.h"
#include "ui_SC030110.h"
#include "util/bDate.h"

#include <QTimer>
#include <QWindow>

SC030110::SC030110(ProgramState &state, MakeAnswers makeAnswers, QWidget *parent)
    : Form(parent)
    , m_ui(std::make_unique<Ui::SC030110>())
    , m_state(state)
    , m_makeAnswers(std::move(makeAnswers))
    , m_stamp(WriteStamp::Now())
{
    const Hourglass hourglass;
    m_ui->setupUi(this);
    AddStatusPanels(*m_ui->stbMain, {"MSG", "USERID", "DATE"});
    m_list.Create(m_ui->spdList);
    ClearScreen();

    connect(m_ui->cmdLimSet, &QPushButton::clicked, this, &SC030110::cmdLimSet_Click);
    connect(m_ui->cmbLimDef, &QPushButton::clicked, this, &SC030110::cmbLimDef_Click);
    connect(m_ui->cmdCopy, &QPushButton::clicked, this, &SC030110::cmdCopy_Click);
    connect(m_ui->cmdDelete, &QPushButton::clicked, this, &SC030110::cmdDelete_Click);
    connect(m_ui->cmdDetail, &QPushButton::clicked, this, &SC030110::cmdDetail_Click);
    connect(m_ui->cmdMake, &QPushButton::clicked, this, &SC030110::cmdMake_Click);
    connect(m_ui->cmdExit, &QPushButton::clicked, this, &SC030110::reject);
    connect(m_ui->spdList, &SpreadGrid::CellChanged, this, &SC030110::spdList_Change);
    connect(m_ui->spdList, &SpreadGrid::CellDoubleClicked, this, &SC030110::cmdDetail_Click);
    connect(m_ui->spdList, &SpreadGrid::CellLeft, this,
            [this](int, int, int, int newRow) { ShowHint(newRow); });
}

SC030110::~SC030110() = default;

void SC030110::ClearScreen()
{
    for (QLineEdit *box :
         {m_ui->txtCustCD, m_ui->txtCustName, m_ui->txtFromAccDate, m_ui->txtToAccDate})
        box->clear();
    m_ui->txtSum->setText("0");
    m_list.Clear();
    m_ui->lblDate->setText(DateBasisName(m_state.conditions.dateBasis));
    for (const char *panel : {"MSG", "USERID", "DATE"})
        SetPanelText(*m_ui->stbMain, panel, {});
    SetPanelText(*m_ui->stbMain, "DATE", NowDateText());
}

void SC030110::showEvent(QShowEvent *event)
{
    Form::showEvent(event);
    // After the window itself has been painted.
    if (m_state.isReloadNeeded)
        QMetaObject::invokeMethod(this, &SC030110::Activate, Qt::QueuedConnection);
}

void SC030110::Activate()
{
    if (!m_state.isReloadNeeded)
        return;
    // A window that is on its way to the screen has to be painted first: the list is not painted
    // while it is filled.
    constexpr int MostWaits = 50;
    constexpr int WaitMs = 10;
    if (!windowHandle()->isExposed() && m_waits++ < MostWaits) {
        QTimer::singleShot(WaitMs, this, &SC030110::Activate);
        return;
    }
    repaint();
    LoadedList loaded;
    {
        const Hourglass hourglass;
        m_list.SetRedraw(false);
        ShowStatus(LoadingText);
        loaded = LoadLines();
        m_list.SetRedraw(true);
    }
    if (loaded.lineCount == 0) {
        QDialog::reject();
        return;
    }
    m_state.isReloadNeeded = false;
    m_list.Activate(1);
    m_ui->spdList->setFocus();
    ShowStatus(loaded.hasDefectiveLines ? "不良品の明細は、紫色で表示されます" : "");
}

LoadedList SC030110::LoadLines()
{
    const SearchConditions &conditions = m_state.conditions;
    m_ui->txtCustCD->setText(conditions.customerCode);
    m_ui->txtCustName->setText(conditions.customerName);
    m_ui->txtFromAccDate->setText(FormatDateText(conditions.fromDate, 3));
    m_ui->txtToAccDate->setText(FormatDateText(conditions.toDate, 3));
    const LoadedList loaded = LoadList(m_state.db, conditions, m_list, StatusBar());
    ShowLineCount(loaded.lineCount);
    if (loaded.lineCount == 0) {
        for (QPushButton *button :
             {m_ui->cmdCopy, m_ui->cmdDelete, m_ui->cmdMake, m_ui->cmdDetail, m_ui->cmdLimSet})
            button->setEnabled(false);
        if (loaded.isRead && !loaded.isStopped)
            ShowMessage(Message::NoData);
    }
    return loaded;
}

void SC030110::ShowLineCount(int count)
{
    m_ui->txtSum->setText(Decimal(count).ToFixed(0, true));
}

void SC030110::ShowHint(int row)
{
    if (row > 0)
        ShowStatus(RowHint(m_list, row));
}

void SC030110::ShowStatus(const QString &text)
{
    SetPanelText(*m_ui->stbMain, "MSG", text);
}

ShowStatusText SC030110::StatusBar()
{
    return [this](const QString &text) { ShowStatus(text); };
}

bool SC030110::MayRun()
{
    return m_ui->spdList->FinishEdit();
}

/// Runs a command that sets dates; the status bar then tells what it told before.
template <typename Command>
void SC030110::SetDates(Command &&command)
{
    const Hourglass hourglass;
    const QString status = PanelText(*m_ui->stbMain, "MSG");
    m_list.SetRedraw(false);
    command();
    m_list.SetRedraw(true);
    ShowStatus(status);
}

void SC030110::cmdLimSet_Click()
{
    if (!MayRun() || !CheckDateSelection(m_list))
        return;
    const QString date = AskAnswerDate();
    if (date.isEmpty())
        return;
    SetDates([&] { SetAnswerDates(m_list, date, StatusBar()); });
}

void SC030110::cmbLimDef_Click()
{
    if (!MayRun() || !CheckDateSelection(m_list))
        return;
    SetDates([&] { SetSpecifiedDates(m_list, StatusBar()); });
}

void SC030110::cmdCopy_Click()
{
    if (!MayRun())
        return;
    const int row = SingleRow(m_list);
    if (row == 0)
        return;
    m_list.SetRedraw(false);
    CopyLine(m_list, row);
    m_list.SetRedraw(true);
    ShowLineCount(m_list.RowCount());
}

void SC030110::cmdDelete_Click()
{
    if (!MayRun())
        return;
    const int row = SingleRow(m_list);
    if (row != 0 && DeleteLine(m_state.db, m_list, row))
        ShowLineCount(m_list.RowCount());
}

void SC030110::cmdDetail_Click()
{
    if (!MayRun() || m_list.RowCount() == 0 || !CheckSingleRow(m_list))
        return;
    const int row = m_list.ActiveRow();
    const ListRow line = m_list.Row(row);
    if (!line.IsStored()) {
        ShowMessage(Message::NotRegisteredYet);
        return;
    }
    m_state.detail = {line.AccNo(),
                      line.AccSubNo(),
                      line.ShpSubNo(),
                      StoredDate(line.AnsweredDate()),
                      line.AnsweredQuantity(),
                      !line.IsEdi()};
    if (SC030120(m_state, this).exec() != QDialog::Accepted)
        return;
    ShowSavedDetail(m_list, row, m_state.detail);
}

void SC030110::cmdMake_Click()
{
    if (!MayRun())
        return;
    {
        const Hourglass hourglass;
        m_makeAnswers(m_list, m_stamp, StatusBar());
    }
    ShowHint(m_list.ActiveRow());
}

void SC030110::spdList_Change(int column, int row)
{
    if (ListColumn(column) == ListColumn::AnswerDate)
        UpdateDifferenceMark(m_list, row);
}

void SC030110::reject()
{
    if (MayRun())
        QDialog::reject();
}
