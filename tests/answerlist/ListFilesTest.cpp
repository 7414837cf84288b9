#include "answerlist/ListPaper.h"
#include "answerlist/SC030110.h"

#include "grid/GridView.h"
#include "output/AnswerCreation.h"
#include "sheet/SheetFixture.h"
#include "support/WindowHands.h"

#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QPdfWriter>
#include <QRadioButton>
#include <optional>

namespace {

using Texts = std::vector<QString>;

/// The list of four lines: 1 open, 2 shipped, 3 and 4 open and of one order.
class ListFilesTest : public ListDatabase, public WindowHands
{
protected:
    ListFilesTest()
    {
        Change("TLMT0040", "1 = 1", "NokiInfKBN = 0");
        for (const int accNo : {1, 2, 3})
            AddOrder(accNo);
        AddLine(1, 1, 1);
        AddLine(2, 1, 1, "ShpSts = 3");
        AddLine(3, 1, 1, "IndVal = 60");
        AddLine(3, 1, 2, "IndVal = 40");
        state.conditions.customerCode = "C1";
        state.conditions.customerName = "青葉電機";
        screen.emplace(state, [this](auto &list, auto &selected, auto &stamp, auto &showStatus) {
            return AnswerCreation(state.db, state.files, list, selected, stamp, showStatus)
                .MakeAnswers();
        });
        window = &*screen;
        screen->show();
        Activate();
        EXPECT_TRUE(QTest::qWaitFor([this] { return !state.isReloadNeeded; }));
    }

    /// As a window manager does when a dialog closes.
    void Activate()
    {
        screen->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
        Grid().setFocus();
    }

    GridView &Grid() { return *Find<GridView>("spdList"); }
    QString Status() { return Find<QLabel>("MSG")->text(); }

    QString Answers() const
    {
        QStringList texts;
        for (int row = 1; row <= screen->List().Count(); ++row) {
            const Answer &answer = screen->List().At(row).Now();
            texts += answer.quantity.ToText() + '/' + answer.date;
        }
        return texts.join(' ');
    }

    QString SelectedRows()
    {
        QString rows;
        for (int row = 1; row <= screen->List().Count(); ++row)
            rows += Grid().IsRowSelected(row) ? QString::number(row) : QString();
        return rows;
    }

    /// Adds the step of naming a file.
    void NameFile(Operator &hands, const QString &name)
    {
        hands.At("fileDialog", "the file's name", [this, &hands, name] {
            hands.Type("fileNameEdit", file.folder.Path(name));
            hands.Key(Qt::Key_Return);
        });
    }

    /// Presses the key of a command and plays its windows.
    void Play(Operator &hands, Qt::Key key)
    {
        hands.Start();
        Alt(key);
        EXPECT_TRUE(QTest::qWaitFor([&] { return hands.IsDone(); }))
            << hands.Failure().toStdString();
        Activate();
    }

    /// Chooses an option of the output dialog and names the file.
    void PutOut(Qt::Key command, const std::vector<QString> &options, const QString &name)
    {
        Operator hands;
        hands.At("ListOutput", "the choice", [&] {
            for (const QString &option : options)
                hands.Find<QRadioButton>(option)->click();
            hands.Click("cmdOutput");
        });
        NameFile(hands, name);
        Play(hands, command);
    }

    /// Brings a file in; `act` is what is done at the dialog that shows it.
    void BringIn(const QString &name, const std::function<void(Operator &)> &act)
    {
        Operator hands;
        NameFile(hands, name);
        hands.At("SheetImport", "what the file changes", [&] { act(hands); });
        Play(hands, Qt::Key_T);
    }

    QByteArray Read(const QString &name) const
    {
        QFile opened(file.folder.Path(name));
        EXPECT_TRUE(opened.open(QIODevice::ReadOnly)) << name.toStdString();
        return opened.readAll();
    }

    /// The cells of a table, columns joined by "|" and rows by a blank.
    static QString CellsOf(const QTableView &table)
    {
        QStringList rows;
        for (int row = 0; row < table.model()->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < table.model()->columnCount(); ++column)
                cells += table.model()->index(row, column).data().toString();
            rows += cells.join('|');
        }
        return rows.join(' ');
    }

