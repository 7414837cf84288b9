#include "answerlist/SC030120.h"

#include "support/FixedClock.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>
#include <optional>

namespace {

using Texts = std::vector<QString>;

constexpr auto BadDate = "日付の入力が間違っています\r";
constexpr auto BadNumber = "数値の入力が間違っています\r";
constexpr auto NoData = "データが存在しません\r";
constexpr auto Saved = "登録されました\r";
constexpr auto NotSaved = "登録されませんでした\r";

/// The ways to leave a box.
enum class Way { Tab, Backtab, Enter, ClickRegister, AltRegister, ClickExit, AltExit, Escape };

class DetailDialog : public testing::Test
{
protected:
    DetailDialog()
    {
        database.Insert("TLMT0040",
                        {{"CustCD", "C1"}, {"CustName", "神田電機"}, {"VanCD", "VAN001234567"}});
        database.Insert("TLMT0050",
                        {{"CustCoCD", "VAN001"}, {"PayDstCD", "D1"}, {"PayNeedDays", 3}});
        database.Insert("TLMT0020", {{"AccHinCD", "P1"}, {"ReadTime", 7}});
        database.Insert("TLAC0010", {{"AccNo", 7},
                                     {"CustCD", "C1"},
                                     {"AccHinCD", "P1"},
                                     {"AccHinName", "深溝玉軸受"},
                                     {"AccTan", 1234567.5},
                                     {"TanKBN", "4"},
                                     {"Unit", "PCS"},
                                     {"ZanVal", 1234.5},
                                     {"F019", "SUJ2 φ10"}});
        database.Insert("TLEI0010", {{"AccNo", 7}, {"KobaiTanto", "佐藤"}});
        database.Insert("TLEI0011", {{"AccNo", 7}, {"F082", "2"}});
        database.Insert("TLSP0010", {{"AccNo", 7},
                                     {"AccSubNo", 1},
                                     {"ShpSubNo", 2},
                                     {"CustCD", "C1"},
                                     {"CustSecCD", "S1"},
                                     {"CustSecName", "資材部"},
                                     {"PayDstCD", "D1"},
                                     {"AccHinCD", "P1"},
                                     {"HinCD", "OWN-1"},
                                     {"OdrNo", "PO-7"},
                                     {"MfactNo", "M-7"},
                                     {"PayNo", "N7"},
                                     {"AccVal", 2000},
                                     {"IndVal", 0.25},
                                     {"AnsVal", 10},
                                     {"LimDate", "19970528"},
                                     {"AnsLimDate", "20261201"},
                                     {"ShpDate", "20261128"},
                                     {"ArvExpDate", "20261201"},
                                     {"Biko", "前の備考"},
                                     {"ContractKBN", "D"},
                                     {"ShpSts", 1},
                                     {"AnsMark", "2"}});
        database.Open(state.db);
        state.detail = {7, 1, 2, "20261205", Decimal::FromText(u"1012.5"), true};
    }

