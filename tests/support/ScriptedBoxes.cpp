#include "support/ScriptedBoxes.h"

#include "platform/InputBox.h"

#include <gtest/gtest.h>

namespace {

template <typename T>
T Take(std::deque<T> &queue, const T &otherwise, const QString &question)
{
    if (queue.empty()) {
        ADD_FAILURE() << "no answer queued for: " << question.toStdString();
        return otherwise;
    }
    const T answer = queue.front();
    queue.pop_front();
    return answer;
}

} // namespace

ScriptedBoxes::ScriptedBoxes()
{
    SetMsgBoxHandler([this](const MessageBoxRequest &box) { return Answer(box); });
    SetInputBoxHandler([this](const QString &prompt, const QString &) {
        return Take(m_texts, QString(), prompt);
    });
}

ScriptedBoxes::~ScriptedBoxes()
{
    SetMsgBoxHandler({});
    SetInputBoxHandler({});
    EXPECT_TRUE(m_buttons.empty() && m_texts.empty())
        << "an answer was queued that nobody asked for";
}

std::vector<QString> ScriptedBoxes::TakeTexts()
{
    std::vector<QString> texts;
    for (const MessageBoxRequest &box : m_shown)
        texts.push_back(box.text);
    m_shown.clear();
    return texts;
}

int ScriptedBoxes::Answer(const MessageBoxRequest &box)
{
    m_shown.push_back(box);
    if (m_look)
        m_look(box);
    return (box.style & 0xf) == BoxStyle::OkOnly ? BoxButton::Ok
                                                 : Take(m_buttons, int(BoxButton::No), box.text);
}
