#include "answerlist/SC030110.h"

#include "answerlist/AnswerHistory.h"
#include "answerlist/ListColumns.h"
#include "answerlist/ListTexts.h"
#include "answerlist/SC030120.h"
#include "data/Tables.h"
#include "forms/WindowMemory.h"
#include "lines/AnswerDates.h"
#include "lines/LineFind.h"
#include "lines/LineSplit.h"
#include "messages/bMessage.h"
#include "platform/Contrast.h"
#include "platform/MsgBox.h"
#include "platform/System.h"
#include "ui_SC030110.h"
#include "util/bDate.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScopedValueRollback>
#include <QTimer>
#include <QWindow>

namespace {

constexpr auto OpenOnlyFlag = "openOnly";
constexpr auto DatesSetText = "%1 行に回答納期を付けました。Ctrl+Z で元に戻せます";
constexpr auto DatesClearedText = "%1 行の回答納期を消しました。Ctrl+Z で元に戻せます";

} // namespace

SC030110::SC030110(ProgramState &state, MakeAnswers makeAnswers, QWidget *parent)
    : Form(parent)
    , m_ui(std::make_unique<Ui::SC030110>())
    , m_state(state)
    , m_makeAnswers(std::move(makeAnswers))
    , m_stamp(WriteStamp::Now())
    , m_files(*this, m_list, state.conditions, StatusBar())
{
    const Hourglass hourglass;
    m_ui->setupUi(this);
    AddStatusPanels(*m_ui->stbMain, {"MSG", "REMAINDER", "USERID", "DATE"});
    m_edits.SetSelection([this] { return Selected(); });
    m_model.ShowOpenOnly(WindowMemory(*this).Flag(OpenOnlyFlag));
    m_ui->chkOpenOnly->setChecked(m_model.ShowsOpenOnly());
    m_ui->spdList->SetLines(m_model);
    ClearScreen();
    SetMainAct(m_ui->cmdMake);
    AddCommands();
    ColorLegend();

    connect(m_ui->cmdLimSet, &QPushButton::clicked, this, &SC030110::cmdLimSet_Click);
    connect(m_ui->cmbLimDef, &QPushButton::clicked, this, &SC030110::cmbLimDef_Click);
    connect(m_ui->cmdCopy, &QPushButton::clicked, this, &SC030110::cmdCopy_Click);
    connect(m_ui->cmdDelete, &QPushButton::clicked, this, &SC030110::cmdDelete_Click);
    connect(m_ui->cmdDetail, &QPushButton::clicked, this, &SC030110::cmdDetail_Click);
    connect(m_ui->cmdMake, &QPushButton::clicked, this, &SC030110::cmdMake_Click);
    connect(m_ui->cmdExport, &QPushButton::clicked, this, [this] { PutOut(&ListFiles::Export); });
    connect(m_ui->cmdImport, &QPushButton::clicked, this, &SC030110::Import);
    connect(m_ui->cmdPrint, &QPushButton::clicked, this, [this] { PutOut(&ListFiles::Print); });
    connect(m_ui->cmdExit, &QPushButton::clicked, this, &SC030110::reject);
    connect(m_ui->spdList, &LineGrid::CellDoubleClicked, this, &SC030110::cmdDetail_Click);
    connect(m_ui->spdList, &LineGrid::CellLeft, this,
            [this](int, int, int, int newRow) { ShowHint(m_model.LineRow(newRow)); });
    connect(m_ui->spdList->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &SC030110::ShowCounts);
    connect(&m_model, &LineModel::Edited, this, [this](int lineRow) {
        m_ui->spdList->SelectToo(RowSelection({{lineRow, lineRow}}));
    });
    // A mended error is told of no more.
    connect(&m_model, &QAbstractItemModel::dataChanged, this, [this] {
        ShowCounts();
        ShowHint(ActiveRow());
    });
    connect(m_ui->chkOpenOnly, &QCheckBox::clicked, this, [this](bool isOn) {
        ShowOpenOnly(isOn);
        WindowMemory(*this).SetFlag(OpenOnlyFlag, m_model.ShowsOpenOnly());
    });
    connect(m_ui->findBar, &FindBar::Wanted, this, &SC030110::Find);
    connect(m_ui->findBar, &FindBar::Closed, this, [this] { m_ui->spdList->setFocus(); });
    connect(m_ui->spdList, &LineGrid::ColumnsFitted, this, [this] { KeepColumns(*m_ui->spdList); });
    connect(this, &Form::ArrangementForgotten, this, [this] {
        m_ui->spdList->FitColumnsAgain();
        if (m_model.ShowsOpenOnly())
            ShowOpenOnly(false);
    });
}

