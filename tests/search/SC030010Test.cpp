#include "search/SC030010.h"

#include "forms/Form.h"
#include "search/MasterFixture.h"
#include "support/ScriptedBoxes.h"
#include "support/WindowHands.h"

#include <QClipboard>
#include <QLabel>
#include <QRadioButton>
#include <QStatusBar>
#include <QTabBar>
#include <functional>
#include <optional>

namespace {

constexpr auto BadDateText = "日付の入力が間違っています\r";

class SearchScreen : public MasterFixture, public WindowHands
{
protected:
    SearchScreen()
    {
        state.isSearchMode = true;
        AddCustomer("C0001", "神田電機");
        AddCustomer("C0002", "旧得意先", 1);
        AddCustomer("O'N", "引用");
        AddProduct("P1", "軸受");
        AddProduct("P2", "歯車A");
        AddProduct("P2", "歯車B");
    }

    void Show()
    {
        screen.emplace(state);
        ShowWindow(*screen);
    }

    QTabBar *Tabs() { return Find<QTabBar>("tabDate"); }
    void ClickSecondTab()
    {
        QTest::mouseClick(Tabs(), Qt::LeftButton, {}, Tabs()->tabRect(1).center());
    }

    /// The checked key of each sort group.
    QString CheckedKeys()
    {
        QString keys;
        for (int group = 1; group <= 6; ++group)
            for (int key = 0; key < 6; ++key)
                if (Find<QRadioButton>(QString("optSortKey%1_%2").arg(group).arg(key))->isChecked())
                    keys += QString::number(key);
        return keys;
    }

    std::optional<SC030010> screen;
};

} // namespace

TEST_F(SearchScreen, EnterWalksThroughTheFieldsAsTheyAreSeen)
{
    Show();
    const QStringList fields
        = {"txtCustCD",     "txtCustSecCD",  "txtAccHinCD",   "txtAccHinName", "txtOdrNo",
           "txtMfactNo",    "txtPayKeyNo",   "tabDate",       "txtFromDate",   "txtToDate",
           "optSortKey1_0", "optSortKey2_1", "optSortKey3_2", "optSortKey4_3", "optSortKey5_4",
           "optSortKey6_5", "cmdList"};
    for (const QString &field : fields) {
        EXPECT_EQ(Focus(), field);
        if (field != "cmdList")
            Key(Qt::Key_Return);
    }
    Key(Qt::Key_Backtab, Qt::ShiftModifier); // Enter would press the button
    for (auto field = fields.rbegin() + 1; field != fields.rend(); ++field) {
        EXPECT_EQ(Focus(), *field);
        Key(Qt::Key_Enter, Qt::ShiftModifier);
    }
}

TEST_F(SearchScreen, TabAlsoReachesTheReferenceButtonsAndArrowsMoveBetweenBoxes)
{
    Show();
    const std::tuple<const char *, Qt::Key, const char *> moves[] = {
        {"txtCustCD", Qt::Key_Tab, "cmdTSansho"},
        {"cmdTSansho", Qt::Key_Tab, "txtCustSecCD"}, // the name box is only read
        {"cmdList", Qt::Key_Tab, "cmdExit"},
        {"cmdExit", Qt::Key_Tab, "txtCustCD"},
        {"txtCustCD", Qt::Key_Down, "txtCustSecCD"},
        {"tabDate", Qt::Key_Up, "txtPayKeyNo"},
        {"optSortKey1_0", Qt::Key_Right, "optSortKey1_1"}, // their own
        {"tabDate", Qt::Key_Right, "tabDate"},
    };
    EXPECT_EQ(Focus(), "txtCustCD");
    for (const auto &[from, key, to] : moves) {
        Find(from)->setFocus();
        Key(key);
        EXPECT_EQ(Focus(), to) << from << " key " << key;
    }
    EXPECT_EQ(Tabs()->currentIndex(), 1);
    Key(Qt::Key_Escape); // leaves nothing
    EXPECT_TRUE(screen->isVisible());
    Find("cmdExit")->setFocus();
    Key(Qt::Key_Return);
    EXPECT_FALSE(screen->isVisible());
}

