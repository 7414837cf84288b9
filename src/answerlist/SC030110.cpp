#include "answerlist/SC030110.h"

#include "answerlist/ListColumns.h"
#include "answerlist/SC030120.h"
#include "lines/AnswerDates.h"
#include "lines/LineSplit.h"
#include "messages/bMessage.h"
#include "platform/MsgBox.h"
#include "platform/System.h"
#include "ui_SC030110.h"
#include "util/bDate.h"

#include <QApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScopedValueRollback>
#include <QTimer>
#include <QWindow>
#include <algorithm>

namespace {

/// The name of the date that the search's range is about.
QString DateBasisName(const QString &basis)
{
    static constexpr struct
    {
        const char *basis;
        const char *name;
    } names[] = {{"SHPDATE", "出荷（予定）"}, {"LIMDATE", "指定納期"}, {"ACCDATE", "受注日"}};
    for (const auto &entry : names)
        if (basis == QLatin1String(entry.basis))
            return entry.name;
    return {};
}

/// The width that the widest line of a text takes.
int WidthOf(const QFontMetrics &metrics, const QString &text)
{
    int width = 0;
    for (const QString &line : text.split("\r\n"))
        width = std::max(width, metrics.horizontalAdvance(line));
    return width;
}

} // namespace

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
    m_ui->spdList->setModel(&m_model);
    m_ui->spdList->SetColumnInput(ColumnTyped(CellTyping::Quantity),
                                  std::make_unique<QuantityCellInput>());
    m_ui->spdList->SetColumnInput(ColumnTyped(CellTyping::Date), std::make_unique<DateCellInput>());
    LayOutColumns();
    ClearScreen();

    connect(m_ui->cmdLimSet, &QPushButton::clicked, this, &SC030110::cmdLimSet_Click);
    connect(m_ui->cmbLimDef, &QPushButton::clicked, this, &SC030110::cmbLimDef_Click);
    connect(m_ui->cmdCopy, &QPushButton::clicked, this, &SC030110::cmdCopy_Click);
    connect(m_ui->cmdDelete, &QPushButton::clicked, this, &SC030110::cmdDelete_Click);
    connect(m_ui->cmdDetail, &QPushButton::clicked, this, &SC030110::cmdDetail_Click);
    connect(m_ui->cmdMake, &QPushButton::clicked, this, &SC030110::cmdMake_Click);
    connect(m_ui->cmdExit, &QPushButton::clicked, this, &SC030110::reject);
    connect(m_ui->spdList, &GridView::CellDoubleClicked, this, &SC030110::cmdDetail_Click);
    connect(m_ui->spdList, &GridView::CellLeft, this,
            [this](int, int, int, int newRow) { ShowHint(newRow); });
    // What has been changed is meant.
    connect(&m_model, &LineModel::Edited, this, [this](int row) {
        m_ui->spdList->selectionModel()->select(
            m_model.index(row - 1, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    });
    // A mended error is told of no more.
    connect(&m_model, &QAbstractItemModel::dataChanged, this, [this] { ShowHint(ActiveRow()); });
}

SC030110::~SC030110() = default;

void SC030110::LayOutColumns()
{
    constexpr int CellMargins = 18;
    constexpr int LinesPerRow = 4;
    GridView *grid = m_ui->spdList;
    const QFontMetrics metrics = grid->fontMetrics();
    const QFontMetrics headingMetrics = grid->horizontalHeader()->fontMetrics();
    int number = 0;
    for (const ListColumn &column : ListColumns())
        grid->SetColumnWidth(++number, std::max(WidthOf(metrics, column.widestText),
                                                WidthOf(headingMetrics, column.heading))
                                           + CellMargins);
    grid->SetTextLines(LinesPerRow);
}

void SC030110::changeEvent(QEvent *event)
{
    Form::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        LayOutColumns();
}

void SC030110::ClearScreen()
{
    for (QLineEdit *box :
         {m_ui->txtCustCD, m_ui->txtCustName, m_ui->txtFromAccDate, m_ui->txtToAccDate})
        box->clear();
    m_ui->txtSum->setText("0");
    m_list.Clear();
    m_model.Filled();
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
    // A window that is on its way to the screen has to be painted first: the list is filled in one
    // go.
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
        const QScopedValueRollback busy(m_isBusy, true);
        ShowStatus(LoadingText);
        loaded = LoadLines();
    }
    if (loaded.lineCount == 0) {
        QDialog::reject();
        return;
    }
    m_state.isReloadNeeded = false;
    m_ui->spdList->Activate(1, 1);
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
    m_model.Empty();
    const LoadedList loaded = LoadList(m_state.db, conditions, m_list, StatusBar());
    m_model.Filled();
    ShowLineCount();
    if (loaded.lineCount == 0) {
        for (QPushButton *button :
             {m_ui->cmdCopy, m_ui->cmdDelete, m_ui->cmdMake, m_ui->cmdDetail, m_ui->cmdLimSet})
            button->setEnabled(false);
        if (loaded.isRead && !loaded.isStopped)
            ShowMessage(Message::NoData);
    }
    return loaded;
}

