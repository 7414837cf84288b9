#include "platform/System.h"

#include "support/Machine.h"
#include "support/QtPrinters.h"
#include "support/Variable.h"

#include <QDir>
#include <QWidget>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

TEST(WindowsDir, ComesFromTheEnvironment)
{
    const std::pair<QString, QString> cases[]
        = {{"/opt/win//", "/opt/win"}, {"/", "/"}, {"", "/etc/talven"}, {QString(), "/etc/talven"}};
    for (const auto &[variable, dir] : cases) {
        const Variable windir("WINDIR", variable);
        EXPECT_EQ(GetWindowsDir(), dir) << variable.toStdString();
    }
}

TEST(PreviousInstance, SecondCopyIsRefusedUntilTheFirstEnds)
{
    const Machine machine;
    {
        const PreviousInstance first("TL030101");
        EXPECT_TRUE(first.IsFirst());
        EXPECT_FALSE(PreviousInstance("TL030101").IsFirst());
        EXPECT_TRUE(PreviousInstance("TL040101").IsFirst());
    }
    EXPECT_TRUE(PreviousInstance("TL030101").IsFirst());
}

TEST(PreviousInstance, ACrashedCopyDoesNotBlockTheNext)
{
    const Machine machine;
    const pid_t child = ::fork();
    if (child == 0) {
        const auto *lost = new PreviousInstance("TL030101");
        ::_exit(lost->IsFirst() ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    EXPECT_TRUE(PreviousInstance("TL030101").IsFirst());
}

TEST(PreviousInstance, WhereNoLockCanBeMadeTheOperatorIsNotKeptOut)
{
    const Machine machine;
    ASSERT_TRUE(QDir().mkdir(machine.runtimeFolder.Path("TL030101.lock")));
    EXPECT_TRUE(PreviousInstance("TL030101").IsFirst());
}

TEST(Registry, ReadsTextsAndNumbers)
{
    const Machine machine;
    const QString key = "SOFTWARE\\NEROVA\\QUILLAN";
    QString text = "before";
    EXPECT_FALSE(RegReadText("HKEY_LOCAL_MACHINE", key, "AppFolder", text)) << "no registry at all";
    EXPECT_EQ(text, "");

    machine.windows.Write("REGISTRY.INI", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\NEROVA\\QUILLAN]\r\n"
                                          "AppFolder=C:\\QUILLAN\\\r\n"
                                          "Small=dword:0000001f\r\n"
                                          "Large=DWORD:FFFFFFFF\r\n"
                                          "Broken=dword:xyz\r\n"
                                          "Empty=\r\n"
                                          "[HKEY_CURRENT_USER\\SOFTWARE\\NEROVA\\QUILLAN]\r\n"
                                          "Other=C:\\OTHER\r\n");
    const struct
    {
        const char *name;
        bool isFound;
        const char *text;
    } cases[] = {
        {"AppFolder", true, "C:\\QUILLAN\\"},
        {"Small", true, "31"},
        {"Large", true, "4294967295"},
        {"Broken", false, ""},
        {"Empty", false, ""},
        {"Other", false, ""},
    };
    for (const auto &[name, isFound, expected] : cases) {
        text = "before";
        EXPECT_EQ(RegReadText("HKEY_LOCAL_MACHINE", key, name, text), isFound) << name;
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
