#include "app/Desktop.h"
#include "platform/Log.h"
#include "tldb/Commands.h"
#include "tour/Day.h"
#include "tour/Looks.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <cstdio>

// Plays a day at the program's windows, on a database server where TEST_SERVER names one. Leaves a
// picture of every screen and box, the database, the answer files, their decoded records and the
// log in the folder that it is given.

namespace {

/// Writes every record of the answer files, decoded field by field, to one text file. Empty when
/// all is well, else what is wrong.
QString WriteDecodedAnswers(const QString &folder)
{
    QString text;
    QTextStream out(&text);
    QTextStream err(stderr);
    QDirIterator entries(folder + "/drives", QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString name = entries.next();
        out << "== " << QDir(folder).relativeFilePath(name) << "\n\n";
        if (RunTool({"show-answers", name}, out, err) != ExitCode::Ok)
            return name + " has a malformed record";
    }
    QFile file(folder + "/answers.txt");
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) <= 0)
        return "no record was written";
    return {};
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    PrepareDesktop(application);
    QApplication::setCursorFlashTime(0); // pictures wait for a screen that keeps still
    const QStringList arguments = application.arguments();
    const bool isLooks = arguments.size() == 4;
    if (arguments.size() != 2 && (!isLooks || !Looks::Take(arguments[2], arguments[3].toInt()))) {
        std::fprintf(stderr,
                     "usage: tour FOLDER [PALETTE POINTS]\n"
                     "       FOLDER is emptied first; with a palette (light, dark, contrast)"
                     " and a font's size it only shows the windows\n");
        return 2;
    }
    const QString folder = QFileInfo(arguments[1]).absoluteFilePath();
    QDir(folder).removeRecursively();
    qputenv("XDG_CONFIG_HOME", (folder + "/config").toUtf8()); // the windows as they are at first
    QTextStream out(stdout);
    QTextStream err(stderr);
    QStringList demo = {"demo", folder, "--lines", "2000", "--seed", "1"};
    if (const QString server = qEnvironmentVariable("TEST_SERVER"); !server.isEmpty())
        demo += {"--server", server};
    if (RunTool(demo, out, err) != ExitCode::Ok)
        return 1;
    qputenv("XDG_STATE_HOME", folder.toUtf8());
    StartLog(LogLevel::Info);
    QString problem = isLooks ? Looks(folder).Run() : Day(folder).Run();
    if (problem.isEmpty() && !isLooks)
        problem = WriteDecodedAnswers(folder);
    (problem.isEmpty() ? out : err)
        << "tour: " << (problem.isEmpty() ? "done, pictures and answers are in " + folder : problem)
        << Qt::endl;
    return problem.isEmpty() ? 0 : 1;
}
