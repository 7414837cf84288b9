#include "tour/Tour.h"

#include "answerlist/SC030110.h"
#include "app/Main.h"
#include "platform/System.h"

#include <QAbstractButton>
#include <QApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>

namespace {

constexpr int PatienceMs = 30'000; // with a machine that is busy otherwise

/// What the window manager puts frames around.
QWindowList FramedWindows()
{
    QWindowList windows = QApplication::topLevelWindows();
    windows.removeIf([](const QWindow *window) {
        return !window->isVisible()
               || (window->type() != Qt::Window && window->type() != Qt::Dialog);
    });
    return windows;
}

} // namespace

QString Tour::Run()
{
    Plan();
    Start(PatienceMs);
    Main(m_folder);
    if (!Failure().isEmpty())
        return Failure();
    return IsDone() ? QString() : "the program ended before the tour did";
}

void Tour::AtRest(const QString &window, const QString &what, Action act)
{
    Then(
        what,
        [window] {
            const QWidget *front = Front(window);
            return front
                   && std::ranges::none_of(
                       front->findChildren<QAbstractButton *>(),
                       [](const QAbstractButton *button) { return button->isDown(); });
        },
        std::move(act));
}

void Tour::Step(const QString &window, const QString &picture, const Action &act)
{
    AtRest(window, picture, [this, picture, act] {
        Shoot(picture);
        act();
    });
}

void Tour::PlanFile(const QString &name)
{
    At("fileDialog", name, [this, name] { // one of its buttons stays down
        Type("fileNameEdit", Path(name));
        Key(Qt::Key_Return);
    });
}

const LineList &Tour::Lines()
{
    return static_cast<const SC030110 *>(Front("SC030110"))->List();
}

void Tour::Shoot(const QString &name)
{
    const bool isFramed = Wait([] {
        return std::ranges::all_of(FramedWindows(), [](const QWindow *window) {
            return window->frameGeometry() != window->geometry();
        });
    });
    if (!isFramed)
        return Fail("there is no window manager");
    const QString file = Path(QString("%1-%2.png").arg(++m_picture, 2, 10, QChar('0')).arg(name));
    constexpr int SmallestFile = 0;
    if (!Cut(StillScreen()).save(file, nullptr, SmallestFile))
        Fail("can't write " + file);
}

QImage Tour::Cut(const QImage &screen) const
{
    QRect windows;
    for (const QWindow *window : FramedWindows())
        windows |= window->frameGeometry();
    return screen.copy(windows & WorkArea());
}

/// The screen once it has come to rest: the window manager paints frames when it gets to it.
QImage Tour::StillScreen()
{
    const auto grab = [] {
        return QApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(
            QImage::Format_RGB32);
    };
    QImage screen;
    const bool isStill = Wait([&] { return screen == std::exchange(screen, grab()); });
    return isStill ? screen : QImage();
}
