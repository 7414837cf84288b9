#include "forms/Form.h"

#include "platform/Contrast.h"
#include "platform/ScrollPane.h"
#include "platform/System.h"
#include "support/QtPrinters.h"
#include "support/WindowHands.h"

#include <QAccessible>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <QStatusBar>

namespace {

/// A screen with a box that only shows, some to type into, three buttons and a status bar.
class Screen : public Form
{
public:
    explicit Screen(int boxes)
    {
        setObjectName("Screen");
        auto *layout = new QVBoxLayout(this);
        auto *fields = new QFormLayout;
        shown = new QLineEdit("only shown");
        shown->setReadOnly(true);
        shown->setFocusPolicy(Qt::ClickFocus);
        fields->addRow(shown);
        for (int number = 1; number <= boxes; ++number) {
            auto *box = new QLineEdit("text");
            box->setObjectName(QString::number(number));
            fields->addRow("&" + QString::number(number), box);
        }
        layout->addLayout(fields);
        buttons = new QHBoxLayout;
        buttons->setObjectName("buttonLayout");
        for (const char *name : {"list(&L)", "save(&S)", "back(&X)"}) {
            auto *button = new QPushButton(name);
            button->setObjectName(QString(name).left(4));
            buttons->addWidget(button);
        }
        layout->addLayout(buttons);
        bar = new QStatusBar;
        AddStatusPanels(*bar, {"MSG", "DATE"});
        layout->addWidget(bar);
        SetMainButton(findChild<QPushButton *>("list"));
        SetEscapeButton(findChild<QPushButton *>("back"));
        resize(300, 200);
    }

    QLineEdit *shown;
    QHBoxLayout *buttons;
    QStatusBar *bar;
};

class FormTest : public testing::Test, public WindowHands
{
protected:
    /// Whether all of the control can be seen.
    static bool IsSeen(const QWidget *control)
    {
        return control->visibleRegion().boundingRect() == control->rect();
    }
};

/// The colours of a desktop while it lives.
class DesktopColors
{
public:
    DesktopColors(QRgb window, QRgb base, QRgb text)
    {
        QPalette colors;
        for (const auto role : {QPalette::Window, QPalette::Button})
            colors.setColor(role, QColor(window));
        colors.setColor(QPalette::Base, QColor(base));
        for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
            colors.setColor(role, QColor(text));
        QApplication::setPalette(colors);
    }
    ~DesktopColors() { QApplication::setPalette(m_before); }
    Q_DISABLE_COPY(DesktopColors)

private:
    QPalette m_before = QApplication::palette();
};

} // namespace

TEST_F(FormTest, TheFirstBoxHasItsTextSelectedAndSoHasWhicheverIsReachedByAKey)
{
    Screen screen(4);
    ShowWindow(screen);
    EXPECT_EQ(Focus(), "1");
    Keys("A");
    EXPECT_EQ(Text("1"), "A");
    const std::pair<Qt::Key, Qt::KeyboardModifiers> keys[]
        = {{Qt::Key_Return, {}}, {Qt::Key_Tab, {}},
           {Qt::Key_Down, {}},   {Qt::Key_Return, Qt::ShiftModifier},
           {Qt::Key_Up, {}},     {Qt::Key_1, Qt::AltModifier}};
    for (const auto &[key, modifiers] : keys) {
        Key(key, modifiers);
        const QString box = Focus();
        Keys("B");
        EXPECT_EQ(Text(box), "B") << key;
    }
}

TEST_F(FormTest, WhatHasNoRoomScrollsAfterTheFocusAndTheButtonsStay)
{
    Screen screen(60);
    ShowWindow(screen);
    EXPECT_TRUE(WorkArea().contains(screen.frameGeometry()));
    ASSERT_NE(screen.findChild<ScrollPane *>(), nullptr);
    for (int number = 1; number <= 60; ++number) {
        EXPECT_EQ(Focus(), QString::number(number));
        EXPECT_TRUE(IsSeen(Find(Focus()))) << number;
        Key(Qt::Key_Down);
    }
    EXPECT_EQ(Focus(), "list");
    for (const char *control : {"list", "save", "back", "MSG"})
        EXPECT_TRUE(IsSeen(Find(control))) << control;
    Key(Qt::Key_1, Qt::AltModifier);
    EXPECT_TRUE(IsSeen(Find("1"))) << "by its letter, too";
    const auto *bar = screen.findChild<ScrollPane *>()->verticalScrollBar();
    Key(Qt::Key_PageDown);
    EXPECT_GT(bar->value(), 0);
}

