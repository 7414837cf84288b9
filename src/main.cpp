#include "app/Main.h"
#include "app/CommandLine.h"
#include "app/Desktop.h"
#include "app/Guide.h"
#include "platform/Version.h"

#include <QApplication>
#include <memory>

namespace {

bool Run(QApplication &application, const CommandLine &line)
{
    PrepareDesktop(application);
    if (line.isGuide)
        return ShowGuide();
    qCInfo(LogStart).noquote() << QString("TL030101 %1 を開始しました（%2、フォルダ %3）")
                                      .arg(ProgramVersion(), QGuiApplication::platformName(),
                                           line.programDir);
    OpenGuideOnF1(application);
    return Main(line.programDir);
}

} // namespace

int main(int argc, char **argv)
{
    StartLog(LogLevel::Info); // tells, too, why no windows can be made
    const std::unique_ptr<QCoreApplication> application(NeedsNoDisplay(argc, argv)
                                                            ? new QCoreApplication(argc, argv)
                                                            : new QApplication(argc, argv));
    QTextStream out(stdout);
    QTextStream err(stderr);
    CommandLine line;
    if (const auto status = ReadCommandLine(QCoreApplication::arguments(), line, out, err))
        return *status;
    SetLogLevel(line.logLevel);
    return Run(static_cast<QApplication &>(*application), line) ? EXIT_SUCCESS : EXIT_FAILURE;
}
