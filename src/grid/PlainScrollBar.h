#pragma once

#include <QScrollBar>

/// A scroll bar in plain colours. The style's own has gradients, for which Qt wakes threads: a
/// quarter of a list's first picture.
class PlainScrollBar : public QScrollBar
{
public:
    explicit PlainScrollBar(QWidget *parent)
        : QScrollBar(Qt::Vertical, parent)
    {
    }

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void DrawArrow(QPainter &painter, const QPoint &center, bool isUp) const;
};