SC030110::~SC030110() = default;

/// The commands of the grid: keys of their own, and what the menu of the right button offers.
void SC030110::AddCommands()
{
    LineGrid *grid = m_ui->spdList;
    grid->setContextMenuPolicy(Qt::ActionsContextMenu);
    const auto add = [&](const QString &text, const QList<QKeySequence> &keys, auto &&run,
                         Qt::ShortcutContext context = Qt::WindowShortcut) {
        auto *action = new QAction(text, grid);
        action->setShortcuts(keys);
        action->setShortcutContext(context);
        connect(action, &QAction::triggered, this, run);
        grid->addAction(action);
        return action;
    };
    const auto addButton = [&](QPushButton *button, const QStringList &icons) {
        SetThemeIcon(*button, icons);
        add(button->text(), {}, [button] { button->click(); })->setIcon(button->icon());
    };
    const auto addSeparator = [&] {
        auto *separator = new QAction(grid);
        separator->setSeparator(true);
        grid->addAction(separator);
    };
    add("元に戻す", {QKeySequence::Undo}, [this] { TakeBack(); });
    add("変更した行を選択", {Qt::CTRL | Qt::SHIFT | Qt::Key_A}, [this] { SelectChanged(); });
    add("コピー", {}, [grid] { QApplication::clipboard()->setText(grid->SelectedText()); });
    add(
        "貼り付け", {QKeySequence::Paste}, [this] { Paste(); }, Qt::WidgetShortcut);
    add(
        "回答納期を消す", {Qt::Key_Delete, Qt::Key_Backspace}, [this] { ClearDates(); },
        Qt::WidgetShortcut);
    addSeparator();
    addButton(m_ui->cmdLimSet, {"view-calendar", "x-office-calendar"});
    addButton(m_ui->cmbLimDef, {});
    addButton(m_ui->cmdCopy, {"list-add"});
    addButton(m_ui->cmdDelete, {"list-remove"});
    addButton(m_ui->cmdDetail, {"document-properties"});
    addButton(m_ui->cmdMake, {"document-send", "mail-send"});
    addSeparator();
    addButton(m_ui->cmdExport, {"document-save-as"});
    addButton(m_ui->cmdImport, {"document-open"});
    addButton(m_ui->cmdPrint, {"document-print"});
    addSeparator();
    add("検索", {QKeySequence::Find}, [this] { OpenFindBar(); });
    add("次を検索", {Qt::Key_F3}, [this] { Find(true); });
    add("前を検索", {Qt::SHIFT | Qt::Key_F3}, [this] { Find(false); });
    add("未回答のみ", {}, [this] { m_ui->chkOpenOnly->click(); });
    add("一覧とボタンの間を移る", {Qt::Key_F6, Qt::CTRL | Qt::Key_Tab}, [this] { LeaveGrid(); });
    addSeparator();
    grid->addAction(ForgetAction());
    addButton(m_ui->cmdExit, {"go-previous"});
}

/// The legend has the colour of its lines, as far as it can be read here.
void SC030110::ColorLegend()
{
    QPalette legend = palette();
    legend.setColor(QPalette::WindowText, Readable(DefectiveColor, legend.color(QPalette::Window)));
    m_ui->lblDefective->setPalette(legend);
}

void SC030110::changeEvent(QEvent *event)
{
    Form::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        ColorLegend();
}

bool SC030110::event(QEvent *event)
{
    // A box of a run comes before the list, which is to show what the box tells of.
    if (event->type() == QEvent::WindowBlocked && m_isBusy) {
        m_ui->spdList->viewport()->update();
        m_ui->spdList->verticalHeader()->viewport()->update();
    }
    return Form::event(event);
}

