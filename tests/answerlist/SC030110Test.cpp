#include "answerlist/ListScreen.h"

#include "platform/Contrast.h"

#include <QHelpEvent>
#include <QToolTip>

namespace {

using Texts = std::vector<QString>;

constexpr auto BadDate = "日付の入力が間違っています\r";
constexpr auto NoRow = "有効な行を選択してください\r";
constexpr auto ShippedHint = "出荷済のものの変更、納期回答作成は出来ません";
constexpr auto MayDelete = "削除してもよろしいですか\r";

} // namespace

TEST_F(ListScreen, AppearsWithItsLinesAndNothingSelected)
{
    state.conditions.customerCode = "C1";
    state.conditions.customerName = "青葉電機";
    state.conditions.toDate = "20261231";
    Change("TLSP0010", "AccNo = 3", "DenKBN = 15");
    Show();
    EXPECT_EQ(Find<QLabel>("lblDate")->text(), "出荷（予定）");
    EXPECT_EQ(Text("txtCustCD") + ' ' + Text("txtCustName"), "C1 青葉電機");
    EXPECT_EQ(Text("txtFromAccDate") + '-' + Text("txtToAccDate"), "-26/12/31");
    EXPECT_EQ(Text("txtSum"), "4");
    EXPECT_EQ(Status(), "不良品の明細は、紫色で表示されます");
    EXPECT_EQ(Cursor(), " 1,1");
    EXPECT_EQ(Focus(), "spdList");
    const QAbstractItemModel &cells = *Grid().model();
    for (int column = Marks; column <= Contract; ++column)
        EXPECT_EQ(cells.index(0, column - 1).data().toString().replace('\n', '/'), Cell(1, column));
}

TEST_F(ListScreen, WithoutLinesItClosesItself)
{
    file.Run("DELETE FROM TLSP0010");
    Show();
    EXPECT_FALSE(screen->isVisible());
    EXPECT_EQ(boxes.TakeTexts(), Texts{"データが存在しません\r"});
    file.Run("DROP TABLE TLMT0040");
    Show();
    EXPECT_FALSE(screen->isVisible());
    EXPECT_EQ(boxes.Shown().size(), 1u) << "a database error is told once";
}

TEST_F(ListScreen, CommandsAskForTheRowsTheyNeed)
{
    const QString noDateRow = "納期を設定したい行を選択してください\r";
    const QString onlyShipped
        = "出荷済のものしか、選択されていません\rこのデータの変更は出来ません";
    const QString severalRows = "複数行の指定は出来ません";
    const std::tuple<const char *, std::vector<int>, QString> cases[]
        = {{"cmdLimSet", {}, noDateRow},
           {"cmbLimDef", {}, noDateRow},
           {"cmdLimSet", {2}, onlyShipped},
           {"cmbLimDef", {2}, onlyShipped},
           {"cmdCopy", {}, NoRow},
           {"cmdDelete", {}, NoRow},
           {"cmdCopy", {1, 3}, severalRows},
           {"cmdDelete", {1, 3}, severalRows},
           {"cmdDetail", {1, 3}, severalRows}};
    Show();
    for (const auto &[button, rows, told] : cases) {
        Select(rows);
        Click(button);
        EXPECT_EQ(boxes.TakeTexts(), Texts{told}) << button << ' ' << rows.size();
    }
    EXPECT_EQ(screen->List().UnregisteredCount(), 0);
    EXPECT_EQ(RowCount(), 4);
}

