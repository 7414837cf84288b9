#pragma once

#include "answerlist/AnswerList.h"
#include "grid/SpreadGrid.h"

#include <QCoreApplication>
#include <QWindow>

/// Waits until a window is on the screen: before that nothing is painted.
inline void ShowAndWait(QWidget &window)
{
    window.show();
    while (!window.windowHandle() || !window.windowHandle()->isExposed())
        QCoreApplication::processEvents();
    window.repaint();
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
