#pragma once

#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <algorithm>
#include <gtest/gtest.h>

// What hands do at a window under test. Each goes through real events; a key goes to whatever has
// the focus.

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

/// The middle of a cell in the grid's viewport; columns and rows count from 1.
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
    const QHeaderView *header = grid.verticalHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, modifiers,
                      {5, header->sectionViewportPosition(row - 1) + 5});
}

/// The window under test and its controls by their names.
class WindowHands
{
protected:
    void ShowWindow(QWidget &shown)
    {
        window = &shown;
        window->show();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    }

    template <typename Control = QWidget>
    Control *Find(const QString &name)
    {
        auto *control = window->findChild<Control *>(name);
        EXPECT_NE(control, nullptr) << name.toStdString();
        return control;
    }

    QLineEdit *Box(const QString &name) { return Find<QLineEdit>(name); }
    QString Text(const QString &name) { return Box(name)->text(); }

    void Click(const QString &name)
    {
        QTest::mouseClick(Find(name), Qt::LeftButton);
        QApplication::processEvents(); // what leaving the last control has queued
    }

    /// Replaces what stands in a box.
    void Type(const QString &name, const QString &text)
    {
        QTest::mouseClick(Find(name), Qt::LeftButton);
        Key(Qt::Key_A, Qt::ControlModifier);
        Key(Qt::Key_Delete);
        QTest::keyClicks(Box(name), text);
    }

    /// Presses a button by its key, and waits until it is up again.
    void Alt(Qt::Key key)
    {
        Key(key, Qt::AltModifier);
        const auto isDown = [](const QPushButton *button) { return button->isDown(); };
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return std::ranges::none_of(window->findChildren<QPushButton *>(), isDown); }));
        QApplication::processEvents();
    }

    QWidget *window = nullptr;
};