TEST_F(SearchScreen, ConditionsComeBackAsTheyWereEntered)
{
    const struct
    {
        const char *box;
        const char *typed; ///< null: the program fills it
        const char *shown;
    } boxes[] = {{"txtCustSecCD", "SEC1", "SEC1"},      {"txtAccHinCD", "P1", "P1"},
                 {"txtAccHinName", nullptr, "軸受"},    {"txtOdrNo", "ODR-1", "ODR-1"},
                 {"txtMfactNo", "M'1", "M'1"},          {"txtPayKeyNo", "K#1", "K#1"},
                 {"txtFromDate", "970528", "97/05/28"}, {"txtToDate", "000229", "00/02/29"},
                 {"txtCustCD", "C0001", "C0001"},       {"txtCustName", nullptr, "神田電機"}};
    Show();
    ClickSecondTab();
    Click("optSortKey1_4");
    for (const auto &[box, typed, shown] : boxes)
        if (typed)
            Type(box, typed);
    Alt(Qt::Key_L); // takes the code that has just been typed with its name
    EXPECT_FALSE(screen->isVisible());
    EXPECT_TRUE(state.isListRequested);
    const SearchConditions taken = state.conditions;
    EXPECT_EQ(taken.customerName + taken.productName, "神田電機軸受");
    EXPECT_EQ(taken.dateBasis, "ACCDATE");
    EXPECT_EQ(taken.fromDate + '-' + taken.toDate, "19970528-20000229");
    EXPECT_EQ(taken.sortKeys[0] + ' ' + taken.sortKeys[4], "SHPDATE ACCHINCD");

    Show();
    for (const auto &[box, typed, shown] : boxes)
        EXPECT_EQ(Text(box), shown) << box;
    EXPECT_EQ(Find<QLabel>("lblDate")->text(), "受注日");
    EXPECT_EQ(CheckedKeys(), "412305");
    Find("txtFromDate")->setFocus();
    EXPECT_EQ(Text("txtFromDate"), "970528");
    Keys("500101"); // all of it was selected
    Click("cmdExit");
    EXPECT_FALSE(state.isListRequested);
    EXPECT_EQ(state.conditions.fromDate, "19970528");
}

TEST_F(SearchScreen, CtrlEnterOpensTheListFromAnyBoxWithWhatHasJustBeenTyped)
{
    const std::tuple<const char *, const char *, QString> boxes[] = {
        {"txtCustCD", "C0001", "C0001 神田電機"},
        {"txtAccHinCD", "P1", "P1 軸受"},
        {"txtPayKeyNo", "K1", "K1"},
        {"txtToDate", "970528", "19970528"},
        {"optSortKey1_0", "", ""},
        {"cmdTSansho", "", ""},
    };
    for (const auto &[box, typed, taken] : boxes) {
        state.conditions = {};
        state.isListRequested = false;
        Show();
        Find(box)->setFocus();
        Keys(typed);
        Key(Qt::Key_Return, Qt::ControlModifier);
        EXPECT_FALSE(screen->isVisible()) << box;
        EXPECT_TRUE(state.isListRequested) << box;
        const SearchConditions &conditions = state.conditions;
        const QString all
            = QStringList{conditions.customerCode, conditions.customerName, conditions.productCode,
                          conditions.productName,  conditions.payKeyNo,     conditions.toDate}
                  .join(' ')
                  .simplified();
        EXPECT_EQ(all, taken) << box;
    }
}

TEST_F(SearchScreen, EveryBoxHasANameForAScreenReader)
{
    Show();
    ClickSecondTab();
    for (const QWidget *control : screen->findChildren<QWidget *>()) {
        const bool isEntry = qobject_cast<const QLineEdit *>(control)
                             || qobject_cast<const QRadioButton *>(control);
        EXPECT_TRUE(!isEntry || !control->accessibleName().isEmpty())
            << control->objectName().toStdString();
    }
    EXPECT_EQ(Box("txtFromDate")->accessibleName(), "受注日 開始日");
}

