#include "search/SC030010.h"

#include "search/ProductMaster.h"
#include "support/Operator.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>
#include <optional>

namespace {

constexpr auto BadDateText = "日付の入力が間違っています\r";

class SearchScreen : public testing::Test
{
protected:
    SearchScreen()
    {
        DropProductKey(database);
        database.Open(state.db);
        state.isSearchMode = true;
        const auto customer = [&](const char *code, const char *name, int isDeleted) {
            database.Insert("TLMT0040",
                            {{"CustCD", code}, {"CustName", name}, {"DpoFlg", isDeleted}});
        };
        customer("C0001", "神田電機", 0);
        customer("C0002", "旧得意先", 1);
        customer("O'N", "引用", 0);
        const auto product = [&](const char *code, const char *name) {
            database.Insert("TLMT0020", {{"AccHinCD", code}, {"HinName", name}});
        };
        product("P1", "軸受");
        product("P2", "歯車A");
        product("P2", "歯車B");
    }

    void Show()
    {
        screen.emplace(state);
        screen->show();
        screen->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&*screen));
    }

    template <typename Control>
    Control *Find(const QString &name)
    {
        auto *control = screen->findChild<Control *>(name);
        EXPECT_NE(control, nullptr) << name.toStdString();
        return control;
    }

    QLineEdit *Box(const QString &name) { return Find<QLineEdit>(name); }
    QString Text(const QString &name) { return Box(name)->text(); }

    static QString Focus()
    {
        const QWidget *focus = QApplication::focusWidget();
        return focus ? focus->objectName() : QString();
    }

    static void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }

    void Click(const QString &name) { QTest::mouseClick(Find<QWidget>(name), Qt::LeftButton); }

    void Type(const QString &name, const QString &text)
    {
        Click(name);
        Box(name)->selectAll();
        Key(Qt::Key_Delete);
        QTest::keyClicks(Box(name), text);
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

    TestDatabase database;
    ProgramState state;
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
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        Find<QWidget>(fields.front())->setFocus();
        for (const QString &field : fields) {
            EXPECT_EQ(Focus(), field);
            if (field != fields.back())
                Key(key);
        }
        for (auto field = fields.rbegin(); field != fields.rend(); ++field) {
            EXPECT_EQ(Focus(), *field);
            if (*field == "cmdList")
                Key(Qt::Key_Backtab, Qt::ShiftModifier); // Enter would press it
            else
                Key(key, Qt::ShiftModifier);
        }
    }
}

TEST_F(SearchScreen, TabAlsoReachesTheReferenceButtonsAndArrowsMoveBetweenBoxes)
{
    Show();
    const struct
    {
        const char *from;
        Qt::Key key;
        const char *to;
    } moves[] = {
        {"txtCustCD", Qt::Key_Tab, "cmdTSansho"},
        {"cmdTSansho", Qt::Key_Tab, "txtCustSecCD"}, // the name box is only read
        {"txtAccHinCD", Qt::Key_Tab, "cmdSSansho"},
        {"cmdList", Qt::Key_Tab, "cmdExit"},
        {"cmdExit", Qt::Key_Tab, "txtCustCD"},
        {"txtCustCD", Qt::Key_Down, "txtCustSecCD"},
        {"txtCustSecCD", Qt::Key_Up, "txtCustCD"},
        {"txtPayKeyNo", Qt::Key_Down, "tabDate"},
        {"tabDate", Qt::Key_Down, "txtFromDate"},
        {"optSortKey1_0", Qt::Key_Right, "optSortKey1_1"}, // their own
        {"tabDate", Qt::Key_Right, "tabDate"},
    };
    EXPECT_EQ(Focus(), "txtCustCD");
    for (const auto &[from, key, to] : moves) {
        Find<QWidget>(from)->setFocus();
        Key(key);
        EXPECT_EQ(Focus(), to) << from << " key " << key;
    }
    EXPECT_EQ(Find<QTabBar>("tabDate")->currentIndex(), 1);
    Key(Qt::Key_Escape); // leaves nothing
    EXPECT_TRUE(screen->isVisible());
    Find<QWidget>("cmdExit")->setFocus();
    Key(Qt::Key_Return);
    EXPECT_FALSE(screen->isVisible());
}

