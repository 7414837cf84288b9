#pragma once

#include "answerlist/AnswerList.h"
#include "grid/SpreadGrid.h"

/// A shown window with the answer list's grid.
class BenchWindow
{
public:
    BenchWindow()
    {
        grid.resize(1200, 600);
        list.Create(&grid);
        grid.show();
    }

    /// Paints what has changed, as the event loop would.
    void Paint() { grid.viewport()->repaint(); }

    SpreadGrid grid;
    AnswerList list;
};
