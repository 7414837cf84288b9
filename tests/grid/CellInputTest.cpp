#include "grid/CellInput.h"

#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

TEST(CellInput, WhatIsPastedOrTypedIntoACellStandsOrIsRefused)
{
    ScriptedBoxes boxes;
    const DateCellInput date;
    const QuantityCellInput quantity;
    const struct
    {
        const CellInput &input;
        QString brought;
        bool isAccepted;
        QString typed; ///< as it stands in the editor then
    } cases[] = {
        {date, "２６１２０８", true, "261208"},
        {date, " 2026/12/08\n", true, "261208"},
        {date, "26/12/08", true, "261208"},
        {date, "26/13/08", true, ""}, // nothing has come in
        {date, "26120", false, "26120"},
        {quantity, "1,234.5", true, "1234.5"},
        {quantity, "-5", false, "-5"},
    };
    for (const auto &[input, brought, isAccepted, expected] : cases) {
        QLineEdit editor;
        input.Prepare(editor);
        EXPECT_FALSE(editor.testAttribute(Qt::WA_InputMethodEnabled));
        QApplication::clipboard()->setText(brought);
        QTest::keyClick(&editor, Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(input.Accepts(editor.text()), isAccepted) << brought.toStdString();
        EXPECT_EQ(editor.text(), expected) << brought.toStdString();
        EXPECT_EQ(boxes.TakeTexts().size(), isAccepted ? 0u : 1u) << brought.toStdString();
    }
    for (const QString text : {"26 1 8", "2612.8", "26+1+8", "261d08", "26x12y08"})
        EXPECT_FALSE(date.Accepts(text)) << text.toStdString();
}
