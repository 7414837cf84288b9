#pragma once

#include "answerlist/AnswerList.h"
#include "grid/SpreadGrid.h"

#include <QGuiApplication>
#include <QWindow>

/// Waits until a window's picture is on the screen and the display is at rest.
inline void ShowAndWait(QWidget &window)
{
    window.show();
    while (!window.windowHandle() || !window.windowHandle()->isExposed())
        QCoreApplication::processEvents();
    window.repaint();
    QGuiApplication::sync();
}

/// A shown window with the answer list's grid.
class BenchWindow
{
public:
    BenchWindow()
    {
        grid.resize(1200, 600);
        list.Create(&grid);
        ShowAndWait(grid);
    }

    /// Lays out and paints what has changed: what the event loop does next.
    void Paint() { QCoreApplication::processEvents(); }

    SpreadGrid grid;
    AnswerList list;
};