TEST_F(ListScreen, TheSelectedRowIsTheOneWhateverTheFrameIsOn)
{
    Change("TLSP0010", "AccNo = 4", "AnsLimUmu = 0");
    AddLine(4, 1, 2);
    Show();
    ClickCell(Grid(), Order, 3);
    Key(Qt::Key_Return);
    EXPECT_EQ(Cursor(), "3 2,4");
    ExpectDetail("PO-3");
    TypeInto(AnswerQuantity, 3, ".5");
    Click("cmdCopy"); // takes what has just been typed
    EXPECT_EQ(Cell(4, Order).section('/', 0, 0) + ' ' + Cell(4, AnswerQuantity), "PO-3 99.500");
    EXPECT_EQ(Text("txtSum"), "6");

    Select({5});
    Grid().setFocus();
    Key(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(Cursor(), "5 1,4");
    boxes.Press(BoxButton::Yes);
    Click("cmdDelete");
    EXPECT_EQ(boxes.TakeTexts(), Texts{MayDelete});
    EXPECT_EQ(Stored("ShpSubNo", "AccNo = 4"), "2");

    ClickCell(Grid(), Order, 3);
    Grid().clearSelection();
    ExpectDetail("PO-3"); // none selected: the frame's row
}

TEST_F(ListScreen, AnEditSelectsTheLineThatItChanges)
{
    // Dates that the editor begins with as of this century, or as none.
    Change("TLSP0010", "AccNo = 1", "AnsLimDate = '19260520'");
    Change("TLSP0010", "AccNo = 3", "AnsLimDate = '99999999'");
    Show();
    for (const int row : {1, 3}) {
        Grid().Activate(AnswerDate, row);
        Key(Qt::Key_F2);
        Key(Qt::Key_Return);
    }
    Grid().Activate(AnswerQuantity, 3);
    Keys("100.0"); // as is proposed
    Key(Qt::Key_Return);
    EXPECT_EQ(screen->List().UnregisteredCount(), 0);
    EXPECT_EQ(Cursor(), " 5,4");
    Grid().Activate(AnswerDate, 3);
    Keys("260601");
    Key(Qt::Key_Return);
    EXPECT_EQ(Cursor(), "3 6,4");
    EXPECT_EQ(Cell(1, AnswerDate) + ' ' + Cell(3, AnswerDate), "26/05/20 26/06/01");
}

TEST_F(ListScreen, NoCommandRunsPastAWrongText)
{
    const std::pair<const char *, Qt::Key> commands[]
        = {{"cmdLimSet", Qt::Key_S}, {"cmbLimDef", Qt::Key_L}, {"cmdCopy", Qt::Key_C},
           {"cmdDelete", Qt::Key_D}, {"cmdDetail", Qt::Key_I}, {"cmdMake", Qt::Key_M},
           {"cmdExit", Qt::Key_X}};
    Show();
    for (const auto &[button, key] : commands) {
        for (const bool isByKey : {false, true}) {
            SCOPED_TRACE(std::string(button) + (isByKey ? " by key" : " by mouse"));
            TypeInto(AnswerDate, 1, "260631");
            if (isByKey)
                Alt(key);
            else
                Click(button);
            EXPECT_EQ(boxes.TakeTexts(), Texts{BadDate});
            EXPECT_EQ(Focus(), "cellEditor");
            Key(Qt::Key_Escape);
            EXPECT_TRUE(screen->isVisible()) << "Esc ends the edit, not the screen";
            EXPECT_EQ(screen->List().UnregisteredCount(), 0);
            EXPECT_EQ(RowCount(), 4);
        }
    }
}

TEST_F(ListScreen, LeavingAsksBeforeChangesAreLost)
{
    const std::pair<const char *, std::function<void()>> ways[]
        = {{"button", [&] { Click("cmdExit"); }},
           {"key", [&] { Alt(Qt::Key_X); }},
           {"window", [&] { screen->close(); }}};
    for (const auto &[way, leave] : ways) {
        SCOPED_TRACE(way);
        Show();
        TypeInto(AnswerDate, 1, "260601"); // which leaving takes with it
        boxes.Press(BoxButton::No);
        leave();
        ASSERT_EQ(boxes.Shown().size(), 1u);
        EXPECT_TRUE(boxes.Shown()[0].style & BoxStyle::DefaultButton2);
        EXPECT_EQ(boxes.TakeTexts(),
                  Texts{"登録していない変更が 1 行あります。破棄して戻りますか"});
        EXPECT_TRUE(screen->isVisible());
        boxes.Press(BoxButton::Yes);
        leave();
        EXPECT_FALSE(screen->isVisible());
        boxes.TakeTexts();
    }
}

TEST_F(ListScreen, RowsLookAsTheirLinesAreUnderAnyPalette)
{
    AddLine(4, 1, 2, "DenKBN = 15");
    AddLine(4, 1, 3, "DenKBN = 15, ShpSts = 3");
    Show();
    const auto cell
        = [&](int row, int column) { return Grid().model()->index(row - 1, column - 1); };
    const std::tuple<int, QColor, QColor, bool> looks[]
        = {{1, QColor(), QColor(), true},
           {2, QColor("#c0c0c0"), QColor(), false},
           {5, QColor(), QColor("#800080"), true},
           {6, QColor("#c0c0c0"), QColor("#800080"), false}};
    for (const auto &[row, back, fore, isOpen] : looks) {
        EXPECT_EQ(cell(row, Order).data(Qt::BackgroundRole).value<QColor>(), back) << row;
        EXPECT_EQ(cell(row, Order).data(Qt::ForegroundRole).value<QColor>(), fore) << row;
        for (int column = Marks; column <= Contract; ++column)
            EXPECT_EQ(cell(row, column).flags().testFlag(Qt::ItemIsEditable),
                      isOpen && (column == AnswerQuantity || column == AnswerDate));
    }

    const QPalette dark(Qt::white, QColor(40, 40, 40), QColor(90, 90, 90), Qt::black, Qt::darkGray,
                        Qt::white, Qt::black);
    QPalette strong(Qt::yellow, Qt::black, Qt::white, Qt::black, Qt::gray, Qt::yellow, Qt::black);
    strong.setColor(QPalette::Highlight, Qt::cyan);
    strong.setColor(QPalette::HighlightedText, Qt::black);
    for (const QPalette &palette : {QPalette(), dark, strong}) {
        window->setPalette(palette);
        const QPalette main = Find<QPushButton>("cmdMake")->palette();
        const QPalette other = Find<QPushButton>("cmdExit")->palette();
        EXPECT_NE(main.color(QPalette::Button), other.color(QPalette::Button))
            << "the main command";
        EXPECT_GE(ContrastRatio(main.color(QPalette::ButtonText), main.color(QPalette::Button)),
                  LeastContrast);
        Grid().Activate(AnswerDate, 1);
        // Selected or not: how well the texts, and the frame of the empty cell, can be made out.
        for (const bool isSelected : {false, true}) {
            if (isSelected)
                Grid().selectAll();
            else
                Grid().clearSelection();
            const QImage picture = Grid().viewport()->grab().toImage();
            const auto contrast = [&](const QRect &place, const QPoint &empty) {
                double most = 1;
                for (int y = place.top(); y < place.bottom(); ++y)
                    for (int x = place.left(); x < place.right(); ++x)
                        most = std::max(most, ContrastRatio(picture.pixelColor(x, y),
                                                            picture.pixelColor(empty)));
                return most;
            };
            for (const int row : {1, 2, 5, 6})
                for (const int column : {Order, AnswerQuantity}) {
                    const QRect place = Grid().visualRect(cell(row, column)).adjusted(2, 2, -2, -2);
                    EXPECT_GE(contrast(place, place.bottomRight()), LeastContrast)
                        << row << ' ' << column << ' ' << isSelected;
                }
            const QRect frame = Grid().visualRect(cell(1, AnswerDate));
            EXPECT_GE(contrast(frame, frame.center()), LeastContrast) << "the frame";
        }
    }
}

TEST_F(ListScreen, MakeLeadsToTheCellInErrorUntilItIsMended)
{
    AddOrder(5);
    for (int line = 1; line <= 40; ++line)
        AddLine(5, 1, line);
    const std::tuple<int, const char *, const char *> cases[]
        = {{AnswerQuantity, "回答数量が、0です", "5"},
           {AnswerDate, "回答納期が入力されていません", "260601"}};
    Show();
    TypeInto(AnswerDate, 1, "260601");
    Key(Qt::Key_Return);
    TypeInto(AnswerQuantity, 3, "0");
    Key(Qt::Key_Return);
    for (const auto &[column, error, mended] : cases) {
        SCOPED_TRACE(error);
        Select({1, 2, 3});
        Grid().scrollToBottom();
        Click("cmdMake");
        EXPECT_TRUE(boxes.Shown().empty());
        EXPECT_EQ(Cursor(), QString("123 %1,3").arg(column));
        EXPECT_EQ(Focus(), "spdList");
        EXPECT_TRUE(Grid().viewport()->rect().contains(Grid().visualRect(Grid().currentIndex())));
        EXPECT_EQ(Status(), error);
        ExpectMark(3, error);
        ExpectMark(1, "変更あり（未登録）");
        Key(Qt::Key_Up);
        EXPECT_EQ(Status(), ShippedHint);
        EXPECT_EQ(Stored("DISTINCT UpdPGName"), "") << "nothing has been written";
        Key(Qt::Key_Down);
        EXPECT_EQ(Status(), error);
        Keys(mended);
        Key(Qt::Key_Backtab, Qt::ShiftModifier);
        ExpectMark(3, "変更あり（未登録）");
        EXPECT_EQ(Status(), "");
    }
    Select({1, 3});
    Click("cmdMake");
    ASSERT_EQ(boxes.Shown().size(), 1u);
    EXPECT_TRUE(boxes.Shown()[0].text.startsWith("納期回答作成処理が終了しました"));
    EXPECT_EQ(Stored("AnsLimDate, AnsLimUmu", "AccNo = 3"), "20260601|3");
    EXPECT_EQ(Cursor().section(' ', 0, 0), "") << "an answered row is selected no more";
}

TEST_F(ListScreen, KeyboardAloneThroughTheWholeScreen)
{
    Show();
    Key(Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(Cursor(), "1 1,1");
    boxes.Type("260610");
    Alt(Qt::Key_S);
    EXPECT_EQ(Cell(1, AnswerDate), "26/06/10");
    for (const char *typed : {"", "260631", "26/06/11", "26 6 1"}) {
        boxes.Type(typed);
        Alt(Qt::Key_S);
        EXPECT_EQ(boxes.TakeTexts(), *typed ? Texts{BadDate} : Texts()) << typed;
        EXPECT_EQ(Cell(1, AnswerDate), "26/06/10") << typed;
    }
    Alt(Qt::Key_L);
    EXPECT_EQ(Cell(1, AnswerDate), "26/05/20");
    Alt(Qt::Key_C);
    EXPECT_EQ(Text("txtSum"), "5");

    // Tab goes along the cells, then round the buttons and comes back to the grid; an arrow never
    // leaves it.
    Grid().setFocus();
    Grid().Activate(AnswerQuantity, 5);
    Key(Qt::Key_Down);
    EXPECT_EQ(Focus(), "spdList");
    for (int tabs = 0; tabs < 3 && Focus() == "spdList"; ++tabs)
        Key(Qt::Key_Tab);
    for (const char *next :
         {"cmdLimSet", "cmbLimDef", "cmdCopy", "cmdDelete", "cmdDetail", "cmdMake", "cmdExit",
          "chkOpenOnly", "cmdExport", "cmdImport", "cmdPrint", "spdList"}) {
        EXPECT_EQ(Focus(), next);
        Key(Qt::Key_Tab);
    }
    Grid().setFocus();
    Key(Qt::Key_Home, Qt::ControlModifier);
    Key(Qt::Key_Down);
    Alt(Qt::Key_I);
    EXPECT_EQ(boxes.TakeTexts(), Texts{"まだ未登録のデータなので、詳細を表示できません\r"});
    boxes.Press(BoxButton::Yes);
    Alt(Qt::Key_D);
    EXPECT_EQ(boxes.TakeTexts(), Texts{MayDelete});
    EXPECT_EQ(Text("txtSum"), "4");

    Grid().setFocus();
    Key(Qt::Key_Home, Qt::ControlModifier);
    Key(Qt::Key_Space, Qt::ShiftModifier);
    InDetail([](Operator &hand) {
        EXPECT_EQ(hand.Find<QLineEdit>("txtAnsLimDate")->text(), "260520") << "as on the list";
        hand.Keys("260612");
        hand.Key(Qt::Key_Return);
        hand.Keys("33");
        for (int enter = 0; enter < 3; ++enter)
            hand.Key(Qt::Key_Return);
    });
    EXPECT_EQ(boxes.TakeTexts(), Texts{"登録されました\r"});
    EXPECT_EQ(Cell(1, AnswerQuantity) + ' ' + Cell(1, AnswerDate), "33.000 26/06/12");
    EXPECT_EQ(screen->List().UnregisteredCount(), 0);

    Alt(Qt::Key_X);
    EXPECT_FALSE(screen->isVisible());
}

TEST_F(ListScreen, ATooltipTellsWhenAndByWhomALineWasAnswered)
{
    AddAnswer(1, 1, 1, 1, "UserName = 'sato'");
    AddAnswer(1, 1, 1, 2, "AnsVal = 1234.5");
    Show();
    const auto tip = [this](int row, int column) {
        return Grid().model()->index(row - 1, column - 1).data(Qt::ToolTipRole).toString();
    };
    EXPECT_EQ(tip(1, States), "26/05/01 09:08　tanaka（desk1）が回答\n"
                              "回答納期 26/05/28　回答数量 1,234.500");
    EXPECT_EQ(tip(2, States), "");
    EXPECT_EQ(tip(1, SpecifiedDate), "");

    // As it is now, whatever has happened since the list was loaded.
    TypeInto(AnswerDate, 3, "260610\r");
    Select({3});
    Alt(Qt::Key_M);
    EXPECT_TRUE(tip(3, States).startsWith("26/05/01 09:08　")) << tip(3, States).toStdString();
    EXPECT_TRUE(tip(3, States).endsWith("\n回答納期 26/06/10　回答数量 100.000"));
    boxes.TakeTexts();

    // The pointer alone brings it, and it is no reason for a box.
    const auto hover = [this] {
        const QPoint at = CellPoint(Grid(), States, 1);
        QHelpEvent help(QEvent::ToolTip, at, Grid().viewport()->mapToGlobal(at));
        QApplication::sendEvent(Grid().viewport(), &help);
        return QToolTip::text();
    };
    EXPECT_EQ(hover(), tip(1, States));
    file.Run("DROP TABLE TLAH0010");
    hover();
    EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::text().isEmpty(); }));
    Select({3});
    Click("cmdCopy"); // of the selected row: a split that is not stored has no answers
    EXPECT_EQ(tip(4, States), "");
    EXPECT_TRUE(boxes.Shown().empty());
}
