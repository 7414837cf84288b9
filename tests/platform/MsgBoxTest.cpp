#include "platform/MsgBox.h"

#include "messages/bMessage.h"
#include "platform/InputBox.h"
#include "platform/System.h"
#include "support/QtPrinters.h"

#include <QAbstractButton>
#include <QApplication>
#include <QInputDialog>
#include <QLineEdit>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

namespace {

/// While it lives, waits for a modal window of this kind and name, and lets `act` work on it.
template <typename Box>
class WhenShown
{
public:
    WhenShown(const char *name, std::function<void(Box &)> act)
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this, name, act] {
            QWidget *modal = QApplication::activeModalWidget();
            auto *box = qobject_cast<Box *>(modal);
            if (box && box->objectName() == name && box->isVisible()) {
                isDone = true;
                m_timer.stop();
                act(*box);
            } else if (++m_waits == 500 && modal) {
                modal->close();
            }
        });
        m_timer.start(10);
    }
    ~WhenShown() { EXPECT_TRUE(isDone) << "the box was not shown"; }

    bool isDone = false;

private:
    QTimer m_timer;
    int m_waits = 0;
};

int AnswerTo(int style, Qt::Key key)
{
    const WhenShown<QMessageBox> press("MsgBox",
                                       [key](QMessageBox &box) { QTest::keyClick(&box, key); });
    return MsgBox("本文", style, "題");
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
        {Exclamation, Ok, Ok},
        {Exclamation + DefaultButton2, Ok, Ok},
        {Critical + SystemModal, Ok, Ok},
        {Information + YesNo, Yes, No},
        {Information + YesNo + DefaultButton2, No, No},
        {Information + YesNoCancel, Yes, Cancel},
        {Information + YesNoCancel + DefaultButton2, No, Cancel},
        {Information + OkCancel, Ok, Cancel},
        {Information + OkCancel + DefaultButton2, Cancel, Cancel},
    };
    for (const auto &[style, onEnter, onEsc] : cases) {
        EXPECT_EQ(AnswerTo(style, Qt::Key_Return), onEnter) << style;
        EXPECT_EQ(AnswerTo(style, Qt::Key_Escape), onEsc) << style;
    }
}

TEST(MsgBox, EachButtonGivesItsCode)
{
    constexpr struct
    {
        QMessageBox::StandardButton button;
        int code;
    } cases[] = {{QMessageBox::Yes, 6}, {QMessageBox::No, 7}, {QMessageBox::Cancel, 2}};
    for (const auto &[button, code] : cases) {
        const WhenShown<QMessageBox> press("MsgBox", [button = button](QMessageBox &box) {
            QTest::mouseClick(box.button(button), Qt::LeftButton);
        });
        EXPECT_EQ(MsgBox("？", BoxStyle::YesNoCancel, "題"), code);
    }
}

TEST(MsgBox, ShowsTextTitleAndIcon)
{
    constexpr struct
    {
        int style;
        QMessageBox::Icon icon;
    } cases[] = {
        {0, QMessageBox::NoIcon},        {16 + 4096, QMessageBox::Critical},
        {32, QMessageBox::Question},     {48, QMessageBox::Warning},
        {304, QMessageBox::Warning},     {64, QMessageBox::Information},
        {324, QMessageBox::Information},
    };
    for (const auto &[style, icon] : cases) {
        const WhenShown<QMessageBox> look("MsgBox", [icon = icon](QMessageBox &box) {
            EXPECT_EQ(box.icon(), icon);
            EXPECT_EQ(box.windowTitle(), "注意");
            const auto *label = box.findChild<QLabel *>("qt_msgbox_label");
            EXPECT_EQ(label->text(), "一\n二\n\n三 <b>&A</b>");
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
            QTest::keyClick(&box, Qt::Key_Escape);
        });
        MsgBox("一\r二\r\n\r三 <b>&A</b>", style, "注意");
    }
}

TEST(MsgBox, EnterOnTheDeleteQuestionIsNo)
{
    const WhenShown<QMessageBox> press(
        "MsgBox", [](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Return); });
    EXPECT_EQ(ShowMessage(20), 7);
}

TEST(MsgBox, HourglassMakesRoomAndComesBack)
{
    ASSERT_FALSE(QApplication::overrideCursor());
    {
        const Hourglass hourglass;
        const WhenShown<QMessageBox> look("MsgBox", [](QMessageBox &box) {
            EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
            QTest::keyClick(&box, Qt::Key_Return);
        });
        MsgBox("本文", 0, "題");
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    }
    EXPECT_FALSE(QApplication::overrideCursor());
}

TEST(InputBox, GivesTheTypedTextOrNothing)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        const WhenShown<QInputDialog> type("InputBox", [key](QInputDialog &box) {
            EXPECT_EQ(box.windowTitle(), "納期設定");
            EXPECT_EQ(box.labelText(), "一行目\n二行目");
            QTest::keyClicks(box.findChild<QLineEdit *>(), "970528");
            QTest::keyClick(&box, key);
        });
        EXPECT_EQ(InputBox("一行目\r二行目", "納期設定"), key == Qt::Key_Return ? "970528" : "");
    }
}
