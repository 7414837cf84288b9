#pragma once

#include "answerlist/LastRun.h"
#include "answerlist/LineModel.h"
#include "answerlist/ListFiles.h"
#include "data/ProgramState.h"
#include "forms/Form.h"
#include "lines/LineSql.h"
#include "lines/ListLoading.h"
#include "lines/RowSelection.h"

#include <functional>
#include <memory>
#include <vector>

class QAction;

namespace Ui {
class SC030110;
}

/// The answer list screen: the delivery lines of the search, their answers, and the way to create
/// them. Loads its list when it appears; without any line it closes itself.
class SC030110 : public Form
{
    Q_OBJECT

public:
    /// Creates the answers of the selected rows; those answered leave the selection. `stamp` is the
    /// date and time the screen was loaded at; `showStatus` shows a text in the status bar at once.
    /// Returns the row that the checks stopped at; 0 when they passed.
    using MakeAnswers
        = std::function<int(LineList &list, RowSelection &selected, const WriteStamp &stamp,
                            const ShowStatusText &showStatus)>;

    SC030110(ProgramState &state, MakeAnswers makeAnswers, QWidget *parent = nullptr);
    ~SC030110() override;

    const LineList &List() const { return m_list; }

    /// Closes the screen, unless a cell in edit has a wrong text, or changes are not registered and
    /// the operator does not want to lose them.
    void reject() override;

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool event(QEvent *event) override;

private:
    void AddCommands();
    void ColorLegend();
    void ClearScreen();
    void Activate();
    LoadedList LoadLines();
    RowSelection Selected() const;
    RowSelection Meant() const;
    int ActiveRow() const;
    void ShowCounts();
    void ShowHint(int lineRow);
    void ShowStatus(const QString &text);
    ShowStatusText StatusBar(); ///< ShowStatus for others
    template <typename Command>
    void SetDates(const RowSelection &rows, const QString &done, Command &&command);
    bool MayRun(); ///< a cell in edit is finished first
    void GoToError(int lineRow);
    void ClearDates();
    void TakeBack();
    void SelectChanged();
    void OpenFindBar();
    void Find(bool isForward);
    void ShowOpenOnly(bool isOn);
    void LeaveGrid();
    ListParts Parts() const;
    void PutOut(void (ListFiles::*command)(const ListParts &parts));
    void Import();
    void Paste();
    void ShowTaken(const RowSelection &lineRows);
    void Reveal(const RowSelection &lineRows);

    void cmdLimSet_Click();
    void cmbLimDef_Click();
    void cmdCopy_Click();
    void cmdDelete_Click();
    void cmdDetail_Click();
    void cmdMake_Click();

    std::unique_ptr<Ui::SC030110> m_ui;
    ProgramState &m_state;
    MakeAnswers m_makeAnswers;
    LineList m_list;
    LineEdits m_edits{m_list};
    LineModel m_model{m_edits};
    WriteStamp m_stamp;
    ListFiles m_files;
    LastRun m_lastRun;
    bool m_isBusy = false; ///< with a load or a run, which may let events through
    int m_waits = 0;       ///< for the window to come to the screen
};
