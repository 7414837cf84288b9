#pragma once

#include <QLineEdit>

/// A box whose text comes from the program until the operator edits it.
class ShownText : public QObject
{
public:
    explicit ShownText(QLineEdit &box)
        : QObject(&box)
        , m_box(box)
    {
        connect(&box, &QLineEdit::textEdited, this, [this] { m_isShown = false; });
    }

    void Show(const QString &text)
    {
        m_box.setText(text);
        m_isShown = true;
    }

    /// True as long as the box holds what Show() put in last.
    bool IsShown() const { return m_isShown; }

private:
    QLineEdit &m_box;
    bool m_isShown = false;
};