    void Show()
    {
        dialog.emplace(state);
        dialog->show();
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&*dialog));
        ASSERT_TRUE(QTest::qWaitFor([this] {
            return !Text("txtCustCD").isEmpty() || !Button("cmdRegister")->isEnabled();
        }));
    }

    QLineEdit *Box(const QString &name)
    {
        auto *box = dialog->findChild<QLineEdit *>(name);
        EXPECT_NE(box, nullptr) << name.toStdString();
        return box;
    }
    QPushButton *Button(const QString &name) { return dialog->findChild<QPushButton *>(name); }
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

    void Type(const QString &name, const QString &text)
    {
        QTest::mouseClick(Box(name), Qt::LeftButton);
        Key(Qt::Key_A, Qt::ControlModifier);
        Key(Qt::Key_Delete);
        QTest::keyClicks(Box(name), text);
    }

    /// As an input method hands over what it converted.
    void Commit(const QString &name, const QString &text)
    {
        QInputMethodEvent event;
        event.setCommitString(text);
        QApplication::sendEvent(Box(name), &event);
    }

    void Leave(Way way)
    {
        switch (way) {
        case Way::Tab:
            Key(Qt::Key_Tab);
            break;
        case Way::Backtab:
            Key(Qt::Key_Backtab, Qt::ShiftModifier);
            break;
        case Way::Enter:
            Key(Qt::Key_Return);
            break;
        case Way::ClickRegister:
            QTest::mouseClick(Button("cmdRegister"), Qt::LeftButton);
            break;
        case Way::ClickExit:
            QTest::mouseClick(Button("cmdExit"), Qt::LeftButton);
            break;
        case Way::AltRegister:
            Key(Qt::Key_R, Qt::AltModifier);
            break;
        case Way::AltExit:
            Key(Qt::Key_X, Qt::AltModifier);
            break;
        case Way::Escape:
            Key(Qt::Key_Escape);
            break;
        }
        // A button pressed by key stays down for a moment.
        EXPECT_TRUE(QTest::qWaitFor(
            [this] { return !Button("cmdRegister")->isDown() && !Button("cmdExit")->isDown(); }));
        QApplication::processEvents();
    }

    QString Line()
    {
        return database.Rows("SELECT AnsLimDate, AnsVal, ShpDate, ArvExpDate, Biko, AnsMark, "
                             "UpdPGName, UpdDate, UpdTime FROM TLSP0010");
    }

    static constexpr auto StoredLine = "20261201|10.0|20261128|20261201|前の備考|2|||";

    ScriptedBoxes boxes;
    const FixedClock clock{QDateTime(QDate(2026, 11, 25), QTime(8, 9, 7))};
    TestDatabase database;
    ProgramState state;
    std::optional<SC030120> dialog;
};

} // namespace

TEST_F(DetailDialog, ShowsTheLineWithItsOrderAndMasters)
{
    Show();
    const std::pair<const char *, const char *> shown[] = {
        {"txtCustCD", "C1"},
        {"txtCustName", "神田電機"},
        {"txtCustSecCD", "S1"},
        {"txtCustSecName", "資材部"},
        {"txtKobaiTanto", "佐藤"},
        {"txtAccHinCD", "P1"},
        {"txtHinCD", "OWN-1"},
        {"txtHinName", "深溝玉軸受"},
        {"txtAccTan", "    1,234,567.5  "},
        {"txtTanKBN", "4"},
        {"txtTanKBNName", "概算：算定方式"},
        {"txtUnit", "PCS"},
        {"txtReadTime", " 7"},
        {"txtOdrNo", "PO-7"},
        {"txtContractKBN", "D 期間注文型取引(週)"},
        {"txtMfactNo", "M-7"},
        {"txtPayNo", "N7"},
        {"txtZanVal", "      1,234.5  "},
        {"txtIndVal", "          0.25 "},
        {"txtAccVal", "      2,000"},
        {"txtLimDate", "97/05/28"},
        {"txtF082", "2"},
        {"txtF082Name", "別途協議による"},
        {"txtF019", "SUJ2 φ10"},
        {"txtAnsVal", "      1,012.5  "}, // from the list, as the date is
        {"txtBiko", "前の備考"},
    };
    for (const auto &[name, text] : shown)
        EXPECT_EQ(Text(name), text) << name;
    EXPECT_EQ(Focus(), "txtAnsLimDate");
    EXPECT_EQ(Text("txtAnsLimDate"), "261205");
    Leave(Way::Tab);
    EXPECT_EQ(Text("txtAnsLimDate"), "26/12/05");
    EXPECT_EQ(Text("txtAnsVal"), "1012.5");
    EXPECT_EQ(dialog->findChild<QLabel *>("DATE")->text(), "26/11/25");
    EXPECT_TRUE(boxes.Shown().empty());
    EXPECT_EQ(Line(), StoredLine);
}

