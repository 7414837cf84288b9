#include "tour/Day.h"

#include "answerlist/LineGrid.h"
#include "data/Tables.h"
#include "data/bDAO.h"

#include <QFile>
#include <QMessageBox>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>
#include <algorithm>

namespace {

constexpr auto Customer = "C0001";
constexpr auto NextCustomer = "C0002";

} // namespace

QString DayFromToday(int days, const char *form)
{
    return QDate::currentDate().addDays(days).toString(form);
}

bool IsPlain(const Line &line)
{
    constexpr int Least = 100;
    const Decimal quantity = line.Instructed();
    return line.IsOpen() && !line.IsUnregistered() && !line.IsRegisteredHere()
           && !line.IsDefective() && quantity >= Decimal(Least) && quantity == quantity.Truncated()
           && quantity == line.Quantity(LineField::AccVal) && quantity == line.OpenQuantity()
           && line.Now().date.isEmpty();
}

QString Half(const Line &line)
{
    return QString::number(line.Instructed().ToText().toLongLong() / 2);
}

void Day::Plan()
{
    PlanSearch();
    PlanDates();
    PlanSplit();
    PlanManyDates();
    PlanCreation();
    PlanCall();
    PlanSpreadsheet();
    PlanPaper();
    PlanNextCustomer();
}

void Day::PlanSearch()
{
    Step("SC030010", "search", [this] { Click("cmdTSansho"); });
    PlanPick("SC040230R", "customers", Customer);
    AtRest("SC030010", "customer picked", [this] {
        ExpectText("txtCustCD", Customer);
        ExpectText("txtCustName");
        Click("cmdSSansho");
    });
    PlanPick("SC040220R", "products", "");
    AtRest("SC030010", "product picked", [this] {
        ExpectText("txtAccHinCD");
        Type("txtAccHinCD", "");
        auto *tabs = Find<QTabBar>("tabDate");
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(0).center());
        Click("optSortKey1_3"); // by the date that the customer wants
        Type("txtFromDate", "");
        TypeDate(-14);
        Type("txtToDate", "");
        TypeDate(60);
        Key(Qt::Key_Tab);
        Shoot("conditions");
        Key(Qt::Key_Return, Qt::ControlModifier);
    });
}

/// Picks the row that begins with the text by the keyboard alone.
void Day::PlanPick(const QString &picker, const QString &picture, const QString &text)
{
    AtRest(picker, picture, [this, picture, text] {
        Keys(text);
        Shoot(picture);
        Key(Qt::Key_Return);
        Key(Qt::Key_Return);
    });
}

/// What is overdue gets its dates.
void Day::PlanDates()
{
    Then(
        "list", [] { return Front("SC030110") && !QApplication::overrideCursor(); },
        [this] {
            Wait([this] { return Lines().Count() > 0; });
            Shoot("list");
            Key(Qt::Key_U, Qt::AltModifier);
        });
    Step("SC030110", "open-only", [this] {
        Key(Qt::Key_Tab);
        Key(Qt::Key_Tab);
        TypeDate(3);
        Shoot("edit");
        Key(Qt::Key_Return);
        TypeDate(5);
        Key(Qt::Key_Return);
        Shoot("changed");
    });
}

/// A line that can't be delivered all at once.
void Day::PlanSplit()
{
    AtRest("SC030110", "find", [this] {
        const QString today = DayFromToday(0, "yyyyMMdd");
        const int row = RowOf(
            [&](const Line &line) { return IsPlain(line) && line.SpecifiedDate() > today; });
        if (row == 0)
            return;
        Key(Qt::Key_F, Qt::ControlModifier);
        Keys(Lines().At(row).OrderNo());
        Key(Qt::Key_Return);
        Shoot("find");
        Key(Qt::Key_Escape);
        Key(Qt::Key_Home); // this row alone
        Key(Qt::Key_Tab);
        Keys(Half(ActiveLine()));
        Key(Qt::Key_Tab);
        TypeDate(10);
        Key(Qt::Key_C, Qt::AltModifier);
    });
    Step("SC030110", "split", [this] {
        Keys("30");
        Key(Qt::Key_Tab);
        Shoot("remainder");
        TypeDate(24);
        Key(Qt::Key_Tab);
    });
}

