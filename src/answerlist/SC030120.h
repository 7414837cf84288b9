#pragma once

#include "data/ProgramState.h"
#include "forms/Form.h"

#include <memory>

namespace Ui {
class SC030120;
}

/// The answer detail dialog: shows one stored delivery line with its order and master data; its
/// answered date, quantity and remarks can be saved at once. The line comes in, and the saved date
/// and quantity go back, through the program's state.
class SC030120 : public Form
{
    Q_OBJECT

public:
    explicit SC030120(ProgramState &state, QWidget *parent = nullptr);
    ~SC030120() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void ShowLine();
    void EnterDate();
    void EnterQuantity();

    // Show what has been typed in its form. False, told why and back in the box, when it is wrong.
    bool CheckDate();
    bool CheckQuantity();
    void cmdRegister_Click();

    std::unique_ptr<Ui::SC030120> m_ui;
    ProgramState &m_state;
};
