#pragma once

#include <QLineEdit>

/// A box whose text comes from the program until somebody, or something, changes it. The box itself
/// holds it unabridged: text() of one that is not edited is what was shown.
class ShownText : public QObject
{
public:
    explicit ShownText(QLineEdit &box)
        : QObject(&box)
        , m_box(box)
    {
        connect(&box, &QLineEdit::textChanged, this, [this] { m_isShown = false; });
    }

    /// The beginning is in view, however narrow the box.
    void Show(const QString &text)
    {
        m_box.setText(text);
        m_box.setCursorPosition(0);
        m_isShown = true;
    }

    /// True as long as the box holds what Show() put in last.
    bool IsShown() const { return m_isShown; }

private:
    QLineEdit &m_box;
    bool m_isShown = false;
};
