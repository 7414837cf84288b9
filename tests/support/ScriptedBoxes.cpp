#include "support/ScriptedBoxes.h"

#include "platform/InputBox.h"

#include <gtest/gtest.h>

ScriptedBoxes::ScriptedBoxes()
{
    SetMsgBoxHandler([this](const MessageBoxRequest &box) { return Answer(box); });
    SetInputBoxHandler(
        [this](const QString &prompt, const QString &) { return AnswerText(prompt); });
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
    const int buttons = box.style & 0xf;
    if (buttons == BoxStyle::OkOnly)
        return BoxButton::Ok;
    if (m_buttons.empty()) {
        ADD_FAILURE() << "no answer queued for the question: " << box.text.toStdString();
        return buttons == BoxStyle::OkCancel ? BoxButton::Cancel : BoxButton::No;
    }
    const int button = m_buttons.front();
    m_buttons.pop_front();
    return button;
}

QString ScriptedBoxes::AnswerText(const QString &prompt)
{
    if (m_texts.empty()) {
        ADD_FAILURE() << "no text queued for the input box: " << prompt.toStdString();
        return {};
    }
    const QString text = m_texts.front();
    m_texts.pop_front();
    return text;
}
