#pragma once

#include <QLabel>

/// A panel of a status bar, known to screen readers by its text. A text that must be heard at once
/// is an alert until another takes its place.
class StatusPanel : public QLabel
{
    Q_OBJECT

public:
    explicit StatusPanel(QWidget *parent);

    void Alert();                    ///< the text that it shows is one
    void Calm() { m_alert.clear(); } ///< whatever it shows, it is none
    bool IsAlert() const { return !m_alert.isEmpty() && m_alert == text(); }

private:
    QString m_alert;
};
