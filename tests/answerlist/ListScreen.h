#pragma once

#include "answerlist/SC030110.h"
#include "grid/GridView.h"
#include "lines/LinesFixture.h"
#include "output/AnswerCreation.h"
#include "support/WindowHands.h"

#include <QLabel>
#include <functional>
#include <optional>

/// The list of four lines: 1 open, 2 shipped, 3 open, 4 a split line that was stored and answered.
class ListScreen : public ListDatabase, public WindowHands
{
protected:
    ListScreen()
    {
        Change("TLMT0040", "1 = 1", "NokiInfKBN = 0");
        for (const int accNo : {1, 2, 3, 4})
            AddOrder(accNo);
        AddLine(1, 1, 1);
        AddLine(2, 1, 1, "ShpSts = 3");
        AddLine(3, 1, 1);
        AddLine(4, 1, 1, "IndVal = 0, AnsVal = 5, AnsLimUmu = 3");
    }

    void Show()
    {
        state.isReloadNeeded = true;
        screen.emplace(state, [this](auto &list, auto &selected, auto &stamp, auto &showStatus) {
            return AnswerCreation(state.db, state.files, list, selected, stamp, showStatus)
                .MakeAnswers();
        });
        window = &*screen;
        screen->show();
        screen->activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([this] {
            return !screen->isVisible() || (!state.isReloadNeeded && screen->isActiveWindow());
        }));
    }

    GridView &Grid() { return *Find<GridView>("spdList"); }
    int RowCount() const { return screen->List().Count(); }
    QString Cell(int row, int column) const { return CellText(screen->List().At(row), column); }
    QString Status() { return Find<QLabel>("MSG")->text(); }

    void Select(const std::vector<int> &rows)
    {
        Grid().clearSelection();
        for (const int row : rows)
            ClickRow(Grid(), row, Qt::ControlModifier);
    }

    void TypeInto(int column, int row, const QString &text)
    {
        ClickCell(Grid(), column, row);
        Keys(text);
    }

    /// The selected rows, then the active cell.
    QString Cursor()
    {
        QString rows;
        for (int row = 1; row <= RowCount(); ++row)
            if (Grid().IsRowSelected(row))
                rows += QString::number(row);
        return rows + QString(" %1,%2").arg(Grid().ActiveColumn()).arg(Grid().ActiveRow());
    }

    /// A row's heading bears what has become of its line as a picture, a tooltip and a word.
    void ExpectMark(int row, const QString &mark)
    {
        const auto heading
            = [&](int role) { return Grid().model()->headerData(row - 1, Qt::Vertical, role); };
        EXPECT_EQ(heading(Qt::ToolTipRole).toString(), mark);
        EXPECT_EQ(heading(Qt::AccessibleTextRole).toString(),
                  QString("%1 %2").arg(row).arg(mark).trimmed());
        const QImage icon = qvariant_cast<QIcon>(heading(Qt::DecorationRole)).pixmap(16).toImage();
        QImage blank(icon.size(), icon.format());
        blank.fill(Qt::transparent);
        EXPECT_EQ(icon == blank, mark.isEmpty());
    }

    /// Plays in the detail dialog that Alt+I opens, until it is closed.
    void InDetail(const std::function<void(Operator &)> &act)
    {
        PlayIn("SC030120", act, [] { Key(Qt::Key_I, Qt::AltModifier); });
        // As a window manager does when a dialog closes.
        screen->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    }

    void ExpectDetail(const QString &order)
    {
        InDetail([&](Operator &hand) {
            EXPECT_EQ(hand.Find<QLineEdit>("txtOdrNo")->text(), order);
            hand.Key(Qt::Key_Escape);
        });
    }

    ScriptedBoxes boxes;
    std::optional<SC030110> screen;
};
