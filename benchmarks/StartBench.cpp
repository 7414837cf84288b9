#include "Benches.h"

#include "app/Desktop.h"
#include "app/Main.h"
#include "platform/Log.h"
#include "ui_SC030010.h"

#include <QApplication>
#include <QDialog>
#include <QPaintEvent>
#include <QProcess>
#include <QTimer>
#include <cstdlib>
#include <stdexcept>

namespace {

/// Ends the program once the picture of a window of this class is on the screen; what it would
/// clean up is no part of a start.
class EndAfterPaint : public QObject
{
public:
    explicit EndAfterPaint(const char *windowClass)
        : m_windowClass(windowClass)
    {
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && object->inherits(m_windowClass))
            QTimer::singleShot(0, qApp, [] {
                QGuiApplication::sync();
                std::_Exit(EXIT_SUCCESS);
            });
        return false;
    }

private:
    const char *m_windowClass;
};

void RunWindow(const QString &which, const QString &folder)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(),
                  {"--first-window", which, "--home", folder});
    if (!process.waitForFinished() || process.exitCode() != 0)
        throw std::runtime_error("the first window did not come");
}

} // namespace

int ShowFirstWindow(int argc, char **argv)
{
    const QByteArrayView which(argv[0]);
    const QByteArray folder(argv[argc - 1]);
    qputenv("XDG_STATE_HOME", folder);
    if (which == "search")
        StartLog(LogLevel::Info); // as the program does
    QApplication application(argc, argv);
    EndAfterPaint end(which == "search" ? "SC030010" : "QDialog");
    application.installEventFilter(&end);
    if (which == "search") {
        PrepareDesktop(application);
        Main(QString::fromLocal8Bit(folder));
    } else {
        PrepareDesktop(application);
        QDialog window;
        Ui::SC030010 form;
        form.setupUi(&window);
        window.exec();
    }
    return EXIT_FAILURE; // the window did not come
}

void BenchStart(const Sizes &sizes, std::vector<Measurement> &results)
{
    const BenchDatabase large = LargeDatabase(sizes);
    results.push_back(
        CompareTimes(QString("start to the search screen, %L1 lines").arg(sizes.database), 1.2,
                     {.run = [&] { RunWindow("search", large.Folder()); }},
                     {.run = [&] { RunWindow("bare", large.Folder()); }}, 21));
}
