#pragma once

#include "answerlist/AnswerDetail.h"
#include "data/ProgramState.h"
#include "forms/Form.h"
#include "forms/ShownText.h"

#include <memory>
#include <optional>

namespace Ui {
class SC030120;
}

/// The answer detail dialog: shows one stored delivery line with its order and master data; its
/// answered date, quantity and remarks can be saved at once. The line comes in, and the saved date
/// and quantity go back, through the program's state. A box that is not edited is saved just as it
/// came in, whatever it had room to show.
class SC030120 : public Form
{
    Q_OBJECT

public:
    explicit SC030120(ProgramState &state, QWidget *parent = nullptr);
    ~SC030120() override;

    /// Closes the dialog without saving, unless something was edited and the operator does not want
    /// to lose it.
    void reject() override;

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void MakeRoom();
    void ShowLine();
    void ShowHistory(const LineKey &key);
    void ShowNothing();
    void EnterDate();
    void EnterQuantity();

    // Show what has been typed in its form. False, told why and back in the box, when it is wrong.
    bool CheckDate();
    bool CheckQuantity();

    // What the boxes stand for; nothing when a wrong text has been typed.
    std::optional<QString> EnteredDate() const; ///< stored form, or as it came in
    std::optional<Decimal> EnteredQuantity() const;
    QString EnteredRemarks() const;

    // True when the operator sees another text than the one that came in.
    bool IsDateEdited() const;
    bool IsQuantityEdited() const;
    bool IsEdited() const;
    void cmdRegister_Click();

    std::unique_ptr<Ui::SC030120> m_ui;
    ProgramState &m_state;
    ShownText *m_date;
    ShownText *m_quantity;
    QString m_shownRemarks;
    StoredDetail m_stored; ///< as far as the list and this dialog know
};