void SC030110::ClearScreen()
{
    for (QLineEdit *box :
         {m_ui->txtCustCD, m_ui->txtCustName, m_ui->txtFromAccDate, m_ui->txtToAccDate})
        box->clear();
    m_ui->txtSum->setText("0");
    m_list.Clear();
    m_edits.Clear();
    m_model.Filled();
    ShowCounts();
    m_ui->lblDate->setText(DateBasisName(m_state.conditions.dateBasis));
    for (const char *panel : {"MSG", "REMAINDER", "USERID", "DATE"})
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
    if (m_model.rowCount() > 0)
        m_ui->spdList->Activate(1, 1);
    m_ui->spdList->setFocus();
    m_ui->lblDefective->setVisible(loaded.hasDefectiveLines);
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
    m_edits.Clear();
    m_lastRun.Clear();
    m_model.Filled();
    m_ui->spdList->FitColumns();
    ShowCounts();
    if (loaded.lineCount == 0) {
        for (QPushButton *button :
             {m_ui->cmdCopy, m_ui->cmdDelete, m_ui->cmdMake, m_ui->cmdDetail, m_ui->cmdLimSet})
            button->setEnabled(false);
        if (loaded.isRead && !loaded.isStopped)
            ShowMessage(Message::NoData);
    } else if (m_state.db.HasTable(HistoryTable)) {
        // Not while a run has the database.
        m_model.SetAnswerTip([this](const LineKey &key) {
            return m_isBusy ? QString() : LastAnswerTip(m_state.db, key);
        });
    }
    return loaded;
}

RowSelection SC030110::Selected() const
{
    return m_ui->spdList->Selected();
}

RowSelection SC030110::Meant() const
{
    return m_ui->spdList->Meant();
}

int SC030110::ActiveRow() const
{
    return m_ui->spdList->ActiveLine();
}

void SC030110::ShowCounts()
{
    m_ui->txtSum->setText(Decimal(m_list.Count()).ToFixed(0, true));
    const int selected = RowSelection(m_ui->spdList->SelectedRowRanges()).Count();
    m_ui->lblCounts->setText(CountsText(m_model.Counts(), selected, m_model.rowCount()));
}