TEST_F(FormTest, ALargerFontMakesAnOpenWindowScrollAndMoreButtonsThanFitScrollToo)
{
    Screen screen(10);
    ShowWindow(screen);
    EXPECT_EQ(screen.findChild<ScrollPane *>(), nullptr);
    QFont large = screen.font();
    large.setPixelSize(100);
    screen.setFont(large);
    EXPECT_TRUE(QTest::qWaitFor([&] { return screen.findChild<ScrollPane *>() != nullptr; }));
    EXPECT_LE(screen.minimumSizeHint().width(), WorkArea().width());
    EXPECT_LE(screen.minimumSizeHint().height(), WorkArea().height());
    Find("back")->setFocus();
    EXPECT_TRUE(QTest::qWaitFor([&] { return IsSeen(Find("back")); }));
}

TEST_F(FormTest, ALongStatusTextMakesNoWindowWider)
{
    Screen screen(2);
    ShowWindow(screen);
    const int width = screen.width();
    const QString text(2000, u'長');
    SetPanelWarning(*screen.bar, "MSG", text);
    QApplication::processEvents();
    EXPECT_EQ(screen.width(), width);
    EXPECT_EQ(screen.findChild<QLabel *>("MSG")->toolTip(), text) << "there all of it can be read";
}

TEST_F(FormTest, KeysOfButtonsAreTold)
{
    Screen screen(1);
    screen.findChild<QPushButton *>("save")->setToolTip("keeps it");
    ShowWindow(screen);
    EXPECT_EQ(Find("list")->toolTip(), "Alt+L、Ctrl+Enter");
    EXPECT_EQ(Find("save")->toolTip(), "keeps it（Alt+S）");
    EXPECT_EQ(Find("back")->toolTip(), "Alt+X、Esc");
    int pressed = 0;
    QObject::connect(Find<QPushButton>("list"), &QPushButton::clicked, [&] { ++pressed; });
    for (const char *from : {"1", "save", "back"}) {
        Find(from)->setFocus();
        Key(Qt::Key_Return, Qt::ControlModifier);
        Key(Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier);
    }
    EXPECT_EQ(pressed, 6);
}

TEST_F(FormTest, EveryTextCanBeReadInTheColoursOfAnyDesktop)
{
    const std::tuple<QRgb, QRgb, QRgb> desktops[] = {
        {0xEFF0F1, 0xFFFFFF, 0x232629}, // light
        {0x2A2E32, 0x1B1E20, 0xFCFCFC}, // dark
        {0x000000, 0x000000, 0xFFFFFF}, // high contrast
        {0xFFFFFF, 0xFFFFFF, 0x000000},
        {0x404040, 0xFFFFFF, 0x202020}, // a dark form with light boxes
    };
    Screen screen(1);
    ShowWindow(screen);
    const auto contrast = [](const QWidget *widget, QPalette::ColorRole background,
                             QPalette::ColorRole text) {
        return ContrastRatio(widget->palette().color(background), widget->palette().color(text));
    };
    for (const auto &[window, base, text] : desktops) {
        const DesktopColors colors(window, base, text);
        QApplication::processEvents();
        SCOPED_TRACE(QString::number(window, 16).toStdString());
        EXPECT_GE(contrast(screen.shown, QPalette::Base, QPalette::Text), LeastContrast);
        EXPECT_EQ(screen.shown->palette().color(QPalette::Base),
                  screen.palette().color(QPalette::Window));
        EXPECT_GE(contrast(Box("1"), QPalette::Base, QPalette::Text), LeastContrast);
        SetPanelWarning(*screen.bar, "MSG", "warning");
        EXPECT_GE(contrast(Find("MSG"), QPalette::Window, QPalette::WindowText), LeastContrast);
        SetPanelText(*screen.bar, "MSG", "text");
        EXPECT_EQ(Find("MSG")->palette().color(QPalette::WindowText),
                  screen.palette().color(QPalette::WindowText));
        // The outline of a box is drawn in this shade of its colours.
        EXPECT_GT(ContrastRatio(screen.palette().color(QPalette::Window),
                                Box("1")->palette().color(QPalette::Window).darker(140)),
                  1.1);
    }
}

TEST_F(FormTest, AScreenReaderReadsThePanels)
{
    Screen screen(1);
    ShowWindow(screen);
    const auto name = [&](const char *panel) {
        return QAccessible::queryAccessibleInterface(Find(panel))->text(QAccessible::Name);
    };
    const auto role = [&] { return QAccessible::queryAccessibleInterface(Find("MSG"))->role(); };
    EXPECT_EQ(name("MSG"), "") << "not its key";
    SetPanelText(*screen.bar, "DATE", "26/05/01");
    SetPanelWarning(*screen.bar, "MSG", "警告");
    EXPECT_EQ(name("MSG") + ' ' + name("DATE"), "警告 26/05/01");
    EXPECT_EQ(role(), QAccessible::AlertMessage);
    SetPanelText(*screen.bar, "MSG", "平文");
    EXPECT_EQ(role(), QAccessible::StaticText);
}