TEST_F(SearchScreen, ConditionsComeBackAsTheyWereEntered)
{
    Show();
    Type("txtCustCD", "C0001");
    Type("txtCustSecCD", "SEC1");
    Type("txtAccHinCD", "P1");
    Type("txtOdrNo", "ODR-1");
    Type("txtMfactNo", "M'1");
    Type("txtPayKeyNo", "K#1");
    QTest::mouseClick(Find<QTabBar>("tabDate"), Qt::LeftButton, {},
                      Find<QTabBar>("tabDate")->tabRect(1).center());
    Type("txtFromDate", "970528");
    Type("txtToDate", "000229");
    Click("optSortKey1_4");
    Click("cmdList");
    EXPECT_FALSE(screen->isVisible());
    EXPECT_TRUE(state.isListRequested);
    const SearchConditions &conditions = state.conditions;
    EXPECT_EQ(conditions.customerName, "神田電機");
    EXPECT_EQ(conditions.productName, "軸受");
    EXPECT_EQ(conditions.dateBasis, "ACCDATE");
    EXPECT_EQ(conditions.fromDate, "19970528");
    EXPECT_EQ(conditions.toDate, "20000229");
    EXPECT_EQ(conditions.sortKeys[0], "SHPDATE");
    EXPECT_EQ(conditions.sortKeys[4], "ACCHINCD");

    Show();
    const std::pair<const char *, const char *> shown[]
        = {{"txtCustCD", "C0001"},   {"txtCustName", "神田電機"}, {"txtCustSecCD", "SEC1"},
           {"txtAccHinCD", "P1"},    {"txtAccHinName", "軸受"},   {"txtOdrNo", "ODR-1"},
           {"txtMfactNo", "M'1"},    {"txtPayKeyNo", "K#1"},      {"txtFromDate", "97/05/28"},
           {"txtToDate", "00/02/29"}};
    for (const auto &[name, text] : shown)
        EXPECT_EQ(Text(name), text) << name;
    EXPECT_EQ(Find<QLabel>("lblDate")->text(), "受注日");
    EXPECT_EQ(CheckedKeys(), "412305");
    const SearchConditions before = state.conditions;
    Click("cmdExit");
    EXPECT_FALSE(state.isListRequested);
    EXPECT_EQ(state.conditions.orderNo, before.orderNo);
}

TEST_F(SearchScreen, ShipDateIsABasisOnlyOutsideTheSearchMode)
{
    const struct
    {
        bool isSearchMode;
        QStringList keys;
        QString taken; ///< from the default "SHPDATE"
    } modes[] = {{true, {"LIMDATE", "ACCDATE"}, "LIMDATE"},
                 {false, {"SHPDATE", "LIMDATE", "ACCDATE"}, "SHPDATE"}};
    for (const auto &[isSearchMode, keys, taken] : modes) {
        state.isSearchMode = isSearchMode;
        state.conditions = {};
        Show();
        const auto *tabs = Find<QTabBar>("tabDate");
        QStringList offered;
        for (int tab = 0; tab < tabs->count(); ++tab)
            offered += tabs->tabData(tab).toString();
        EXPECT_EQ(offered, keys);
        Click("cmdList");
        EXPECT_EQ(state.conditions.dateBasis, taken);
    }
}

