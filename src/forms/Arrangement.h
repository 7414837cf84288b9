#pragma once

#include <QSize>
#include <map>
#include <vector>

class QTableView;
class QWidget;

/// How a window stands on the screen: in the middle of it, no larger than its work area, and apart
/// from that as the operator left it the last time.
class Arrangement
{
public:
    explicit Arrangement(QWidget &window)
        : m_window(window)
    {
    }

    /// For a window that is about to be shown for the first time.
    void Place();

    /// Where the screen has no room for all of the window, makes all but its status bar and its
    /// lowest row of buttons scroll; those too when the buttons are too many. To be called again
    /// when the window needs more room.
    void MakeFit();

    /// Gives the columns the widths that the operator gave them last; what they have now are the
    /// window's own.
    void KeepColumns(QTableView &grid);

    /// Keeps what the operator has changed.
    void Keep() const;

    /// Goes back to the window's own size and widths.
    void TakeOwn();

private:
    QWidget &m_window;
    bool m_isScrolling = false;
    QSize m_ownSize; ///< as far as the screen has room for it
    std::map<QTableView *, std::vector<int>> m_ownWidths;
};