/// Several lines at once, taken back and done in another way.
void Day::PlanManyDates()
{
    constexpr int Rows = 5;
    AtRest("SC030110", "selection", [this] {
        Key(Qt::Key_Home);
        for (int row = 1; row < Rows; ++row)
            Key(Qt::Key_Down, Qt::ShiftModifier);
        Shoot("selection");
        Key(Qt::Key_S, Qt::AltModifier);
    });
    AtRest("InputBox", "date", [this] {
        TypeDate(20);
        Shoot("date");
        Key(Qt::Key_Return);
    });
    Step("SC030110", "dates", [this] {
        const int changed = Lines().UnregisteredCount();
        Key(Qt::Key_Z, Qt::ControlModifier);
        Expect(Lines().UnregisteredCount() == changed - Rows, "the dates were taken back");
        Shoot("undone");
        Key(Qt::Key_L, Qt::AltModifier);
    });
    AtRest("SC030110", "menu", [this] { Key(Qt::Key_F10, Qt::ShiftModifier); });
    Then(
        "menu", [] { return QApplication::activePopupWidget() != nullptr; },
        [this] {
            Shoot("menu");
            QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
        });
}

/// The answers go out, once what is wrong is mended, though a colleague has been at one of them.
void Day::PlanCreation()
{
    AtRest("SC030110", "too much", [this] {
        Key(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier); // all that is changed
        Key(Qt::Key_Tab);
        Keys("99999");
        Key(Qt::Key_M, Qt::AltModifier);
    });
    Step("SC030110", "refused", [this] {
        Key(Qt::Key_Return);
        Keys(ActiveLine().OpenQuantity().ToText());
        Key(Qt::Key_Tab);
        AnswerElsewhere(ActiveLine());
        Key(Qt::Key_M, Qt::AltModifier);
    });
    Step("MsgBox", "question", [this] {
        Expect(BoxText().contains("ほかの人が変更した行"), "the colleague was noticed");
        Key(Qt::Key_Y, Qt::AltModifier);
    });
    PlanSummary("summary");
    AtRest("SC030110", "all lines", [this] { Key(Qt::Key_U, Qt::AltModifier); });
    Step("SC030110", "answered", [] {});
}

/// The customer asks for another date than the one that was answered some time ago.
void Day::PlanCall()
{
    AtRest("SC030110", "the call", [this] {
        GoTo([this](const Line &line) {
            return line.IsAnswered() && !line.IsAnsweredHere() && !line.IsShipped()
                   && Lines().RowsOfOrder(line.Key().accNo).size() == 1
                   && line.Instructed() == line.Quantity(LineField::AccVal);
        });
        Key(Qt::Key_I, Qt::AltModifier);
    });
    Step("SC030120", "detail", [this] {
        ExpectText("txtOdrNo");
        Key(Qt::Key_Escape);
    });
    AtRest("SC030110", "another date", [this] {
        TypeIntoDate(25);
        Key(Qt::Key_M, Qt::AltModifier);
    });
    PlanSummary({});
    AtRest("SC030110", "answered twice", [this] { Key(Qt::Key_I, Qt::AltModifier); });
    Step("SC030120", "history", [this] { Key(Qt::Key_Escape); });
}