    void Paste(int column, int row, const QString &text)
    {
        QApplication::clipboard()->setText(text);
        Grid().clearSelection();
        Grid().Activate(column, row);
        Key(Qt::Key_V, Qt::ControlModifier);
    }

    ScriptedBoxes boxes;
    std::optional<SC030110> screen;
};

int PagesOf(const QByteArray &pdf)
{
    return int(pdf.count("/Type /Page\n"));
}

} // namespace

TEST_F(ListFilesTest, TheListGoesOutInEveryForm)
{
    PutOut(Qt::Key_E, {}, "all.csv");
    EXPECT_EQ(Status(), "all.csv に 4 行を出力しました");
    EXPECT_EQ(EditedFile(QString::fromUtf8(Read("all.csv"))).rows.size(), 4u);

    ClickRow(Grid(), 1, Qt::ControlModifier);
    ClickRow(Grid(), 3, Qt::ControlModifier);
    PutOut(Qt::Key_E, {"optCsvShiftJis"}, "selected"); // gets its suffix
    EXPECT_EQ(Status(), "selected.csv に 2 行を出力しました");
    EXPECT_TRUE(Read("selected.csv").startsWith("\x8e\xf3\x92\x8d")) << "受注 in Shift-JIS";
    PutOut(Qt::Key_E, {"optShown", "optXlsx"}, "book.xlsx");
    EXPECT_EQ(Status(), "book.xlsx に 4 行を出力しました");
    EXPECT_TRUE(Read("book.xlsx").startsWith("PK"));
    PutOut(Qt::Key_P, {"optShown", "optPdf"}, "list.pdf");
    EXPECT_EQ(PagesOf(Read("list.pdf")), 1);

    EXPECT_TRUE(boxes.TakeTexts().empty());
}

TEST_F(ListFilesTest, TheAnswersOfTheLastRunArePrinted)
{
    Operator first;
    first.At("ListOutput", "no run yet", [&] {
        EXPECT_FALSE(first.Find<QRadioButton>("optLastRun")->isEnabled());
        first.Key(Qt::Key_Escape);
    });
    Play(first, Qt::Key_P);

    Paste(AnswerDate, 3, "260601\n260602");
    ClickRow(Grid(), 1, Qt::ControlModifier);
    ClickRow(Grid(), 1, Qt::ControlModifier);
    Alt(Qt::Key_M);
    EXPECT_EQ(boxes.TakeTexts().size(), 1u) << "the summary";
    Operator hands;
    hands.At("ListOutput", "the last run", [&] {
        auto *option = hands.Find<QRadioButton>("optLastRun");
        EXPECT_TRUE(option->text().endsWith("2 行")) << option->text().toStdString();
        option->click();
        hands.Find<QRadioButton>("optPdf")->click();
        hands.Click("cmdOutput");
    });
    NameFile(hands, "answers.pdf");
    Play(hands, Qt::Key_P);
    EXPECT_EQ(PagesOf(Read("answers.pdf")), 1);
}

