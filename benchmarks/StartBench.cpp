#include "Benches.h"

#include "app/Desktop.h"
#include "app/Main.h"
#include "output/OutputFolders.h"
#include "search/SC030010.h"

#include <QApplication>
#include <QLabel>
#include <QPaintEvent>
#include <QProcess>
#include <QTimer>
#include <cstdlib>
#include <stdexcept>

namespace {

/// Ends the program once the window's picture is on the screen; what it would clean up is no part
/// of a start.
class EndAfterPaint : public QObject
{
public:
    explicit EndAfterPaint(QWidget *window)
        : QObject(window)
    {
        window->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            QTimer::singleShot(0, qApp, [] {
                QGuiApplication::sync();
                std::_Exit(EXIT_SUCCESS);
            });
        return false;
    }
};

void RunWindow(const QString &which, const QString &folder)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {"--first-window", which, folder});
    if (!process.waitForFinished() || process.exitCode() != 0)
        throw std::runtime_error("the first window did not come");
}

} // namespace

int ShowFirstWindow(const QString &which, const QString &folder, int argc, char **argv)
{
    QApplication application(argc, argv);
    ProgramState state;
    std::unique_ptr<QWidget> window;
    if (which == "search") {
        PrepareDesktop(application);
        if (!InitApp(state, folder) || !CheckAnswerOutputPaths(state.db, state.files))
            return 1;
        state.isSearchMode = true;
        SetSearchDefaults(state);
        window = std::make_unique<SC030010>(state);
    } else {
        window = std::make_unique<QWidget>();
        window->resize(820, 640);
        if (which == "word")
            new QLabel("納期", window.get());
    }
    new EndAfterPaint(window.get());
    window->show();
    return application.exec();
}

void BenchStart(const Sizes &sizes, std::vector<Measurement> &results)
{
    const BenchDatabase large = LargeDatabase(sizes);
    results.push_back(
        CompareTimes(QString("start to the search screen, %L1 lines").arg(sizes.database), 1.3,
                     {.run = [&] { RunWindow("search", large.Folder()); }},
                     {.run = [&] { RunWindow("empty", large.Folder()); }}, 21));
    // How much of it any window with text on it takes: the fonts.
    results.push_back(
        CompareTimes("start to the search screen against a window with one Japanese word", 1.3,
                     {.run = [&] { RunWindow("search", large.Folder()); }},
                     {.run = [&] { RunWindow("word", large.Folder()); }}, 9));
}