TEST_F(SearchScreen, ATextTypedAfterTheReturnTakesThePlaceOfTheOldOne)
{
    state.conditions.customerCode = "A001";
    Show();
    Keys("A002");
    EXPECT_EQ(Text("txtCustCD"), "A002");
}

TEST_F(SearchScreen, SortGroupsExchangeTheirKeys)
{
    state.isSearchMode = false;
    Show();
    EXPECT_EQ(Tabs()->tabData(0), "SHPDATE") << "a basis outside of the search mode";
    EXPECT_EQ(CheckedKeys(), "012345");
    const std::pair<const char *, const char *> clicks[]
        = {{"optSortKey1_5", "512340"}, {"optSortKey3_5", "215340"}};
    for (const auto &[button, keys] : clicks) {
        Click(button);
        EXPECT_EQ(CheckedKeys(), keys) << button;
    }
    Find("optSortKey1_2")->setFocus();
    Key(Qt::Key_Right); // the key goes on to "3", which group 4 holds
    Key(Qt::Key_Space);
    EXPECT_EQ(CheckedKeys(), "315240");
    state.conditions.sortKeys = {"ODRNO", "ODRNO", "", "", "", ""};
    Show();
    EXPECT_EQ(CheckedKeys(), "012345");
}

TEST_F(SearchScreen, LeavingACodeBoxShowsItsName)
{
    const ScriptedBoxes boxes;
    AddProduct("P4", "新品");
    AddProduct("P4", "廃品", 1);
    const std::tuple<const char *, const char *, const char *, const char *> cases[] = {
        {"txtCustCD", "c0001", "txtCustName", "神田電機"},
        {"txtCustCD", "C0002", "txtCustName", ""}, // deleted
        {"txtCustCD", "O'N", "txtCustName", "引用"},
        {"txtAccHinCD", "P1", "txtAccHinName", "軸受"},
        {"txtAccHinCD", "P2", "txtAccHinName", ""},     // two products
        {"txtAccHinCD", "p4", "txtAccHinName", "新品"}, // its namesake is deleted
        {"txtAccHinCD", "P*", "txtAccHinName", ""},
    };
    Show();
    for (const auto &[box, code, nameBox, name] : cases) {
        Box(nameBox)->setText("前の名前");
        Type(box, code);
        EXPECT_EQ(Text(nameBox), "") << code << ": it was the name of another code";
        Key(Qt::Key_Return);
        EXPECT_EQ(Text(nameBox), name) << code;
    }
    // A name of its own stays when the code leaves it open.
    Type("txtAccHinName", "");
    Keys("GEAR");
    Click("txtAccHinCD");
    Key(Qt::Key_Return);
    EXPECT_EQ(Text("txtAccHinName"), "GEAR");
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(SearchScreen, EveryBoxHasItsRuleAndItsWordStandsInTheStatusBar)
{
    Show();
    SetPanelText(*Find<QStatusBar>("stbMain"), "MSG", "前の文");
    const std::tuple<const char *, const char *, const char *, const char *> cases[]
        = {{"txtCustCD", "Ｃ0001", "", "半角文字で"},
           {"txtCustSecCD", "1234567890", "12345678", "半角 8 文字まで"},
           {"txtAccHinCD", "軸受", "", "半角文字で"},
           {"txtAccHinName", "10\u301c20é", "", "「é」（U+00E9）"},
           {"txtOdrNo", "O-1\n", "O-1", "前の文"},
           {"txtMfactNo", "ｱｲｳ", "ｱｲｳ", "前の文"},
           {"txtPayKeyNo", "納", "", "半角文字で"},
           {"txtFromDate", "２０２６/12/08", "261208", "前の文"},
           {"txtToDate", "today", "", "「today」は日付として"}};
    const auto *panel = Find<QLabel>("MSG");
    for (const auto &[box, pasted, text, word] : cases) {
        QApplication::clipboard()->setText(pasted);
        Type(box, "");
        Key(Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(Text(box), text) << box;
        EXPECT_TRUE(panel->text().contains(word)) << panel->text().toStdString();
    }
    Click("txtOdrNo");
    EXPECT_EQ(panel->text(), "前の文");
}

TEST_F(SearchScreen, ANameOfTheMasterIsShownAndSearchedAsItIs)
{
    const QString name = "六角ボルト [M6] 10\u301c20 " + QString(30, u'長');
    AddProduct("B1", name.toUtf8());
    Show();
    const auto search = [&] {
        Click("cmdList");
        Show();
        return std::pair(state.conditions.productName, state.conditions.isProductNameLiteral);
    };
    using Search = std::pair<QString, bool>;
    Type("txtAccHinName", "A*");
    EXPECT_EQ(search(), Search("A*", false));
    Type("txtAccHinCD", "b1");
    Key(Qt::Key_Return);
    EXPECT_EQ(Text("txtAccHinName"), name);
    EXPECT_EQ(search(), Search(name, true));
    EXPECT_EQ(search(), Search(name, true)) << "and so it stays";
    Click("txtAccHinName");
    Key(Qt::Key_End);
    Key(Qt::Key_Backspace);
    EXPECT_EQ(search(), Search(name.chopped(1), false)) << "it is the operator's by now";
}

TEST_F(SearchScreen, ABadDateIsShownOnceAndKeepsTheFocus)
{
    const std::pair<const char *, std::function<void()>> ways[] = {
        {"Tab", [&] { Key(Qt::Key_Tab); }},
        {"Enter", [&] { Key(Qt::Key_Return); }},
        {"Up", [&] { Key(Qt::Key_Up); }},
        {"another box", [&] { Click("txtOdrNo"); }},
        {"a sort key", [&] { Click("optSortKey1_3"); }},
        {"a picker", [&] { Click("cmdSSansho"); }},
        {"the other tab", [&] { ClickSecondTab(); }},
        {"list by mouse", [&] { Click("cmdList"); }},
        {"list by Alt+L", [&] { Alt(Qt::Key_L); }},
        {"list by Ctrl+Enter", [&] { Key(Qt::Key_Return, Qt::ControlModifier); }},
    };
    ScriptedBoxes boxes;
    for (const char *box : {"txtFromDate", "txtToDate"}) {
        for (const auto &[how, leave] : ways) {
            SCOPED_TRACE(std::string(box) + ' ' + how);
            state.isListRequested = true;
            Show();
            Type(box, "970230");
            leave();
            QApplication::processEvents();
            EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{BadDateText});
            EXPECT_EQ(Focus(), box);
            EXPECT_EQ(Text(box), "970230");
            EXPECT_EQ(Box(box)->selectedText(), "970230") << "to be typed anew";
            EXPECT_EQ(CheckedKeys(), "012345");
            EXPECT_EQ(Tabs()->currentIndex(), 0);
            Alt(Qt::Key_X); // asks nothing of a bad date
            EXPECT_FALSE(screen->isVisible());
            EXPECT_FALSE(state.isListRequested);
            EXPECT_TRUE(boxes.TakeTexts().empty());
        }
    }
}

TEST_F(SearchScreen, TheRealMessageBoxGivesTheFocusBackToTheDate)
{
    Show();
    Type("txtFromDate", "970230");
    const auto close = [](Operator &hands) { hands.Key(Qt::Key_Return); };
    const std::function<void()> ways[]
        = {[] { Key(Qt::Key_Return); }, [this] { Click("cmdList"); }};
    for (const auto &leave : ways) {
        PlayIn("MsgBox", close, leave);
        ShowWindow(*screen);
        EXPECT_EQ(Focus(), "txtFromDate");
        EXPECT_EQ(Text("txtFromDate"), "970230");
    }
    Keys("970228");
    Click("cmdList");
    EXPECT_EQ(state.conditions.fromDate, "19970228");
}
