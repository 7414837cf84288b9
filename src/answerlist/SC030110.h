#pragma once

#include "answerlist/AnswerList.h"
#include "answerlist/DeliveryLine.h"
#include "answerlist/ListLoading.h"
#include "data/ProgramState.h"
#include "forms/Form.h"

#include <functional>
#include <memory>

namespace Ui {
class SC030110;
}

/// The answer list screen: the delivery lines of the search, their answers, and the way to create
/// them. Loads its list when it appears; without any line it closes itself.
class SC030110 : public Form
{
    Q_OBJECT

public:
    /// Creates the answers of the list. `stamp` is the date and time the screen was loaded at;
    /// `showStatus` shows a text in the status bar at once.
    using MakeAnswers = std::function<void(AnswerList &list, const WriteStamp &stamp,
                                           const ShowStatusText &showStatus)>;

    SC030110(ProgramState &state, MakeAnswers makeAnswers, QWidget *parent = nullptr);
    ~SC030110() override;

    AnswerList &List() { return m_list; }

    void reject() override; ///< closes the screen, unless a cell in edit has a wrong text

protected:
    void showEvent(QShowEvent *event) override;

private:
    void ClearScreen();
    void Activate();
    LoadedList LoadLines();
    void ShowLineCount(int count);
    void ShowHint(int row);
    void ShowStatus(const QString &text);
    ShowStatusText StatusBar(); ///< ShowStatus for others
    template <typename Command>
    void SetDates(Command &&command);
    bool MayRun(); ///< a cell in edit is finished first

    void cmdLimSet_Click();
    void cmbLimDef_Click();
    void cmdCopy_Click();
    void cmdDelete_Click();
    void cmdDetail_Click();
    void cmdMake_Click();
    void spdList_Change(int column, int row);

    std::unique_ptr<Ui::SC030110> m_ui;
    ProgramState &m_state;
    MakeAnswers m_makeAnswers;
    AnswerList m_list;
    WriteStamp m_stamp;
    int m_waits = 0; ///< for the window to come to the screen
};