TEST_F(DetailDialog, CodesWithoutANameAndMissingRows)
{
    database.Run("DELETE FROM TLEI0010; DELETE FROM TLEI0011;"
                 "UPDATE TLAC0010 SET TanKBN = '9', ZanVal = NULL, AccTan = NULL, F019 = NULL;"
                 "UPDATE TLSP0010 SET ContractKBN = 'x', LimDate = '', Biko = NULL, PayNo = NULL");
    state.detail.answeredDate.clear();
    state.detail.answeredQuantity = 0;
    Show();
    const std::pair<const char *, const char *> shown[] = {
        {"txtKobaiTanto", ""}, {"txtF082", ""},
        {"txtF082Name", ""},   {"txtTanKBN", "9"},
        {"txtTanKBNName", ""}, {"txtZanVal", "          0"},
        {"txtPayNo", ""},      {"txtAccTan", "            0"},
        {"txtF019", ""},       {"txtContractKBN", "x"},
        {"txtLimDate", ""},    {"txtAnsLimDate", ""},
        {"txtBiko", ""},       {"txtAnsVal", "          0"},
    };
    for (const auto &[name, text] : shown)
        EXPECT_EQ(Text(name), text) << name;
    database.Run("INSERT INTO TLEI0011 (AccNo, F082) VALUES (7, '8')");
    Show();
    EXPECT_EQ(Text("txtF082"), "8");
    EXPECT_EQ(Text("txtF082Name"), "");
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(DetailDialog, OnlyThreeBoxesTakeAnEntry)
{
    Show();
    QStringList inputs;
    for (QLineEdit *box : dialog->findChildren<QLineEdit *>()) {
        if (!box->isReadOnly()) {
            inputs += box->objectName();
            continue;
        }
        const QString before = box->text();
        QTest::mouseClick(box, Qt::LeftButton);
        ASSERT_EQ(Focus(), box->objectName()) << "its text can be marked and copied";
        Key(Qt::Key_A, Qt::ControlModifier);
        EXPECT_EQ(box->selectedText(), before);
        Key(Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QApplication::clipboard()->text(), before);
        QTest::keyClicks(box, "x");
        Key(Qt::Key_Delete);
        EXPECT_EQ(box->text(), before);
    }
    inputs.sort();
    EXPECT_EQ(inputs, (QStringList{"txtAnsLimDate", "txtAnsVal", "txtBiko"}));
}

TEST_F(DetailDialog, KeysWalkThroughTheInputsAlone)
{
    Show();
    const QStringList fields
        = {"txtAnsLimDate", "txtAnsVal", "txtBiko", "cmdRegister", "cmdExit", "txtAnsLimDate"};
    for (const QString &field : fields) {
        EXPECT_EQ(Focus(), field);
        Key(Qt::Key_Tab);
    }
    const struct
    {
        const char *from;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        const char *to;
    } moves[] = {
        {"txtAnsLimDate", Qt::Key_Return, {}, "txtAnsVal"},
        {"txtAnsVal", Qt::Key_Enter, Qt::KeypadModifier, "txtBiko"},
        {"txtBiko", Qt::Key_Return, {}, "cmdRegister"},
        {"txtBiko", Qt::Key_Return, Qt::ShiftModifier, "txtAnsVal"},
        {"txtAnsVal", Qt::Key_Up, {}, "txtAnsLimDate"},
        {"txtAnsLimDate", Qt::Key_Down, {}, "txtAnsVal"},
        {"txtAnsLimDate", Qt::Key_B, Qt::AltModifier, "txtBiko"},
        {"txtBiko", Qt::Key_Q, Qt::AltModifier, "txtAnsVal"},
        {"txtBiko", Qt::Key_D, Qt::AltModifier, "txtAnsLimDate"},
    };
    for (const auto &[from, key, modifiers, to] : moves) {
        dialog->findChild<QWidget *>(from)->setFocus();
        Key(key, modifiers);
        EXPECT_EQ(Focus(), to) << from << " key " << key;
    }
    EXPECT_TRUE(boxes.Shown().empty());
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(DetailDialog, AWrongEntryIsToldOnceHoweverItIsLeft)
{
    const struct
    {
        const char *box, *wrong;
        Way way;
        Texts told;
        bool isOpen;
    } cases[] = {
        {"txtAnsLimDate", "261131", Way::Tab, {BadDate}, true},
        {"txtAnsLimDate", "26", Way::Enter, {BadDate}, true},
        {"txtAnsLimDate", "261131", Way::ClickRegister, {BadDate}, true},
        {"txtAnsLimDate", "261131", Way::AltRegister, {BadDate}, true},
        {"txtAnsLimDate", "261131", Way::ClickExit, {}, false},
        {"txtAnsLimDate", "261131", Way::AltExit, {}, false},
        {"txtAnsLimDate", "261131", Way::Escape, {}, false},
        {"txtAnsVal", "-1", Way::Tab, {BadNumber}, true},
        {"txtAnsVal", ".5", Way::Backtab, {BadNumber}, true},
        {"txtAnsVal", "5.", Way::Enter, {BadNumber}, true},
        {"txtAnsVal", "-1", Way::ClickRegister, {BadNumber}, true},
        {"txtAnsVal", "-1", Way::AltRegister, {BadNumber}, true},
        {"txtAnsVal", "-1", Way::ClickExit, {}, false},
        {"txtAnsVal", "-1", Way::AltExit, {}, false},
        {"txtAnsVal", "-1", Way::Escape, {}, false},
    };
    for (const auto &[box, wrong, way, told, isOpen] : cases) {
        SCOPED_TRACE(std::string(box) + " \"" + wrong + "\" way " + std::to_string(int(way)));
        Show();
        Type(box, wrong);
        ASSERT_EQ(Text(box), wrong);
        Leave(way);
        EXPECT_EQ(boxes.TakeTexts(), told);
        EXPECT_EQ(dialog->isVisible(), isOpen);
        if (isOpen) {
            EXPECT_EQ(Focus(), box);
            EXPECT_EQ(Text(box), wrong);
        }
        EXPECT_EQ(dialog->result(), QDialog::Rejected);
    }
    EXPECT_EQ(Line(), StoredLine);
    EXPECT_EQ(state.detail.answeredDate, "20261205");
    EXPECT_EQ(state.detail.answeredQuantity.ToText(), "1012.5");
}

TEST_F(DetailDialog, AMendedEntryIsSavedAfterTheRefusal)
{
    for (const Way way : {Way::ClickRegister, Way::AltRegister}) {
        database.Run("UPDATE TLSP0010 SET AnsLimDate = '20261201'");
        Show();
        Type("txtAnsLimDate", "261131");
        Leave(way);
        EXPECT_EQ(boxes.TakeTexts(), Texts{BadDate});
        Type("txtAnsLimDate", "261130");
        Leave(way);
        EXPECT_EQ(boxes.TakeTexts(), Texts{Saved});
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(database.Rows("SELECT AnsLimDate FROM TLSP0010"), "20261130");
    }
}

TEST_F(DetailDialog, SavesTheEntryAndHandsItBack)
{
    Show();
    QTest::keyClicks(Box("txtAnsLimDate"), "261207"); // what stood there is selected
    Key(Qt::Key_Return);
    QTest::keyClicks(Box("txtAnsVal"), "1234.567");
    Key(Qt::Key_Return);
    EXPECT_EQ(Text("txtAnsVal"), "      1,234.567");
    Type("txtBiko", "memo");
    Key(Qt::Key_Return);
    Key(Qt::Key_Return); // on the button
    EXPECT_EQ(boxes.Shown().size(), 1u);
    EXPECT_EQ(boxes.Shown()[0].title, "情報");
    EXPECT_EQ(boxes.TakeTexts(), Texts{Saved});
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(Line(), "20261207|1234.567|20261204|20261207|memo|2|TL030101|20261125|080907");
    EXPECT_EQ(state.detail.answeredDate, "20261207");
    EXPECT_EQ(state.detail.answeredQuantity.ToText(), "1234.567");
}

TEST_F(DetailDialog, AnEmptiedDateKeepsShipAndArrivalDates)
{
    Show();
    Type("txtAnsLimDate", "");
    Type("txtAnsVal", "");
    Leave(Way::ClickRegister);
    EXPECT_EQ(boxes.TakeTexts(), Texts{Saved});
    EXPECT_EQ(Line(), "|0.0|20261128|20261201|前の備考|2|TL030101|20261125|080907");
    EXPECT_EQ(state.detail.answeredDate, "");
    EXPECT_TRUE(state.detail.answeredQuantity.IsZero());
}

TEST_F(DetailDialog, AShippedLineKeepsItsShipAndArrivalDates)
{
    database.Run("UPDATE TLSP0010 SET ShpSts = 3");
    Show();
    Type("txtBiko", "shipped");
    Leave(Way::AltRegister);
    EXPECT_EQ(boxes.TakeTexts(), Texts{Saved});
    EXPECT_EQ(Line(), "20261205|1012.5|20261128|20261201|shipped|2|TL030101|20261125|080907");
}

TEST_F(DetailDialog, RemarksComeBackAsTheyWereTyped)
{
    const struct
    {
        const char *typed, *kept;
    } cases[] = {
        {"O'Neil | 'x'", "O'Neil | 'x'"},
        {"納期は、要確認　|ｶﾅ'", "納期は、要確認　|ｶﾅ'"},
        {"*?#[a] \"q\" & -- ;", "*?#[a] \"q\" & -- ;"},
        {" 前の空白", " 前の空白"},
        {"", ""},
        {"1234567890123456789012345678901", "123456789012345678901234567890"},
        {"あいうえおかきくけこさしすせそた", "あいうえおかきくけこさしすせそ"},
        {"xあいうえおかきくけこさしすせそ", "xあいうえおかきくけこさしすせ"}, // 31 bytes
    };
    for (const auto &[typed, kept] : cases) {
        Show();
        Type("txtBiko", "");
        Commit("txtBiko", typed);
        EXPECT_EQ(Text("txtBiko"), kept);
        Leave(Way::ClickRegister);
        EXPECT_EQ(boxes.TakeTexts(), Texts{Saved}) << typed;
        EXPECT_EQ(database.Rows("SELECT Biko FROM TLSP0010"), kept);
        Show();
        EXPECT_EQ(Text("txtBiko"), kept);
    }
}

TEST_F(DetailDialog, ALineThatCannotBeShownCannotBeSaved)
{
    const std::pair<const char *, const char *> losses[] = {
        {"DELETE FROM TLMT0020", NoData}, // the product
        {"DELETE FROM TLSP0010", NoData},
        {"ALTER TABLE TLMT0040 RENAME TO Gone", "ｴﾗｰｺｰﾄﾞ："},
    };
    for (const auto &[loss, told] : losses) {
        database.Run(loss);
        Show();
        ASSERT_FALSE(boxes.Shown().empty()) << loss;
        EXPECT_TRUE(boxes.TakeTexts()[0].startsWith(told)) << loss;
        EXPECT_FALSE(Button("cmdRegister")->isEnabled()) << loss;
        EXPECT_EQ(Text("txtCustCD"), "") << loss;
        Leave(Way::AltRegister);
        EXPECT_TRUE(dialog->isVisible()) << loss;
        Leave(Way::Escape);
        EXPECT_FALSE(dialog->isVisible()) << loss;
        EXPECT_TRUE(boxes.Shown().empty()) << loss;
    }
}

TEST_F(DetailDialog, ALineDeletedMeanwhileKeepsTheDialogOpen)
{
    Show();
    database.Run("DELETE FROM TLSP0010");
    for (const Way way : {Way::ClickRegister, Way::AltRegister}) {
        Leave(way);
        EXPECT_EQ(boxes.TakeTexts(), Texts{NoData});
        EXPECT_TRUE(dialog->isVisible());
    }
    EXPECT_EQ(Text("txtBiko"), "前の備考");
    EXPECT_EQ(state.detail.answeredDate, "20261205");
}

TEST_F(DetailDialog, ARefusedUpdateIsRolledBack)
{
    database.Run("CREATE TRIGGER Refuse BEFORE UPDATE ON TLSP0010 "
                 "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    Show();
    Type("txtAnsLimDate", "261210");
    Type("txtBiko", "memo");
    Leave(Way::ClickRegister);
    const Texts told = boxes.TakeTexts();
    ASSERT_EQ(told.size(), 2u);
    EXPECT_TRUE(told[0].startsWith("ｴﾗｰｺｰﾄﾞ：")) << told[0].toStdString();
    EXPECT_EQ(told[1], NotSaved);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(Text("txtBiko"), "memo");
    EXPECT_EQ(Line(), StoredLine);
    EXPECT_EQ(state.detail.answeredDate, "20261205");
    // The other program can write: no lock is left. The next try succeeds.
    database.Run("DROP TRIGGER Refuse");
    Leave(Way::ClickRegister);
    EXPECT_EQ(boxes.TakeTexts(), Texts{Saved});
    EXPECT_EQ(database.Rows("SELECT AnsLimDate, Biko FROM TLSP0010"), "20261210|memo");
}
