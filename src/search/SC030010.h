#pragma once

#include "data/ProgramState.h"
#include "forms/Form.h"
#include "search/SearchForm.h"

#include <memory>

namespace Ui {
class SC030010;
}
class QLineEdit;
class QRadioButton;
class ShownText;

/// The search conditions screen. Closes through its list button, which sets the list requested flag
/// and leaves what was entered in the conditions, or its exit button, which clears the flag.
class SC030010 : public Form
{
    Q_OBJECT

public:
    explicit SC030010(ProgramState &state, QWidget *parent = nullptr);
    ~SC030010() override;

    void reject() override; ///< the window's close button: as the exit button

private:
    void ShowConditions();
    void ShowDateTab();
    void TakeConditions();
    void cmdList_Click();
    void cmdExit_Click();
    void cmdTSansho_Click();
    void cmdSSansho_Click();
    void txtCustCD_LostFocus();
    void txtAccHinCD_LostFocus();
    void DateBox_LostFocus(QLineEdit *box, QWidget *newFocus, Qt::FocusReason reason);
    bool CheckDateBox(QLineEdit *box);
    void ShowSortKeys();

    std::unique_ptr<Ui::SC030010> m_ui;
    ProgramState &m_state;
    QRadioButton *m_sortButtons[6][6] = {}; ///< [position][key]
    SortKeys m_sortKeys;
    ShownText *m_productName = nullptr; ///< of the master as long as the operator leaves it so
};
