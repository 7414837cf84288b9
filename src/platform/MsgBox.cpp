#include "platform/MsgBox.h"

#include "platform/Log.h"
#include "platform/ScrollPane.h"
#include "platform/System.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QScrollBar>
#include <algorithm>

namespace {

std::function<int(const MessageBoxRequest &)> &Handler()
{
    static std::function<int(const MessageBoxRequest &)> handler;
    return handler;
}

QMessageBox::Icon IconOf(int style)
{
    switch (style & 0x70) {
    case BoxStyle::Critical:
        return QMessageBox::Critical;
    case BoxStyle::Question:
        return QMessageBox::Question;
    case BoxStyle::Exclamation:
        return QMessageBox::Warning;
    case BoxStyle::Information:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

QMessageBox::StandardButtons ButtonsOf(int style)
{
    switch (style & 0xf) {
    case BoxStyle::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case BoxStyle::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case BoxStyle::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    default:
        return QMessageBox::Ok;
    }
}

QString NameOf(int button)
{
    switch (button) {
    case BoxButton::Yes:
        return "はい";
    case BoxButton::No:
        return "いいえ";
    case BoxButton::Cancel:
        return "キャンセル";
    default:
        return "OK";
    }
}

QMessageBox::StandardButton SecondButtonOf(QMessageBox::StandardButtons buttons)
{
    if (buttons.testFlag(QMessageBox::No))
        return QMessageBox::No;
    return buttons.testFlag(QMessageBox::Cancel) ? QMessageBox::Cancel : QMessageBox::Ok;
}

/// Where the screen has no room for all of the text, makes it scroll: the buttons stay in view.
void MakeFit(QMessageBox &box)
{
    constexpr QSize Frame(20, 50);
    constexpr int MostPerLine = 45; // characters; a longer line is wrapped
    auto *text = box.findChild<QLabel *>("qt_msgbox_label");
    auto *grid = qobject_cast<QGridLayout *>(box.layout());
    if (!text || !grid || WorkArea().isEmpty())
        return;
    const QSize rest = grid->totalMinimumSize() - text->minimumSizeHint();
    const QSize room = WorkArea().size() - Frame - rest;
    const int longestLine = text->fontMetrics().horizontalAdvance(QString(MostPerLine, u'　'));
    const int width = std::min({text->sizeHint().width(), room.width(), longestLine});
    text->setMinimumWidth(width); // else the box wraps at half of that
    text->setWordWrap(true);
    const bool fits = text->heightForWidth(width) <= room.height();
    text->setWordWrap(false);
    if (fits)
        return; // the box itself wraps what is too wide
    text->setWordWrap(true);
    auto *pane = new ScrollPane;
    pane->setFocusPolicy(Qt::StrongFocus);
    delete grid->replaceWidget(text, pane);
    pane->setWidget(text);
    pane->setMinimumSize(
        std::min(width + pane->verticalScrollBar()->sizeHint().width(), room.width()),
        room.height());
}

/// Writes the box to the log, as grave as its icon.
void LogRequest(const MessageBoxRequest &box)
{
    const QString line = QString("「%1」 %2").arg(box.title, OneLine(WithoutValues(box.text)));
    switch (box.style & 0x70) {
    case BoxStyle::Critical:
        qCCritical(LogBox).noquote() << line;
        break;
    case BoxStyle::Exclamation:
        qCWarning(LogBox).noquote() << line;
        break;
    default:
        qCInfo(LogBox).noquote() << line;
    }
}

/// Shows the box and gives the button pressed.
int Ask(const QString &text, int style, const QString &title)
{
    QMessageBox box(QApplication::activeWindow());
    box.setObjectName("MsgBox");
    box.setTextFormat(Qt::PlainText);
    box.setText(QString(text).replace("\r\n", "\n").replace('\r', '\n'));
    box.setIcon(IconOf(style));
    box.setWindowTitle(title);
    box.setStandardButtons(ButtonsOf(style));
    if (style & BoxStyle::SystemModal)
        box.setWindowFlag(Qt::WindowStaysOnTopHint);
    if (style & BoxStyle::DefaultButton2)
        box.setDefaultButton(SecondButtonOf(box.standardButtons()));
    if (!box.standardButtons().testFlag(QMessageBox::Cancel))
        box.setEscapeButton(SecondButtonOf(box.standardButtons()));

    MakeFit(box);

    // The hourglass of a long run does not hang over a question to the operator.
    if (QApplication::overrideCursor())
        QApplication::setOverrideCursor(Qt::ArrowCursor);
    const int pressed = box.exec();
    if (QApplication::overrideCursor())
        QApplication::restoreOverrideCursor();

    switch (pressed) {
    case QMessageBox::Yes:
        return BoxButton::Yes;
    case QMessageBox::No:
        return BoxButton::No;
    case QMessageBox::Cancel:
        return BoxButton::Cancel;
    default:
        return BoxButton::Ok;
    }
}

} // namespace

int MsgBox(const QString &text, int style, const QString &title)
{
    const MessageBoxRequest box{text, style, title};
    LogRequest(box);
    const int button = Handler() ? Handler()(box) : Ask(text, style, title);
    if (ButtonsOf(style) != QMessageBox::Ok)
        qCInfo(LogBox).noquote() << "応答 " + NameOf(button);
    return button;
}

void SetMsgBoxHandler(std::function<int(const MessageBoxRequest &)> handler)
{
    Handler() = std::move(handler);
}
