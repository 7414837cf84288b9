#pragma once

#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableView>
#include <QTest>

// What hands do at any window. Each goes through real events; a key goes to whatever has the focus;
// a grid's columns and rows count from 1.

inline QString Focus()
{
    const QWidget *focus = QApplication::focusWidget();
    return focus ? focus->objectName() : QString();
}

inline void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

inline void Keys(const QString &text)
{
    for (const QChar c : text)
        QTest::keyClick(QApplication::focusWidget(), c.toLatin1());
}

/// The middle of a cell in the grid's viewport.
inline QPoint CellPoint(const QTableView &grid, int column, int row)
{
    return grid.visualRect(grid.model()->index(row - 1, column - 1)).center();
}

inline void ClickCell(QTableView &grid, int column, int row, Qt::KeyboardModifiers modifiers = {})
{
    grid.scrollTo(grid.model()->index(row - 1, column - 1));
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, modifiers, CellPoint(grid, column, row));
}

/// A row's heading.
inline void ClickRow(QTableView &grid, int row, Qt::KeyboardModifiers modifiers = {})
{
    grid.scrollTo(grid.model()->index(row - 1, 0));
    const QHeaderView *header = grid.verticalHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, modifiers,
                      {header->width() / 2, header->sectionViewportPosition(row - 1) + 6});
}

/// Replaces what stands in a box.
inline void TypeInto(QLineEdit &box, const QString &text)
{
    QTest::mouseClick(&box, Qt::LeftButton);
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClicks(&box, text);
}
