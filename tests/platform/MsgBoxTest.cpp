#include "platform/MsgBox.h"

#include "platform/InputBox.h"
#include "platform/System.h"
#include "support/Operator.h"
#include "support/QtPrinters.h"

#include <QApplication>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <gtest/gtest.h>

namespace {

/// Lets the operator act on the window of this name that `show` brings up; gives what `show` does.
template <typename Act, typename Show>
auto Play(const QString &window, Act &&act, Show &&show)
{
    Operator hand;
    hand.At(window, "shown", [&] { act(hand); });
    hand.Start();
    const auto result = show();
    EXPECT_TRUE(hand.IsDone()) << hand.Failure().toStdString();
    return result;
}

template <typename Act>
int PlayBox(int style, Act &&act)
{
    return Play(
        "MsgBox",
        [&](Operator &hand) { act(hand, static_cast<QMessageBox &>(*Operator::Front("MsgBox"))); },
        [style] { return MsgBox("一\r二\r\n\r三 <b>&A</b>", style, "注意"); });
}

} // namespace

TEST(MsgBox, EnterAndEscAnswerAsTheStyleSays)
{
    using namespace BoxStyle;
    using namespace BoxButton;
    constexpr struct
    {
        int style;
        int onEnter;
        int onEsc;
    } cases[] = {
        {Exclamation + DefaultButton2, Ok, Ok},
        {Information + YesNo, Yes, No},
        {Information + YesNo + DefaultButton2, No, No},
        {Information + YesNoCancel, Yes, Cancel},
        {Information + OkCancel, Ok, Cancel},
        {Information + OkCancel + DefaultButton2, Cancel, Cancel},
    };
    for (const auto &[style, onEnter, onEsc] : cases)
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape})
            EXPECT_EQ(PlayBox(style, [key](Operator &hand, QMessageBox &) { hand.Key(key); }),
                      key == Qt::Key_Return ? onEnter : onEsc)
                << style;
}

TEST(MsgBox, ShowsTextTitleAndIcon)
{
    PlayBox(BoxStyle::Critical + BoxStyle::SystemModal, [](Operator &hand, QMessageBox &box) {
        EXPECT_EQ(box.icon(), QMessageBox::Critical);
        EXPECT_EQ(box.windowTitle(), "注意");
        const auto *label = box.findChild<QLabel *>("qt_msgbox_label");
        EXPECT_EQ(label->text(), "一\n二\n\n三 <b>&A</b>");
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        hand.Key(Qt::Key_Escape);
    });
}

TEST(MsgBox, HourglassMakesRoomAndComesBack)
{
    ASSERT_FALSE(QApplication::overrideCursor());
    {
        const Hourglass hourglass;
        PlayBox(0, [](Operator &hand, QMessageBox &) {
            EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
            hand.Key(Qt::Key_Return);
        });
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    }
    EXPECT_FALSE(QApplication::overrideCursor());
}

TEST(InputBox, GivesTheTypedTextOrNothing)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        const auto type = [key](Operator &hand) {
            const auto *box = static_cast<QInputDialog *>(Operator::Front("InputBox"));
            EXPECT_EQ(box->windowTitle(), "納期設定");
            EXPECT_EQ(box->labelText(), "一行目\n二行目");
            hand.Keys("970528");
            hand.Key(key);
        };
        const auto show = [] { return InputBox("一行目\r二行目", "納期設定"); };
        EXPECT_EQ(Play("InputBox", type, show), key == Qt::Key_Return ? "970528" : "");
    }
}
