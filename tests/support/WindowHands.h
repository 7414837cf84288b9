#pragma once

#include "support/Hands.h"
#include "support/Operator.h"

#include <QPushButton>
#include <algorithm>
#include <gtest/gtest.h>

/// Plays in the modal window of this object name that `open` shows.
inline void PlayIn(const QString &modal, const std::function<void(Operator &)> &act,
                   const std::function<void()> &open)
{
    Operator hands;
    hands.At(modal, modal, [&] { act(hands); });
    hands.Start();
    open();
    EXPECT_TRUE(QTest::qWaitFor([&] { return hands.IsDone(); })) << hands.Failure().toStdString();
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

    void Type(const QString &name, const QString &text) { TypeInto(*Box(name), text); }

    /// Presses a button by its key, and waits until it is up again.
    void Alt(Qt::Key key)
    {
        Key(key, Qt::AltModifier);
        const auto isDown = [](const QAbstractButton *button) { return button->isDown(); };
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return std::ranges::none_of(window->findChildren<QAbstractButton *>(), isDown);
        }));
        QApplication::processEvents();
    }

    QWidget *window = nullptr;
};