TEST_F(SearchScreen, SortGroupsExchangeTheirKeys)
{
    Show();
    EXPECT_EQ(CheckedKeys(), "012345");
    const std::pair<const char *, const char *> clicks[]
        = {{"optSortKey1_5", "512340"}, {"optSortKey3_5", "215340"}, {"optSortKey3_5", "215340"}};
    for (const auto &[button, keys] : clicks) {
        Click(button);
        EXPECT_EQ(CheckedKeys(), keys) << button;
    }
    Find<QWidget>("optSortKey1_2")->setFocus();
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
    Show();
    const struct
    {
        const char *box, *code, *nameBox, *before, *name;
    } cases[] = {
        {"txtCustCD", "C0001", "txtCustName", "", "神田電機"},
        {"txtCustCD", "c0001", "txtCustName", "", "神田電機"},
        {"txtCustCD", "C0002", "txtCustName", "", ""}, // deleted
        {"txtCustCD", "NONE", "txtCustName", "", ""},
        {"txtCustCD", "O'N", "txtCustName", "", "引用"},
        {"txtCustCD", "C*", "txtCustName", "", ""},
        {"txtCustCD", "[", "txtCustName", "", ""},
        {"txtCustCD", "|", "txtCustName", "", ""},
        {"txtAccHinCD", "P1", "txtAccHinName", "", "軸受"},
        {"txtAccHinCD", "P2", "txtAccHinName", "", ""}, // two products
        {"txtAccHinCD", "P[", "txtAccHinName", "", ""},
        {"txtAccHinCD", "'#*|", "txtAccHinName", "", ""},
    };
    for (const auto &[box, code, nameBox, before, name] : cases) {
        Box(nameBox)->setText("前の名前");
        Type(box, code);
        EXPECT_EQ(Text(nameBox), before) << code; // it was the name of another code
        Key(Qt::Key_Return);
        EXPECT_EQ(Text(nameBox), name) << code;
    }
    // A name of its own stays when the code leaves it open.
    Type("txtAccHinName", "");
    QInputMethodEvent commit;
    commit.setCommitString("歯車");
    QApplication::sendEvent(Box("txtAccHinName"), &commit);
    Click("txtAccHinCD");
    Key(Qt::Key_Return);
    EXPECT_EQ(Text("txtAccHinName"), "歯車");
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(SearchScreen, CodeBoxesRefuseWhatIsNoCode)
{
    Show();
    const struct
    {
        const char *box, *pasted, *text;
    } cases[] = {{"txtCustCD", "Ｃ0001", ""},
                 {"txtCustSecCD", "1234567890", "12345678"},
                 {"txtAccHinCD", "軸受", ""},
                 {"txtOdrNo", "O-1\n", "O-1"},
                 {"txtMfactNo", "ｱｲｳ", "ｱｲｳ"},
                 {"txtPayKeyNo", "納", ""},
                 {"txtFromDate", "97/05/28", "97/05/28"},
                 {"txtToDate", "today", ""}};
    for (const auto &[box, pasted, text] : cases) {
        QApplication::clipboard()->setText(pasted);
        Type(box, "");
        Key(Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(Text(box), text) << box;
    }
}

TEST_F(SearchScreen, DatesGoThroughTheirThreeForms)
{
    Show();
    Type("txtFromDate", "97052");
    EXPECT_EQ(Text("txtFromDate"), "97052");
    Box("txtFromDate")->clear();
    QTest::keyClicks(Box("txtFromDate"), "9705281");
    EXPECT_EQ(Text("txtFromDate"), "970528");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Text("txtFromDate"), "97/05/28");
    Key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Text("txtFromDate"), "970528");
    QTest::keyClicks(Box("txtFromDate"), "500101"); // all of it was selected
    Click("cmdList");
    EXPECT_EQ(state.conditions.fromDate, "20500101");
    EXPECT_EQ(state.conditions.toDate, "");
}

