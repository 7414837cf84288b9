#pragma once

#include "forms/Arrangement.h"
#include "forms/StatusPanels.h"

#include <QDialog>
#include <QPointer>
#include <functional>
#include <map>
#include <set>

class QAbstractButton;
class QAction;
class QTableView;

/// What every screen shares: it stands in the middle of the desktop when it appears, Enter and the
/// arrow keys move between its fields, and it can tell when a field is entered and left.
///
/// Enter goes to the next field, Shift+Enter back; Down and Up do the same where the field has no
/// use of its own for them. Enter on a button presses it; a button that only helps to fill the box
/// beside it is reached by Tab, and Enter goes on to the next box.
///
/// A word that a control has for the operator (QStatusTipEvent) stands in the status panel "MSG",
/// when the form has one, until the control takes it back; then the panel shows what it showed
/// before, unless the form has something newer to say.
///
/// The size that the operator gives a form and the widths that he gives its columns are there again
/// the next time, until he has them forgotten: by Ctrl+0 or the menu of any free place.
class Form : public QDialog
{
    Q_OBJECT

public:
    explicit Form(QWidget *parent = nullptr);

    /// Esc presses this button. Without one, Esc does nothing.
    void SetEscapeButton(QAbstractButton *button) { m_escapeButton = button; }

    /// Ctrl+Enter presses this button, from any field.
    void SetMainButton(QAbstractButton *button) { m_mainButton = button; }

    /// This button stands out, as what the form is for.
    void SetMainAct(QAbstractButton *button) { m_mainAct = button; }

    /// Enter and the arrow keys pass this button over.
    void SetHelperButton(QWidget *button) { m_helperButtons.insert(button); }

    /// Forgets the sizes and widths of all windows; those that are open take their own ones.
    static void ForgetArrangement();

    /// ForgetArrangement as an entry for menus, with its key.
    QAction *ForgetAction() const { return m_forgetAction; }

    void setVisible(bool isVisible) override;

signals:
    /// Whatever else the form keeps in a WindowMemory goes back to what it is without one.
    void ArrangementForgotten();

protected:
    using LeaveHandler = std::function<void(QWidget *newFocus, Qt::FocusReason reason)>;

    /// `enter` runs when the operator comes to the field, `leave` when he goes on to another field
    /// of this form; neither when a box or another window takes the focus for a while. When `leave`
    /// takes the focus back, the click that led away from the field does nothing.
    void OnFocus(QWidget *field, std::function<void()> enter, LeaveHandler leave);

    /// Gives the grid's columns the widths that the operator gave them last. To be called whenever
    /// they have been laid out anew; the widths that they have then are the form's own.
    void KeepColumns(QTableView &grid) { m_arrangement.KeepColumns(grid); }

    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    struct FocusHandlers
    {
        std::function<void()> enter;
        LeaveHandler leave;
    };

    void Prepare();
    void ColorControls();
    void TellKeys(QAbstractButton &button) const;
    void MoveFocus(bool isForward);
    void LoseClickOn(QWidget *target);
    void ShowWord(const QString &word);

    std::map<QObject *, FocusHandlers> m_focusHandlers;
    std::set<QWidget *> m_helperButtons;
    QPointer<QWidget> m_lostClickTarget;
    QAbstractButton *m_escapeButton = nullptr;
    QAbstractButton *m_mainButton = nullptr;
    QAbstractButton *m_mainAct = nullptr;
    QString m_word; ///< of a control, in the panel
    QString m_textBehindWord;
    Arrangement m_arrangement;
    QAction *m_forgetAction;
    bool m_isPlaced = false;
};

/// Gives a button the first of these icons that the desktop's theme has; without any it shows its
/// text alone.
void SetThemeIcon(QAbstractButton &button, const QStringList &names);