/// What the status bar tells about a row: the error that the checks found, that it is shipped, or
/// nothing.
void SC030110::ShowHint(int lineRow)
{
    if (lineRow <= 0)
        return;
    const Line &line = m_list.At(lineRow);
    SetPanelText(*m_ui->stbMain, "REMAINDER",
                 m_model.Counts().changed > 0 ? RemainderText(m_list, lineRow) : QString());
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

/// Runs a command that sets dates of rows and returns the number of those changed, which may be out
/// of view; `done` tells of them.
template <typename Command>
void SC030110::SetDates(const RowSelection &rows, const QString &done, Command &&command)
{
    const Hourglass hourglass;
    const QScopedValueRollback busy(m_isBusy, true);
    const int changed = command();
    m_model.Changed();
    if (Selected().Contains(rows.First()))
        m_ui->spdList->MeanSelection();
    else if (changed > 0)
        m_ui->spdList->SelectToo(rows); // meant without being selected
    ShowHint(ActiveRow());
    if (ActiveRow() > 0 && m_list.At(ActiveRow()).Error() == LineError::None)
        ShowStatus(changed > 0 ? done.arg(changed) : "どの行の回答納期も変わりませんでした");
}

void SC030110::cmdLimSet_Click()
{
    if (!MayRun())
        return;
    const RowSelection rows = Meant();
    if (!CheckDateSelection(m_list, rows))
        return;
    const QString date = AskAnswerDate();
    if (date.isEmpty())
        return;
    SetDates(rows, DatesSetText, [&] { return SetAnswerDates(m_edits, rows, date, StatusBar()); });
}

void SC030110::cmbLimDef_Click()
{
    if (!MayRun())
        return;
    const RowSelection rows = Meant();
    if (!CheckDateSelection(m_list, rows))
        return;
    SetDates(rows, DatesSetText, [&] { return SetSpecifiedDates(m_edits, rows, StatusBar()); });
}

void SC030110::cmdCopy_Click()
{
    if (!MayRun())
        return;
    const int row = SingleRow(Meant());
    if (row == 0)
        return;
    m_model.InsertBelow(row, [&] { CopyLine(m_edits, row); });
    ShowCounts();
    m_ui->spdList->GoTo(ColumnTyped(CellTyping::Quantity), row + 1);
    m_ui->spdList->setFocus();
}

void SC030110::cmdDelete_Click()
{
    if (!MayRun())
        return;
    const int row = SingleRow(Selected()); // what is lost is to be selected
    if (row == 0 || !DeleteLine(m_state.db, m_list.At(row)))
        return;
    m_model.Remove(row);
    ShowCounts();
    if (m_model.rowCount() > 0)
        m_ui->spdList->Activate(std::max(1, m_ui->spdList->ActiveColumn()),
                                std::min(m_ui->spdList->ActiveRow(), m_model.rowCount()));
    ShowHint(ActiveRow()); // the frame came here while the line was still there
}

void SC030110::cmdDetail_Click()
{
    if (!MayRun() || m_list.Count() == 0)
        return;
    const RowSelection meant = Meant();
    if (!CheckSingleRow(meant))
        return;
    const int row = meant.IsEmpty() ? ActiveRow() : meant.First();
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
    const RowSelection wanted = Selected();
    RowSelection selected = wanted;
    int failedRow = 0;
    {
        const Hourglass hourglass;
        const QScopedValueRollback busy(m_isBusy, true);
        failedRow = m_makeAnswers(m_list, selected, m_stamp, StatusBar());
    }
    m_lastRun.Note(m_list, wanted, selected);
    if (m_model.ShowsOpenOnly())
        m_ui->spdList->Rearrange([] {}); // answered lines are to be hidden
    else
        m_model.Changed();
    ShowCounts();
    m_ui->spdList->Select(selected);
    if (failedRow > 0)
        GoToError(failedRow);
    ShowHint(ActiveRow());
}

/// Brings the operator to the cell that is to be mended.
void SC030110::GoToError(int lineRow)
{
    QApplication::beep();
    Reveal(RowSelection({{lineRow, lineRow}}));
    m_ui->spdList->GoTo(ColumnToMend(m_list.At(lineRow).Error()), lineRow);
    m_ui->spdList->setFocus();
}

/// Takes the answered date from the selected rows, or from the active one when none is selected.
void SC030110::ClearDates()
{
    if (!MayRun() || ActiveRow() == 0)
        return;
    RowSelection rows = Meant();
    if (rows.IsEmpty())
        rows = RowSelection({{ActiveRow(), ActiveRow()}});
    if (CheckDateSelection(m_list, rows))
        SetDates(rows, DatesClearedText,
                 [&] { return SetAnswerDates(m_edits, rows, {}, StatusBar()); });
}

void SC030110::TakeBack()
{
    if (!MayRun())
        return;
    LineEdits::TakenBack back;
    m_ui->spdList->Rearrange([&] { back = m_edits.TakeBack(); });
    ShowCounts();
    ShowHint(ActiveRow());
    if (!back.isAnything) {
        ShowStatus("元に戻す変更はありません");
        return;
    }
    m_ui->spdList->Select(Selected().Without(back.unselected));
    if (!back.rows.empty()) {
        Reveal(RowSelection({{back.rows.front(), back.rows.front()}}));
        m_ui->spdList->GoTo(0, back.rows.front());
    }
    ShowStatus("変更を元に戻しました");
}

/// The rows with changes that are not answered yet, of which some may have left the selection
/// since. Where a run has ended early some are registered already.
void SC030110::SelectChanged()
{
    if (!MayRun())
        return;
    std::vector<RowSelection::Range> rows;
    for (int row = 1; row <= m_list.Count(); ++row)
        if (m_list.At(row).IsToBeSent())
            rows.emplace_back(row, row);
    const RowSelection changed(std::move(rows));
    Reveal(changed);
    m_ui->spdList->Select(changed);
    ShowStatus(changed.IsEmpty() ? "変更した行はありません" : "");
}

ListParts SC030110::Parts() const
{
    const RowSelection all
        = m_model.rowCount() > 0 ? RowSelection({{1, m_model.rowCount()}}) : RowSelection();
    return {m_model.LineRows(all), Selected(), m_lastRun.Lines()};
}

void SC030110::PutOut(void (ListFiles::*command)(const ListParts &parts))
{
    if (!MayRun())
        return;
    const QScopedValueRollback busy(m_isBusy, true);
    (m_files.*command)(Parts());
}

void SC030110::Import()
{
    if (!MayRun())
        return;
    const auto plan = m_files.Import();
    if (!plan)
        return;
    RowSelection taken;
    {
        const Hourglass hourglass;
        m_ui->spdList->Rearrange([&] { taken = TakeSheet(*plan, m_edits); });
    }
    ShowCounts();
    ShowTaken(taken);
    ShowStatus(QString("変更 %1 行、分納 %2 行を取り込みました。Ctrl+Z で元に戻せます")
                   .arg(plan->changes.size())
                   .arg(plan->splits.size()));
}

/// Lays what the clipboard holds over the grid, from the active cell on.
void SC030110::Paste()
{
    if (!MayRun() || ActiveRow() == 0)
        return;
    const PastePlan plan = m_ui->spdList->PlanPaste(QApplication::clipboard()->text(), m_list);
    if (!plan.IsGood()) {
        MsgBox(PasteText(plan), BoxStyle::Exclamation, "貼り付け");
        return;
    }
    const RowSelection pasted = ::Paste(plan, m_edits);
    m_model.Changed();
    ShowTaken(pasted);
    ShowStatus(PasteText(plan));
}

/// Brings the operator to rows that have been filled from elsewhere, which he has meant.
void SC030110::ShowTaken(const RowSelection &lineRows)
{
    if (lineRows.IsEmpty())
        return;
    Reveal(lineRows);
    m_ui->spdList->SelectToo(lineRows);
    m_ui->spdList->GoTo(0, lineRows.First());
}

/// Shows all lines where one of these would stay hidden.
void SC030110::Reveal(const RowSelection &lineRows)
{
    if (m_model.ShownRows(lineRows).Count() < lineRows.Count())
        ShowOpenOnly(false);
}

void SC030110::OpenFindBar()
{
    if (MayRun())
        m_ui->findBar->Open();
}

/// Goes on to the next shown line that holds the text, round the end of the list.
void SC030110::Find(bool isForward)
{
    if (!MayRun())
        return;
    const LineFind wanted(m_ui->findBar->Text());
    if (wanted.IsEmpty()) {
        m_ui->findBar->Open();
        return;
    }
    const QScopedValueRollback busy(m_isBusy, true);
    const LineGrid::Found found = m_ui->spdList->Find(wanted, isForward, StatusBar());
    if (found == LineGrid::Found::Stopped) {
        ShowStatus("検索を中止しました");
    } else if (found == LineGrid::Found::No) {
        QApplication::beep();
        const bool isPart = m_model.ShowsOpenOnly();
        ShowStatus("「" + m_ui->findBar->Text() + "」は、"
                   + (isPart ? "表示している未回答の明細にありません" : "一覧にありません"));
    } else {
        ShowStatus(found == LineGrid::Found::Yes
                       ? ""
                       : "一覧の端まで検索したので、反対の端から続けました");
    }
}

void SC030110::ShowOpenOnly(bool isOn)
{
    if (!MayRun()) {
        m_ui->chkOpenOnly->setChecked(m_model.ShowsOpenOnly());
        return;
    }
    const Hourglass hourglass;
    m_ui->spdList->Rearrange([&] { m_model.ShowOpenOnly(isOn); });
    m_ui->spdList->FitColumns(); // to what is shown now
    ShowCounts();
    ShowHint(ActiveRow());
    m_ui->spdList->setFocus();
    m_ui->chkOpenOnly->setChecked(isOn);
}

/// From the grid to the buttons, and from anywhere else back to it.
void SC030110::LeaveGrid()
{
    if (!MayRun())
        return;
    if (m_ui->spdList->hasFocus())
        m_ui->cmdLimSet->setFocus(Qt::TabFocusReason);
    else
        m_ui->spdList->setFocus(Qt::TabFocusReason);
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
