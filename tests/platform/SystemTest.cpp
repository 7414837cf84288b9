#include "platform/System.h"

#include "support/Machine.h"
#include "support/QtPrinters.h"
#include "support/Variable.h"

#include <QDir>
#include <QProcess>
#include <QWidget>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Whether a process of its own would be the first copy; that process is then killed.
PreviousInstance::State InAnotherProcess(const QString &programName)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit((new PreviousInstance(programName))->Is());
    int status = 0;
    ::waitpid(child, &status, 0);
    return PreviousInstance::State(WEXITSTATUS(status));
}

} // namespace

TEST(PreviousInstance, TheLockLivesInAFolderOfTheUsersOwn)
{
    const Machine machine;
    const TestFolder data;
    const TestFolder temp;
    const Variable dataHome("XDG_DATA_HOME", data.Path());
    const Variable tempFolder("TMPDIR", temp.Path());
    const QStringList folders = PreviousInstance::Folders();
    ASSERT_EQ(folders.size(), 3);
    for (const QString &folder : folders) {
        {
            EXPECT_EQ(InAnotherProcess("TL030101"), PreviousInstance::First) << "and then killed";
            const PreviousInstance first("TL030101");
            EXPECT_EQ(first.Is(), PreviousInstance::First);
            EXPECT_EQ(InAnotherProcess("TL030101"), PreviousInstance::Second);
            EXPECT_EQ(InAnotherProcess("TL040101"), PreviousInstance::First);
            EXPECT_TRUE(QFile::exists(folder + "/TL030101.lock"));
        }
        // Somebody else may enter it, or has put another in its place.
        QDir(folder).removeRecursively();
        if (folder == folders[1])
            EXPECT_TRUE(QFile::link(machine.program.Path(), folder));
        else
            EXPECT_TRUE(QDir().mkdir(folder) && ::chmod(folder.toUtf8(), 0711) == 0);
    }
    EXPECT_EQ(PreviousInstance("TL030101").Is(), PreviousInstance::Unknown);
    EXPECT_FALSE(QFile::exists(machine.program.Path("TL030101.lock")));
}

TEST(UserName, IsWhoTheProgramRunsAs)
{
    const Variable user("USER", "somebody-else"); // anybody may set it
    QProcess id;
    id.start("id", {"-un"});
    ASSERT_TRUE(id.waitForFinished());
    EXPECT_EQ(UserName(), QString::fromLocal8Bit(id.readAllStandardOutput()).trimmed());
    EXPECT_FALSE(MachineName().isEmpty());
}

TEST(Registry, ReadsTextsAndNumbers)
{
    const Machine machine;
    const QString key = "SOFTWARE\\NEROVA\\QUILLAN";
    QString text = "before";
    EXPECT_FALSE(RegReadText("HKEY_LOCAL_MACHINE", key, "AppFolder", text)) << "no registry at all";
    machine.windows.Write("REGISTRY.INI", "[HKEY_CURRENT_USER\\SOFTWARE\\NEROVA\\QUILLAN]\r\n"
                                          "Other=C:\\OTHER\r\n"
                                          "[HKEY_LOCAL_MACHINE\\SOFTWARE\\NEROVA\\QUILLAN]\r\n"
                                          "AppFolder=C:\\QUILLAN\\\r\n"
                                          "Number=DWORD:FFFFFFFF\r\n"
                                          "Broken=dword:xyz\r\n");
    const std::pair<const char *, QString> cases[]
        = {{"AppFolder", "C:\\QUILLAN\\"}, {"Number", "4294967295"}, {"Broken", ""}, {"Other", ""}};
    for (const auto &[name, expected] : cases) {
        text = "before";
        EXPECT_EQ(RegReadText("HKEY_LOCAL_MACHINE", key, name, text), !expected.isEmpty()) << name;
        EXPECT_EQ(text, expected) << name;
    }
}

TEST(CenterForm, MiddleOfTheWorkArea)
{
    const QRect area = WorkArea();
    ASSERT_FALSE(area.isEmpty());
    QWidget form;
    form.resize(300, 200);
    CenterForm(form);
    EXPECT_EQ(form.size(), QSize(300, 200));
    EXPECT_LE(std::abs(form.geometry().center().x() - area.center().x()), 1);
    EXPECT_LE(std::abs(form.geometry().center().y() - area.center().y()), 1);

    form.resize(area.width() + 500, area.height() + 100);
    CenterForm(form);
    EXPECT_EQ(form.pos(), area.topLeft()) << "the title bar stays in view";
}
