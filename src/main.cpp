#include "app/Main.h"
#include "app/Desktop.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    PrepareDesktop(application);
    QCommandLineParser parser;
    parser.setApplicationDescription("納期回答入力");
    parser.addHelpOption();
    const QCommandLineOption home("home", "The program's own folder, in place of the executable's.",
                                  "DIR");
    parser.addOption(home);
    parser.process(application);
    Main(parser.isSet(home) ? QFileInfo(parser.value(home)).absoluteFilePath()
                            : QCoreApplication::applicationDirPath());
    return 0;
}