TEST_F(ListFilesTest, AFileIsShownBeforeItIsTaken)
{
    PutOut(Qt::Key_E, {}, "list.csv");
    EditedFile edited(QString::fromUtf8(Read("list.csv")));
    edited.Cell(1, SheetHeading::AnswerDate) = "2026/12/8";
    edited.Cell(2, SheetHeading::AnswerQuantity) = "5";
    edited.Cell(3, SheetHeading::AnswerQuantity) = "50";
    edited.Copy(3, {{SheetHeading::ShpSubNo, ""}, {SheetHeading::AnswerQuantity, "10"}});
    file.folder.Write("edited.csv", edited.Text().toUtf8());
    const QString before = Answers();

    BringIn("edited.csv", [&](Operator &hands) {
        EXPECT_EQ(CellsOf(*hands.Find<QTableView>("spdTaken")),
                  "2|変更|1-1-1|PO-1|抵抗器|100.000|100.000||26/12/08 "
                  "4|変更|3-1-1|PO-3|抵抗器|60.000|50.000|| "
                  "6|分納|3-1-1|PO-3|抵抗器||10.000||");
        EXPECT_EQ(CellsOf(*hands.Find<QTableView>("spdRefused")), "3|2-1-1|出荷済です");
        EXPECT_EQ(hands.Find<QLabel>("lblUnchanged")->text(), "変更のない行　1");
        hands.Key(Qt::Key_Escape);
    });
    EXPECT_EQ(Answers(), before);

    BringIn("edited.csv", [](Operator &hands) { hands.Key(Qt::Key_T, Qt::AltModifier); });
    EXPECT_EQ(Answers(), "100/20261208 0/ 50/ 10/ 40/");
    EXPECT_EQ(SelectedRows(), "134");
    EXPECT_EQ(Status(), "変更 2 行、分納 1 行を取り込みました。Ctrl+Z で元に戻せます");
    Key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Answers(), before);
    EXPECT_EQ(SelectedRows(), "");

    file.folder.Write("other.csv", "a;b\r\n1;2\r\n");
    Operator hands;
    NameFile(hands, "other.csv");
    Play(hands, Qt::Key_T);
    const Texts told = boxes.TakeTexts();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_TRUE(told[0].endsWith("受注№・枝番・分納番号の見出しがありません"));
}

TEST_F(ListFilesTest, ABlockIsPastedFromTheActiveCellOn)
{
    Paste(AnswerQuantity, 1, "10\t2026/12/8\r\n20\t261209\r\n30\t20261210\r\n");
    EXPECT_EQ(Answers(), "10/20261208 0/ 30/20261210 40/");
    EXPECT_EQ(SelectedRows(), "13");
    EXPECT_EQ(Status(), "4 個のセルに貼り付けました　入力できない 2 個のセルは飛ばしました");
    Key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Answers(), "100/ 0/ 60/ 40/") << "all of it is taken back";

    Paste(AnswerDate, 3, "12月8日\n261209\n261210");
    EXPECT_EQ(boxes.TakeTexts(),
              Texts{"貼り付けられません。一覧は変えていません\r"
                    "一覧の最後の行より 1 行多くあります\r1 行目 1 列目「12月8日」"});
    EXPECT_EQ(Answers(), "100/ 0/ 60/ 40/");

    // Rows that are not shown are passed over.
    Click("chkOpenOnly");
    EXPECT_EQ(Grid().model()->rowCount(), 3);
    Grid().setFocus();
    Paste(AnswerDate, 1, "261208\n261209");
    EXPECT_EQ(Answers(), "100/20261208 0/ 60/20261209 40/");
    EXPECT_EQ(Status(), "2 個のセルに貼り付けました　表示していない 1 行は飛ばしました");
    Click("chkOpenOnly");
}

TEST_F(ListFilesTest, EveryItemOfTheListIsAColumnOfTheSheet)
{
    QStringList headings;
    for (const SheetColumn &column : SheetColumns())
        headings += column.heading;
    for (const ListColumn &column : ListColumns())
        for (const QString &item : QString(column.heading).split("\r\n"))
            EXPECT_TRUE(headings.contains(item)) << item.toStdString();
}

TEST_F(ListFilesTest, PaperHasAsManyPagesAsItsRowsTake)
{
    PaperTable table = ListPaper(screen->List(), RowSelection({{1, 4}}), "C1");
    int pages = 0;
    for (table.rows = 0; table.rows <= 45; ++table.rows) {
        table.text = [](int row, int) { return QString::number(row); };
        const QString path = file.folder.Path("paper.pdf");
        QPdfWriter writer(path);
        ASSERT_TRUE(PrintTable(table, writer, [] { return true; }));
        const int printed = PagesOf(Read("paper.pdf"));
        ASSERT_EQ(printed, table.PageCount(writer));
        ASSERT_TRUE(printed == pages || printed == pages + 1) << table.rows;
        pages = printed;
    }
    EXPECT_GE(pages, 3);
    QPdfWriter stopped(file.folder.Path("stopped.pdf"));
    EXPECT_FALSE(PrintTable(table, stopped, [] { return false; }));
}
