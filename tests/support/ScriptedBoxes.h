#pragma once

#include "platform/MsgBox.h"

#include <QString>
#include <deque>
#include <functional>
#include <vector>

/// Stands in for the operator at every message and input box while it lives: keeps what was shown
/// and gives the answers queued beforehand. A box with OK alone needs no answer in the queue; a
/// question without one fails the test and is answered No.
class ScriptedBoxes
{
public:
    ScriptedBoxes();
    ~ScriptedBoxes();
    Q_DISABLE_COPY(ScriptedBoxes)

    /// Queues the button (BoxButton) that answers the next question.
    void Press(int button) { m_buttons.push_back(button); }

    /// Queues the text typed into the next input box; an empty one cancels it.
    void Type(const QString &text) { m_texts.push_back(text); }

    /// Called at every message box before it is answered, as if it stood on the screen.
    void OnBox(std::function<void(const MessageBoxRequest &)> look) { m_look = std::move(look); }

    const std::vector<MessageBoxRequest> &Shown() const { return m_shown; }

    /// The texts of the message boxes shown so far, which are then forgotten.
    std::vector<QString> TakeTexts();

private:
    int Answer(const MessageBoxRequest &box);

    std::function<void(const MessageBoxRequest &)> m_look;
    std::vector<MessageBoxRequest> m_shown;
    std::deque<int> m_buttons;
    std::deque<QString> m_texts;
};