RowSelection SC030110::Selected() const
{
    return RowSelection(m_ui->spdList->SelectedRowRanges());
}

int SC030110::ActiveRow() const
{
    return std::min(m_ui->spdList->ActiveRow(), m_list.Count());
}

void SC030110::ShowLineCount()
{
    m_ui->txtSum->setText(Decimal(m_list.Count()).ToFixed(0, true));
}

/// What the status bar tells about a row: the error that the checks found, that it is shipped, or
/// nothing.
void SC030110::ShowHint(int row)
{
    if (row <= 0)
        return;
    const Line &line = m_list.At(row);
    if (line.Error() != LineError::None)
        SetPanelWarning(*m_ui->stbMain, "MSG", ErrorText(line.Error()));
    else if (line.IsShipped())
        ShowStatus("出荷済のものの変更、納期回答作成は出来ません");
    else if (!m_state.databaseWarning.isEmpty())
        SetPanelWarning(*m_ui->stbMain, "MSG", m_state.databaseWarning);
    else
        ShowStatus({});
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
    return !m_isBusy && m_ui->spdList->FinishEdit();
}

/// Runs a command that sets dates; the status bar then tells what it told before.
template <typename Command>
void SC030110::SetDates(Command &&command)
{
    const Hourglass hourglass;
    const QScopedValueRollback busy(m_isBusy, true);
    const QString status = PanelText(*m_ui->stbMain, "MSG");
    command();
    m_model.Changed();
    ShowStatus(status);
}

void SC030110::cmdLimSet_Click()
{
    if (!MayRun() || !CheckDateSelection(m_list, Selected()))
        return;
    const QString date = AskAnswerDate();
    if (date.isEmpty())
        return;
    SetDates([&] { SetAnswerDates(m_list, Selected(), date, StatusBar()); });
}

void SC030110::cmbLimDef_Click()
{
    if (!MayRun() || !CheckDateSelection(m_list, Selected()))
        return;
    SetDates([&] { SetSpecifiedDates(m_list, Selected(), StatusBar()); });
}

void SC030110::cmdCopy_Click()
{
    if (!MayRun())
        return;
    const int row = SingleRow(Selected());
    if (row == 0)
        return;
    m_model.InsertBelow(row, [&] { CopyLine(m_list, row); });
    ShowLineCount();
}

void SC030110::cmdDelete_Click()
{
    if (!MayRun())
        return;
    const int row = SingleRow(Selected());
    if (row == 0 || !DeleteLine(m_state.db, m_list.At(row)))
        return;
    m_model.Remove(row);
    ShowLineCount();
    if (m_list.Count() > 0)
        m_ui->spdList->Activate(std::max(1, m_ui->spdList->ActiveColumn()),
                                std::min(row, m_list.Count()));
}

void SC030110::cmdDetail_Click()
{
    if (!MayRun() || m_list.Count() == 0)
        return;
    const RowSelection selected = Selected();
    if (!CheckSingleRow(selected))
        return;
    const int row = selected.IsEmpty() ? ActiveRow() : selected.First();
    if (row == 0)
        return;
    Line &line = m_list.At(row);
    if (!line.IsStored()) {
        ShowMessage(Message::NotRegisteredYet);
        return;
    }
    const LineKey &key = line.Key();
    m_state.detail = {.accNo = key.accNo,
                      .accSubNo = key.accSubNo,
                      .shpSubNo = key.shpSubNo,
                      .answeredDate = line.Now().date,
                      .answeredQuantity = line.Now().quantity,
                      .isWithoutEdiMark = !line.IsEdi(),
                      .storedDate = line.Stored().date,
                      .storedQuantity = line.Stored().quantity,
                      .isAnswered = line.IsAnswered()};
    if (SC030120(m_state, this).exec() != QDialog::Accepted)
        return;
    line.TakeStored({m_state.detail.answeredDate, m_state.detail.answeredQuantity});
    m_model.Changed();
}

void SC030110::cmdMake_Click()
{
    if (!MayRun())
        return;
    RowSelection selected = Selected();
    int failedRow = 0;
    {
        const Hourglass hourglass;
        const QScopedValueRollback busy(m_isBusy, true);
        failedRow = m_makeAnswers(m_list, selected, m_stamp, StatusBar());
    }
    m_model.Changed();
    m_ui->spdList->SetSelectedRows(selected.Ranges());
    if (failedRow > 0)
        GoToError(failedRow);
    ShowHint(ActiveRow());
}

/// Brings the operator to the cell that is to be mended.
void SC030110::GoToError(int row)
{
    QApplication::beep();
    m_ui->spdList->Activate(ColumnToMend(m_list.At(row).Error()), row);
    m_ui->spdList->setFocus();
}

void SC030110::reject()
{
    if (!MayRun())
        return;
    const int unregistered = m_list.UnregisteredCount();
    if (unregistered > 0
        && MsgBox(
               QString("登録していない変更が %1 行あります。破棄して戻りますか").arg(unregistered),
               BoxStyle::Question + BoxStyle::YesNo + BoxStyle::DefaultButton2, "確認")
               != BoxButton::Yes)
        return;
    QDialog::reject();
}
