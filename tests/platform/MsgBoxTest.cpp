#include "platform/MsgBox.h"

#include "platform/InputBox.h"
#include "platform/System.h"
#include "support/Operator.h"
#include "support/QtPrinters.h"

#include <QApplication>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
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

/// The answer of a box of this style to a key.
int PlayBox(int style, Qt::Key key)
{
    const auto press = [key](Operator &hand) {
        const auto *box = static_cast<QMessageBox *>(Operator::Front("MsgBox"));
        const auto *label = box->findChild<QLabel *>("qt_msgbox_label");
        EXPECT_EQ(label->text(), "一\n二\n\n三 <b>&A</b>");
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_EQ(box->windowTitle(), "注意");
        const QCursor *hourglass = QApplication::overrideCursor();
        EXPECT_TRUE(!hourglass || hourglass->shape() == Qt::ArrowCursor);
        hand.Key(key);
    };
    return Play("MsgBox", press,
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
        {Information + OkCancel + DefaultButton2, Cancel, Cancel},
    };
    for (const auto &[style, onEnter, onEsc] : cases) {
        EXPECT_EQ(PlayBox(style, Qt::Key_Return), onEnter) << style;
        EXPECT_EQ(PlayBox(style, Qt::Key_Escape), onEsc) << style;
    }
}

TEST(MsgBox, HourglassMakesRoomAndComesBack)
{
    {
        const Hourglass hourglass;
        PlayBox(0, Qt::Key_Return);
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    }
    EXPECT_FALSE(QApplication::overrideCursor());
}

TEST(InputBox, GivesTheTypedTextOrNothing)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        const auto type = [key](Operator &hand) {
            const auto *box = static_cast<QInputDialog *>(Operator::Front("InputBox"));
            EXPECT_EQ(box->labelText(), "一行目\n二行目");
            hand.Keys("970528");
            hand.Key(key);
        };
        const auto show = [] { return InputBox("一行目\r二行目", "納期設定"); };
        EXPECT_EQ(Play("InputBox", type, show), key == Qt::Key_Return ? "970528" : "");
    }
}

TEST(MsgBox, ALongTextScrollsAndLeavesTheButtonsInView)
{
    QStringList lines;
    for (int line = 0; line < 200; ++line)
        lines += QString("注文№ %1").arg(line);
    const auto look = [](Operator &hand) {
        QWidget *box = Operator::Front("MsgBox");
        EXPECT_TRUE(WorkArea().contains(box->frameGeometry()));
        const auto *button = box->findChild<QPushButton *>();
        EXPECT_EQ(button->visibleRegion().boundingRect(), button->rect());
        const auto *label = box->findChild<QLabel *>("qt_msgbox_label");
        const auto lastIsSeen
            = [&] { return label->visibleRegion().boundingRect().bottom() >= label->height() - 2; };
        EXPECT_FALSE(lastIsSeen());
        hand.Key(Qt::Key_Tab); // to the text
        hand.Key(Qt::Key_End);
        for (int page = 0; page < 50; ++page)
            hand.Key(Qt::Key_PageDown);
        EXPECT_TRUE(lastIsSeen());
        hand.Key(Qt::Key_Escape);
    };
    EXPECT_EQ(Play("MsgBox", look, [&] { return MsgBox(lines.join('\r'), 0, "注意"); }),
              BoxButton::Ok);
}
