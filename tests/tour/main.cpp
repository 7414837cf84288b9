#include "app/Main.h"
#include "app/Desktop.h"
#include "support/Operator.h"
#include "tldb/Commands.h"
#include "tldb/answers/AnswerFile.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <cstdio>

// The typical use of the program at its real windows: search, list, dates for several lines at
// once, creation, summary. Leaves a picture of every screen and box, the database, the answer files
// and their decoded records in the folder that it is given.

namespace {

constexpr auto Customer = "C0001";
constexpr int AnsweredRows = 12;

/// Writes every record of the answer files, decoded field by field, to one text file. Empty when
/// all is well, else what is wrong.
QString WriteDecodedAnswers(const QString &folder)
{
    QFile text(folder + "/answers.txt");
    if (!text.open(QIODevice::WriteOnly))
        return "can't write " + text.fileName();
    QDirIterator entries(folder + "/drives", QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        QFile file(entries.next());
        if (!file.open(QIODevice::ReadOnly))
            return "can't read " + file.fileName();
        const auto answers = DecodeAnswers(file.readAll());
        if (HasFaults(answers))
            return file.fileName() + " has a malformed record";
        text.write(("== " + QDir(folder).relativeFilePath(file.fileName()) + "\n\n"
                    + DescribeAnswers(answers, AnswerFormat::Plain))
                       .toUtf8());
    }
    return text.size() > 0 ? QString() : QString("no record was written");
}

class Tour
{
public:
    explicit Tour(const QString &folder)
        : m_folder(folder)
    {
    }

    bool MakeData()
    {
        QDir(m_folder).removeRecursively();
        QTextStream out(stdout);
        QTextStream err(stderr);
        return RunTool({"demo", m_folder, "--lines", "2000", "--seed", "1"}, out, err)
               == ExitCode::Ok;
    }

    QString Run()
    {
        PlanSearch();
        PlanAnswers();
        m_operator.Start();
        Main(m_folder);
        if (!m_operator.Failure().isEmpty())
            return m_operator.Failure();
        if (!m_operator.IsDone())
            return "the program ended before the tour did";
        return WriteDecodedAnswers(m_folder);
    }

private:
    /// Takes the picture of the whole screen, as the operator sees it.
    void Shoot(const QString &name)
    {
        QApplication::processEvents();
        const QString file
            = QString("%1/%2-%3.png").arg(m_folder).arg(++m_picture, 2, 10, QChar('0'));
        QPixmap picture = QApplication::primaryScreen()->grabWindow(0);
        if (picture.isNull())
            picture = Operator::Front({})->grab();
        if (!picture.save(file.arg(name)))
            m_operator.Fail("can't write " + file.arg(name));
    }

    void Expect(bool isTrue, const QString &what)
    {
        if (!isTrue)
            m_operator.Fail("expected " + what);
    }

    QString BoxText() { return static_cast<QMessageBox *>(Operator::Front("MsgBox"))->text(); }

    void PlanSearch()
    {
        m_operator.At("SC030010", "search screen", [this] {
            Shoot("search");
            m_operator.Click("cmdTSansho");
        });
        PlanPick("SC040230R", "customers", Customer);
        m_operator.At("SC030010", "customer picked", [this] {
            Expect(m_operator.Find<QLineEdit>("txtCustCD")->text() == Customer, "the customer");
            Expect(!m_operator.Find<QLineEdit>("txtCustName")->text().isEmpty(), "a customer name");
            m_operator.Click("cmdSSansho");
        });
        PlanPick("SC040220R", "products", "");
        m_operator.At("SC030010", "product picked", [this] {
            Expect(!m_operator.Find<QLineEdit>("txtAccHinCD")->text().isEmpty(), "a product");
            m_operator.Type("txtAccHinCD", "");
            m_operator.Type("txtOdrNo", "PO");
            m_operator.Type("txtOdrNo", "");
            auto *tabs = m_operator.Find<QTabBar>("tabDate");
            QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(0).center());
            const QDate today = QDate::currentDate();
            m_operator.Type("txtFromDate", today.toString("yyMMdd"));
            m_operator.Type("txtToDate", today.addDays(60).toString("yyMMdd"));
            m_operator.Key(Qt::Key_Tab);
            Shoot("conditions");
            m_operator.Click("cmdList");
        });
    }

    /// Picks the row that begins with the text by the keyboard alone.
    void PlanPick(const QString &picker, const QString &picture, const QString &text)
    {
        m_operator.At(picker, picture, [this, picture, text] {
            m_operator.Keys(text);
            Shoot(picture);
            m_operator.Key(Qt::Key_Return);
            m_operator.Key(Qt::Key_Return);
        });
    }

    void PlanAnswers()
    {
        m_operator.Then(
            "answer list", [] { return Operator::Front("SC030110") && ListRows() > AnsweredRows; },
            [this] {
                Shoot("list");
                m_operator.Key(Qt::Key_Space, Qt::ShiftModifier);
                m_operator.Key(Qt::Key_I, Qt::AltModifier);
            });
        m_operator.At("SC030120", "detail", [this] {
            Expect(!m_operator.Find<QLineEdit>("txtOdrNo")->text().isEmpty(), "an order number");
            Shoot("detail");
            m_operator.Key(Qt::Key_Escape);
        });
        m_operator.At("SC030110", "list again", [this] {
            m_operator.ClickRow("spdList", 1);
            m_operator.ClickRow("spdList", AnsweredRows, Qt::ShiftModifier);
            Shoot("selection");
            m_operator.Click("cmdLimSet");
        });
        m_operator.At("InputBox", "date question", [this] {
            m_operator.Keys(QDate::currentDate().addDays(20).toString("yyMMdd"));
            Shoot("date");
            m_operator.Key(Qt::Key_Return);
        });
        m_operator.At("SC030110", "dates set", [this] {
            Shoot("dates");
            m_operator.Click("cmdMake");
        });
        m_operator.At("MsgBox", "summary", [this] {
            Shoot("summary");
            Expect(BoxText().startsWith("納期回答作成処理が終了しました"), "the summary");
            m_operator.Key(Qt::Key_Return);
        });
        m_operator.At("SC030110", "answered list", [this] {
            Shoot("answered");
            m_operator.Click("cmdExit");
        });
        m_operator.At("SC030010", "search screen again", [this] {
            Expect(m_operator.Find<QLineEdit>("txtCustCD")->text() == Customer,
                   "the conditions kept");
            Shoot("search-again");
            m_operator.Click("cmdExit");
        });
    }

    static int ListRows()
    {
        const auto *grid = Operator::Front({})->findChild<QTableView *>("spdList");
        return grid ? grid->model()->rowCount() : 0;
    }

    QString m_folder;
    Operator m_operator;
    int m_picture = 0;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    PrepareDesktop(application);
    if (application.arguments().size() != 2) {
        std::fprintf(stderr, "usage: tour FOLDER (emptied first)\n");
        return 2;
    }
    const QString folder = QFileInfo(application.arguments()[1]).absoluteFilePath();
    Tour tour(folder);
    if (!tour.MakeData())
        return 1;
    const QString problem = tour.Run();
    if (!problem.isEmpty()) {
        std::fprintf(stderr, "tour: %s\n", qPrintable(problem));
        return 1;
    }
    std::printf("tour: done, pictures and answers are in %s\n", qPrintable(folder));
    return 0;
}
