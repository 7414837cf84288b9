#pragma once

#include <QScrollArea>

/// A frame through which one sees a part of its widget where the screen has no room for the whole.
/// Whatever has the focus is in view. Page Up and Page Down scroll it, the arrow keys only when the
/// pane itself has the focus.
class ScrollPane : public QScrollArea
{
public:
    explicit ScrollPane(QWidget *parent = nullptr);

    QSize sizeHint() const override; ///< for the whole

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void BringIntoView(const QWidget &control);
};
