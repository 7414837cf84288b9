#pragma once

#include <QWidget>

class QLineEdit;

/// A box for the text that is looked for in the list, hidden until it is asked for. Enter goes to
/// the next place, Shift+Enter to the one before, Esc puts the bar away.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    explicit FindBar(QWidget *parent = nullptr);

    QString Text() const;
    void Open(); ///< the operator comes to the box

signals:
    void Wanted(bool isForward);
    void Closed();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void Close();

    QLineEdit *m_text;
};
