#pragma once

#include <QSize>
#include <QString>
#include <vector>

class QWidget;

/// How the operator has arranged a window: its size, its columns' widths, what he has switched on.
/// Kept from one day to the next in his own settings file. Lengths come in and go out in pixels;
/// they are kept in lines of the window's font, so that with a larger font there is as much to see.
/// What can't be read counts as not kept, and what can't be written is kept for no longer than the
/// window lives.
class WindowMemory
{
public:
    /// A window is known by its object name.
    explicit WindowMemory(const QWidget &window);

    /// The user's settings file.
    static QString File();

    /// Forgets the arrangement of every window. Windows that are open stay as they are:
    /// Form::ForgetArrangement() is for them, too.
    static void ForgetAll();

    QSize Size() const; ///< empty: none is kept
    void SetSize(const QSize &size);
    bool IsMaximized() const { return Flag("maximized"); }
    void SetMaximized(bool isMaximized) { SetFlag("maximized", isMaximized); }

    std::vector<int> Widths(const QString &grid) const; ///< in order, 0: none is kept
    void SetWidths(const QString &grid, const std::vector<int> &widths);

    bool Flag(const QString &name) const; ///< false: off or not kept
    void SetFlag(const QString &name, bool isOn);

private:
    std::vector<int> Lengths(const QString &key) const;
    void SetLengths(const QString &key, const std::vector<int> &lengths);

    QString m_group;
    double m_line; ///< its height in pixels
};
