#pragma once

#include <QInputMethodEvent>
#include <QString>
#include <functional>
#include <optional>

class QDropEvent;
class QKeyEvent;
class QLineEdit;
class QMouseEvent;

/// What the operator brings into a box, and the text that will stand around it there.
struct Brought
{
    QString text;
    QString before;
    QString after;
    bool isKey = false;
};

struct Verdict
{
    std::optional<QString> taken; ///< nothing: all of it is refused
    QString word = {};            ///< for the operator, with a beep
    bool isWhole = false;         ///< it takes the place of all that stands in the box
};

/// Decides on a text of the code page without control characters.
using Judge = std::function<Verdict(const Brought &brought)>;

/// A box's rule: nothing that the operator brings in, in whichever way, comes in but through
/// `judge`. What the program puts in is not asked about.
class InputRule : public QObject
{
public:
    InputRule(QLineEdit &box, Judge judge);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    bool FilterKey(const QKeyEvent &key);
    bool FilterCommit(const QInputMethodEvent &event);
    bool FilterDrop(QDropEvent &drop);
    bool FilterMiddleButton(const QMouseEvent &release);
    void ShowMenu(const QPoint &at);
    void Insert(const QString &text);
    std::optional<QString> Admit(const QString &text, bool isKey = false);
    Verdict JudgeOwn(Brought brought) const;
    void Tell(const QString &word);

    QLineEdit &m_box;
    Judge m_judge;
    bool m_hasTold = false;
    bool m_isJudged = false; ///< what an input method commits, on its way once more
};