TEST_F(SearchScreen, ABadDateIsShownOnceAndKeepsTheFocus)
{
    const struct
    {
        const char *how;
        std::function<void()> leave;
    } ways[] = {
        {"Tab", [&] { Key(Qt::Key_Tab); }},
        {"Shift+Tab", [&] { Key(Qt::Key_Backtab, Qt::ShiftModifier); }},
        {"Enter", [&] { Key(Qt::Key_Return); }},
        {"Up", [&] { Key(Qt::Key_Up); }},
        {"another box", [&] { Click("txtOdrNo"); }},
        {"the name box", [&] { Click("txtCustName"); }},
        {"a sort key", [&] { Click("optSortKey1_3"); }},
        {"a picker",
         [&] {
             Box("txtAccHinCD")->setText("NONE"); // would be message 13
             Click("cmdSSansho");
         }},
        {"the other tab",
         [&] {
             auto *tabs = Find<QTabBar>("tabDate");
             QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(1).center());
         }},
        {"list by mouse", [&] { Click("cmdList"); }},
        {"list by Alt+L",
         [&] {
             Key(Qt::Key_L, Qt::AltModifier);
             EXPECT_TRUE(QTest::qWaitFor([&] { return !Find<QPushButton>("cmdList")->isDown(); }));
         }},
        {"list by Enter",
         [&] {
             // Brought onto the button before the box was checked.
             QTest::mousePress(Find<QWidget>("cmdList"), Qt::LeftButton);
             QTest::mouseRelease(Find<QWidget>("cmdList"), Qt::LeftButton, {}, QPoint(-9, -9));
             EXPECT_EQ(Focus(), "cmdList");
             Key(Qt::Key_Return);
         }},
    };
    ScriptedBoxes boxes;
    for (const char *box : {"txtFromDate", "txtToDate"}) {
        for (const auto &[how, leave] : ways) {
            state.isListRequested = false;
            Show();
            Type(box, "970230");
            leave();
            QApplication::processEvents();
            EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{BadDateText}) << how;
            EXPECT_EQ(Focus(), box) << how;
            EXPECT_EQ(Text(box), "970230") << how;
            EXPECT_TRUE(screen->isVisible()) << how;
            EXPECT_EQ(CheckedKeys(), "012345") << how;
            EXPECT_EQ(Find<QTabBar>("tabDate")->currentIndex(), 0) << how;
            EXPECT_FALSE(state.isListRequested) << how;
            // A good date then goes the same way without another word.
            Type(box, "");
            Click("txtOdrNo");
            EXPECT_EQ(Focus(), "txtOdrNo") << how;
            EXPECT_TRUE(boxes.TakeTexts().empty()) << how;
        }
    }
}

TEST_F(SearchScreen, TheExitButtonAsksNothingOfABadDate)
{
    const ScriptedBoxes boxes;
    const std::pair<const char *, std::function<void()>> ways[] = {
        {"mouse", [&] { Click("cmdExit"); }},
        {"Alt+X", [&] { Key(Qt::Key_X, Qt::AltModifier); }},
        {"close button", [&] { screen->close(); }},
    };
    for (const auto &[how, leave] : ways) {
        state.isListRequested = true;
        Show();
        Type("txtToDate", "970230");
        leave();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !screen->isVisible(); })) << how;
        EXPECT_FALSE(state.isListRequested) << how;
    }
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(SearchScreen, TheRealMessageBoxGivesTheFocusBackToTheDate)
{
    screen.emplace(state);
    Operator player;
    int shown = 0;
    const auto seen = [&] {
        ++shown;
        EXPECT_EQ(static_cast<QMessageBox *>(Operator::Front("MsgBox"))->text().trimmed(),
                  QString(BadDateText).trimmed());
        player.Key(Qt::Key_Return);
    };
    player.At("SC030010", "typing", [&] {
        EXPECT_EQ(Focus(), "txtCustCD");
        player.Type("txtFromDate", "970230");
        player.Key(Qt::Key_Return);
    });
    player.At("MsgBox", "message after Enter", seen);
    player.At("SC030010", "back", [&] {
        EXPECT_EQ(Focus(), "txtFromDate");
        EXPECT_EQ(Text("txtFromDate"), "970230");
        player.Click("cmdList");
    });
    player.At("MsgBox", "message after the list button", seen);
    player.At("SC030010", "back again", [&] {
        EXPECT_EQ(Focus(), "txtFromDate");
        player.Keys("970228");
        player.Click("cmdList");
    });
    player.Start();
    EXPECT_EQ(screen->exec(), QDialog::Accepted);
    EXPECT_TRUE(player.IsDone()) << player.Failure().toStdString();
    EXPECT_EQ(shown, 2);
    EXPECT_EQ(state.conditions.fromDate, "19970228");
}
