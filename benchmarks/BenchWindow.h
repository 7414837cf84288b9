#pragma once

#include "answerlist/LineModel.h"
#include "answerlist/ListColumns.h"
#include "grid/GridView.h"
#include "lines/LineList.h"
#include "lines/RowSelection.h"

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
        constexpr int LinesPerRow = 4;
        grid.resize(1200, 600);
        grid.setModel(&model);
        grid.SetTextLines(LinesPerRow);
        ShowAndWait(grid);
    }

    /// Lays out and paints what has changed: what the event loop does next.
    void Paint() { QCoreApplication::processEvents(); }

    RowSelection Everything() const { return RowSelection({{1, list.Count()}}); }

    LineList list;
    LineEdits edits{list};
    LineModel model{edits};
    GridView grid;
};
