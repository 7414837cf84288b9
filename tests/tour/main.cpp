#include "app/Main.h"
#include "app/Desktop.h"
#include "platform/Log.h"
#include "platform/System.h"
#include "support/Operator.h"
#include "tldb/Commands.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <QWindow>
#include <algorithm>
#include <cstdio>

// The typical use of the program at its real windows: search, list, dates for several lines at
// once, creation, summary; on a database server where TEST_SERVER names one. Leaves a picture of
// every screen and box, the database, the answer files, their decoded records and the log in the
// folder that it is given.

namespace {

constexpr auto Customer = "C0001";
constexpr int AnsweredRows = 12;
constexpr int PatienceMs = 30000; // with a machine that is busy otherwise

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

class Tour : public Operator
{
public:
    explicit Tour(const QString &folder)
        : m_folder(folder)
    {
    }

    QString Run()
    {
        PlanSearch();
        PlanAnswers();
        Start();
        Main(m_folder);
        if (!Failure().isEmpty())
            return Failure();
        return IsDone() ? WriteDecodedAnswers(m_folder) : "the program ended before the tour did";
    }

private:
    /// Takes the picture of the program's windows with their frames, as the operator sees them.
    void Shoot(const QString &name)
    {
        const bool isFramed = QTest::qWaitFor(
            [] {
                return std::ranges::all_of(Windows(), [](const QWindow *window) {
                    return window->frameGeometry() != window->geometry();
                });
            },
            PatienceMs);
        if (!isFramed)
            return Fail("there is no window manager");
        const QImage screen = StillScreen();
        QRect windows;
        for (const QWindow *window : Windows())
            windows |= window->frameGeometry();
        const QString file
            = QString("%1/%2-%3.png").arg(m_folder).arg(++m_picture, 2, 10, QChar('0')).arg(name);
        if (!screen.copy(windows & WorkArea()).save(file))
            Fail("can't write " + file);
    }

    /// What the window manager puts frames around.
    static QWindowList Windows()
    {
        QWindowList windows = QApplication::topLevelWindows();
        windows.removeIf([](const QWindow *window) {
            return !window->isVisible()
                   || (window->type() != Qt::Window && window->type() != Qt::Dialog);
        });
        return windows;
    }

    /// The screen once it has come to rest: the window manager paints frames when it gets to it.
    static QImage StillScreen()
    {
        const auto grab = [] {
            return QApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(
                QImage::Format_RGB32);
        };
        QImage screen;
        const bool isStill
            = QTest::qWaitFor([&] { return screen == std::exchange(screen, grab()); }, PatienceMs);
        return isStill ? screen : QImage();
    }

    /// A step that begins with a picture.
    void Step(const QString &window, const QString &picture, const Action &act)
    {
        At(window, picture, [this, picture, act] {
            Shoot(picture);
            act();
        });
    }

    void ExpectText(const QString &box, const QString &text = {})
    {
        const QString shown = Find<QLineEdit>(box)->text();
        if (shown.isEmpty() || !shown.contains(text))
            Fail("expected another text in " + box + " than " + shown);
    }

    void TypeDate(int days) { Keys(QDate::currentDate().addDays(days).toString("yyMMdd")); }

    void PlanSearch()
    {
        Step("SC030010", "search", [this] { Click("cmdTSansho"); });
        PlanPick("SC040230R", "customers", Customer);
        At("SC030010", "customer picked", [this] {
            ExpectText("txtCustCD", Customer);
            ExpectText("txtCustName");
            Click("cmdSSansho");
        });
        PlanPick("SC040220R", "products", "");
        At("SC030010", "product picked", [this] {
            ExpectText("txtAccHinCD");
            Type("txtAccHinCD", "");
            auto *tabs = Find<QTabBar>("tabDate");
            QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(0).center());
            Type("txtFromDate", "");
            TypeDate(0);
            Type("txtToDate", "");
            TypeDate(60);
            Key(Qt::Key_Tab);
            Shoot("conditions");
            Click("cmdList");
        });
    }

    /// Picks the row that begins with the text by the keyboard alone.
    void PlanPick(const QString &picker, const QString &picture, const QString &text)
    {
        At(picker, picture, [this, picture, text] {
            Keys(text);
            Shoot(picture);
            Key(Qt::Key_Return);
            Key(Qt::Key_Return);
        });
    }

    void PlanAnswers()
    {
        Then(
            "answer list", [] { return Front("SC030110") && ListRows() > AnsweredRows; },
            [this] {
                Shoot("list");
                Key(Qt::Key_Space, Qt::ShiftModifier);
                Key(Qt::Key_I, Qt::AltModifier);
            });
        Step("SC030120", "detail", [this] {
            ExpectText("txtOdrNo");
            Key(Qt::Key_Escape);
        });
        At("SC030110", "list again", [this] {
            ClickRow("spdList", 1);
            ClickRow("spdList", AnsweredRows, Qt::ShiftModifier);
            Shoot("selection");
            Click("cmdLimSet");
        });
        At("InputBox", "date question", [this] {
            TypeDate(20);
            Shoot("date");
            Key(Qt::Key_Return);
        });
        Step("SC030110", "dates", [this] { Click("cmdMake"); });
        Step("MsgBox", "summary", [this] {
            if (!static_cast<QMessageBox *>(Front("MsgBox"))
                     ->text()
                     .startsWith("納期回答作成処理が終了しました"))
                Fail("expected the summary");
            Key(Qt::Key_Return);
        });
        Step("SC030110", "answered", [this] { Click("cmdExit"); });
        Step("SC030010", "search-again", [this] {
            ExpectText("txtCustCD", Customer); // the conditions are kept
            Click("cmdExit");
        });
    }

    static int ListRows()
    {
        const auto *grid = Front({})->findChild<QTableView *>("spdList");
        return grid ? grid->model()->rowCount() : 0;
    }

    QString m_folder;
    int m_picture = 0;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    PrepareDesktop(application);
    QApplication::setCursorFlashTime(0); // pictures wait for a screen that keeps still
    if (application.arguments().size() != 2) {
        std::fprintf(stderr, "usage: tour FOLDER (emptied first)\n");
        return 2;
    }
    const QString folder = QFileInfo(application.arguments()[1]).absoluteFilePath();
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
    const QString problem = Tour(folder).Run();
    (problem.isEmpty() ? out : err)
        << "tour: " << (problem.isEmpty() ? "done, pictures and answers are in " + folder : problem)
        << Qt::endl;
    return problem.isEmpty() ? 0 : 1;
}