void Day::PlanPaper()
{
    AtRest("SC030110", "print", [this] { Key(Qt::Key_P, Qt::AltModifier); });
    AtRest("ListOutput", "print", [this] {
        const auto *pdf = Find<QRadioButton>("optPdf");
        Key(Qt::Key_M, Qt::AltModifier);
        Key(Qt::Key_F, Qt::AltModifier);
        Wait([pdf] { return pdf->isChecked(); });
        Shoot("print");
        Key(Qt::Key_Return, Qt::ControlModifier);
    });
    PlanFile("answers.pdf");
    AtRest("SC030110", "printed", [this] {
        QFile paper(Path("answers.pdf"));
        Expect(paper.open(QIODevice::ReadOnly) && paper.read(4) == "%PDF", "the paper is there");
        GoTo([](const Line &line) { return IsPlain(line); });
        TypeIntoDate(30);
        Key(Qt::Key_X, Qt::AltModifier);
    });
    Step("MsgBox", "leave", [this] { Key(Qt::Key_N, Qt::AltModifier); });
    AtRest("SC030110", "nothing to lose", [this] {
        Key(Qt::Key_Z, Qt::ControlModifier);
        Key(Qt::Key_X, Qt::AltModifier);
    });
}

/// What is typed after the return replaces the last customer.
void Day::PlanNextCustomer()
{
    AtRest("SC030010", "search again", [this] {
        ExpectText("txtCustCD", Customer); // the conditions are kept
        Keys(NextCustomer);
        ExpectText("txtCustCD", NextCustomer);
        Shoot("search-again");
        Key(Qt::Key_Return, Qt::ControlModifier);
    });
    AtRest("SC030110", "next list", [this] {
        Wait([this] { return Lines().Count() > 0; });
        ExpectText("txtCustCD", NextCustomer);
        Key(Qt::Key_X, Qt::AltModifier);
    });
    AtRest("SC030010", "end of the day", [this] { Key(Qt::Key_X, Qt::AltModifier); });
}

void Day::PlanSummary(const QString &picture)
{
    AtRest("MsgBox", "summary", [this, picture] {
        Expect(BoxText().startsWith("納期回答作成処理が終了しました"), "the answers are created");
        if (!picture.isEmpty())
            Shoot(picture);
        Key(Qt::Key_Return);
    });
}

const Line &Day::ActiveLine()
{
    return Lines().At(Find<LineGrid>("spdList")->ActiveLine());
}

/// The first such line of the list; without one the tour fails.
int Day::RowOf(const std::function<bool(const Line &)> &isWanted)
{
    for (int row = 1; row <= Lines().Count(); ++row)
        if (isWanted(Lines().At(row)))
            return row;
    Fail("the list has no such line");
    return 0;
}

/// Goes to the first such line by its order number.
void Day::GoTo(const std::function<bool(const Line &)> &isWanted)
{
    const int row = RowOf(isWanted);
    if (row == 0)
        return;
    Key(Qt::Key_F, Qt::ControlModifier);
    Keys(Lines().At(row).OrderNo());
    Key(Qt::Key_Return);
    Key(Qt::Key_Escape);
    Expect(Find<LineGrid>("spdList")->ActiveLine() == row, "the line is found");
}

/// Into the active row.
void Day::TypeIntoDate(int days)
{
    Key(Qt::Key_Home);
    Key(Qt::Key_Tab);
    Key(Qt::Key_Tab);
    TypeDate(days);
}

void Day::TypeDate(int days)
{
    Keys(DayFromToday(days, "yyMMdd"));
}

void Day::Expect(bool isSo, const QString &what)
{
    if (!isSo)
        Fail("expected that " + what);
}

void Day::ExpectText(const QString &box, const QString &text)
{
    const QString shown = Find<QLineEdit>(box)->text();
    Expect(!shown.isEmpty() && (text.isEmpty() || shown == text),
           box + " has another text than " + shown);
}

QString Day::BoxText()
{
    return static_cast<const QMessageBox *>(Front("MsgBox"))->text();
}

/// A colleague answers the line at a desk of his own.
void Day::AnswerElsewhere(const Line &line)
{
    bDAO db;
    const bool isDone
        = db.OpenDB(Files(), Path("TLDB0010.MDB"), false, ConnectText)
          && db.DBExecute(QString("UPDATE TLSP0010 SET AnsVal = IndVal, AnsLimDate = '%1',"
                                  " AnsMark = '2' WHERE AccNo = %2")
                              .arg(DayFromToday(40, "yyyyMMdd"))
                              .arg(line.Key().accNo));
    Expect(isDone, "the colleague could write");
}
