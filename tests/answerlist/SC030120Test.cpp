#include "answerlist/SC030120.h"

#include "ListFixture.h"
#include "support/WindowHands.h"

#include <QClipboard>
#include <QInputMethodEvent>
#include <QLabel>
#include <functional>
#include <optional>

namespace {

using Told = std::vector<QString>;

constexpr auto BadDate = "日付の入力が間違っています\r";
constexpr auto BadNumber = "数値の入力が間違っています\r";
constexpr auto NoData = "データが存在しません\r";
constexpr auto Saved = "登録されました\r";

class DetailDialog : public ListDatabase, public WindowHands
{
protected:
    DetailDialog()
    {
        AddOrder(7, "AccTan = 1234567.5, TanKBN = '4', Unit = 'PCS', ZanVal = 1234.5, "
                    "F019 = 'SUJ2 φ10'");
        file.Insert("TLEI0010", {{"AccNo", 7}, {"KobaiTanto", "佐藤"}});
        file.Insert("TLEI0011", {{"AccNo", 7}, {"F082", "2"}});
        ResetLine();
    }

    void ResetLine()
    {
        file.Run("DELETE FROM TLSP0010");
        AddLine(7, 1, 2,
                "CustSecName = '資材部', MfactNo = 'M-7', AccVal = 2000, IndVal = 0.25, "
                "AnsVal = 10, LimDate = '19970528', AnsLimDate = '20260601', ShpDate = '20260529', "
                "ArvExpDate = '20260601', Biko = '前の備考', ContractKBN = 'D', AnsMark = '2'");
        state.detail = {7, 1, 2, "20260605", Decimal::FromText(u"1012.5"), true};
    }

    void Show()
    {
        dialog.emplace(state);
        ShowWindow(*dialog);
        ASSERT_TRUE(QTest::qWaitFor(
            [this] { return !Text("txtCustCD").isEmpty() || !Find("cmdRegister")->isEnabled(); }));
    }

    /// What stands in these boxes, separated by "|".
    QString Texts(std::initializer_list<const char *> names)
    {
        QStringList texts;
        for (const char *name : names)
            texts += Text(name);
        return texts.join('|');
    }

    QString Line()
    {
        return Stored("AnsLimDate, AnsVal, ShpDate, ArvExpDate, Biko, AnsMark, UpdPGName, UpdDate, "
                      "UpdTime");
    }

    static constexpr auto StoredLine = "20260601|10.0|20260529|20260601|前の備考|2|||";

    ScriptedBoxes boxes;
    std::optional<SC030120> dialog;
};

} // namespace

TEST_F(DetailDialog, ShowsTheLineWithItsOrderAndMasters)
{
    Show();
    EXPECT_EQ(
        Texts({"txtCustCD", "txtCustName", "txtCustSecCD", "txtCustSecName", "txtKobaiTanto"}),
        "C1|青葉電機|SEC|資材部|佐藤");
    EXPECT_EQ(Texts({"txtAccHinCD", "txtHinCD", "txtHinName", "txtF019", "txtUnit", "txtReadTime"}),
              "HIN-1|OWN-1|抵抗器|SUJ2 φ10|PCS| 7");
    EXPECT_EQ(Texts({"txtAccTan", "txtTanKBN", "txtTanKBNName", "txtF082", "txtF082Name"}),
              "    1,234,567.5  |4|概算：算定方式|2|別途協議による");
    EXPECT_EQ(Texts({"txtOdrNo", "txtContractKBN", "txtMfactNo", "txtPayNo", "txtLimDate"}),
              "PO-7|D 期間注文型取引(週)|M-7|P1|97/05/28");
    EXPECT_EQ(Texts({"txtAccVal", "txtZanVal", "txtIndVal"}),
              "      2,000|      1,234.5  |          0.25 ");
    // The answer is the list's.
    EXPECT_EQ(Texts({"txtAnsLimDate", "txtAnsVal", "txtBiko"}), "260605|      1,012.5  |前の備考");
    EXPECT_EQ(Focus(), "txtAnsLimDate");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Texts({"txtAnsLimDate", "txtAnsVal"}), "26/06/05|1012.5");
    EXPECT_EQ(Find<QLabel>("DATE")->text(), "26/05/01");
    EXPECT_TRUE(boxes.Shown().empty());
    EXPECT_EQ(Line(), StoredLine);
}

TEST_F(DetailDialog, CodesWithoutANameAndMissingRows)
{
    file.Run("DELETE FROM TLEI0010; UPDATE TLEI0011 SET F082 = '8';"
             "UPDATE TLAC0010 SET TanKBN = '9', ZanVal = NULL, AccTan = NULL, F019 = NULL;"
             "UPDATE TLSP0010 SET ContractKBN = 'x', LimDate = '', Biko = NULL, PayNo = NULL");
    state.detail.answeredDate.clear();
    state.detail.answeredQuantity = 0;
    Show();
    EXPECT_EQ(Texts({"txtF082", "txtF082Name", "txtTanKBN", "txtTanKBNName", "txtContractKBN"}),
              "8||9||x");
    EXPECT_EQ(Texts({"txtKobaiTanto", "txtPayNo", "txtF019", "txtLimDate", "txtBiko"}), "||||");
    EXPECT_EQ(Texts({"txtZanVal", "txtAccTan", "txtAnsLimDate", "txtAnsVal"}),
              "          0|            0||          0");
    file.Run("DELETE FROM TLEI0011");
    Show();
    EXPECT_EQ(Texts({"txtF082", "txtF082Name"}), "|");
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
        QTest::mouseClick(box, Qt::LeftButton);
        ASSERT_EQ(Focus(), box->objectName()) << "its text can be marked and copied";
        Key(Qt::Key_A, Qt::ControlModifier);
        Key(Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QApplication::clipboard()->text(), box->text());
    }
    inputs.sort();
    EXPECT_EQ(inputs, (QStringList{"txtAnsLimDate", "txtAnsVal", "txtBiko"}));
}

TEST_F(DetailDialog, KeysWalkThroughTheInputsAlone)
{
    Show();
    for (const char *field : {"txtAnsLimDate", "txtAnsVal", "txtBiko", "cmdRegister", "cmdExit"}) {
        EXPECT_EQ(Focus(), field);
        Key(Qt::Key_Tab);
    }
    for (const char *field : {"txtAnsLimDate", "txtAnsVal", "txtBiko", "cmdRegister"}) {
        EXPECT_EQ(Focus(), field);
        if (Focus() != "cmdRegister")
            Key(Qt::Key_Return);
    }
    const std::pair<Qt::Key, const char *> mnemonics[]
        = {{Qt::Key_B, "txtBiko"}, {Qt::Key_Q, "txtAnsVal"}, {Qt::Key_D, "txtAnsLimDate"}};
    for (const auto &[key, field] : mnemonics) {
        Key(key, Qt::AltModifier);
        EXPECT_EQ(Focus(), field);
    }
    EXPECT_TRUE(boxes.Shown().empty());
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(DetailDialog, AWrongEntryIsToldOnceHoweverItIsLeft)
{
    const struct
    {
        const char *box, *wrong, *good;
        QString told;
    } entries[] = {{"txtAnsLimDate", "260631", "260630", BadDate},
                   {"txtAnsLimDate", "26", "260630", BadDate},
                   {"txtAnsVal", "-1", "1", BadNumber},
                   {"txtAnsVal", ".5", "0.5", BadNumber},
                   {"txtAnsVal", "5.", "5", BadNumber}};
    const struct
    {
        const char *what;
        std::function<void()> leave;
        bool isTold, isSaving;
    } ways[] = {{"Tab", [] { Key(Qt::Key_Tab); }, true, false},
                {"Enter", [] { Key(Qt::Key_Return); }, true, false},
                {"register", [&] { Click("cmdRegister"); }, true, true},
                {"Alt+R", [&] { Alt(Qt::Key_R); }, true, true},
                {"exit", [&] { Click("cmdExit"); }, false, false},
                {"Alt+X", [&] { Alt(Qt::Key_X); }, false, false},
                {"Esc", [] { Key(Qt::Key_Escape); }, false, false}};
    for (const auto &[box, wrong, good, told] : entries) {
        for (const auto &[what, leave, isTold, isSaving] : ways) {
            SCOPED_TRACE(std::string(box) + " \"" + wrong + "\" " + what);
            Show();
            Type(box, wrong);
            leave();
            EXPECT_EQ(boxes.TakeTexts(), isTold ? Told{told} : Told());
            EXPECT_EQ(dialog->isVisible(), isTold);
            EXPECT_EQ(dialog->result(), QDialog::Rejected);
            EXPECT_EQ(Line(), StoredLine);
            EXPECT_EQ(state.detail.answeredDate, "20260605");
            if (!isTold)
                continue;
            EXPECT_EQ(Focus(), box);
            EXPECT_EQ(Text(box), wrong);
            if (!isSaving)
                continue;
            Type(box, good);
            leave();
            EXPECT_EQ(boxes.TakeTexts(), Told{Saved});
            EXPECT_FALSE(dialog->isVisible());
            ResetLine();
        }
    }
}

TEST_F(DetailDialog, SavesTheEntryAndHandsItBack)
{
    Show();
    Keys("260607"); // what stood there is selected
    Key(Qt::Key_Return);
    Keys("1234.567");
    Key(Qt::Key_Return);
    EXPECT_EQ(Text("txtAnsVal"), "      1,234.567");
    Type("txtBiko", "memo");
    Key(Qt::Key_Return);
    Key(Qt::Key_Return); // on the button
    ASSERT_EQ(boxes.Shown().size(), 1u);
    EXPECT_EQ(boxes.Shown()[0].title, "情報");
    EXPECT_EQ(boxes.TakeTexts(), Told{Saved});
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(Line(), "20260607|1234.567|20260604|20260607|memo|2|TL030101|20260501|090807");
    EXPECT_EQ(state.detail.answeredDate, "20260607");
    EXPECT_EQ(state.detail.answeredQuantity.ToText(), "1234.567");

    Show();
    Type("txtAnsLimDate", "");
    Type("txtAnsVal", "");
    Click("cmdRegister");
    EXPECT_EQ(boxes.TakeTexts(), Told{Saved});
    EXPECT_EQ(Line(), "|0.0|20260604|20260607|memo|2|TL030101|20260501|090807");
    EXPECT_EQ(state.detail.answeredDate, "");
    EXPECT_TRUE(state.detail.answeredQuantity.IsZero());
}

TEST_F(DetailDialog, RemarksComeBackAsTheyWereTyped)
{
    const std::pair<const char *, const char *> remarks[] = {
        {"O'Neil | 'x'", "O'Neil | 'x'"},
        {"納期は、要確認　|ｶﾅ'", "納期は、要確認　|ｶﾅ'"},
        {"*?#[a] \"q\" & -- ;", "*?#[a] \"q\" & -- ;"},
        {" 前の空白", " 前の空白"},
        {"", ""},
        {"xあいうえおかきくけこさしすせそ", "xあいうえおかきくけこさしすせ"}, // 31 bytes
    };
    for (const auto &[typed, kept] : remarks) {
        Show();
        Type("txtBiko", "");
        QInputMethodEvent event; // hands over what an input method has converted
        event.setCommitString(typed);
        QApplication::sendEvent(Box("txtBiko"), &event);
        Click("cmdRegister");
        EXPECT_EQ(boxes.TakeTexts(), Told{Saved}) << typed;
        EXPECT_EQ(Stored("Biko"), kept);
        Show();
        EXPECT_EQ(Text("txtBiko"), kept);
    }
}

TEST_F(DetailDialog, ALineThatCannotBeShownCannotBeSaved)
{
    const std::pair<const char *, const char *> losses[] = {
        {"DELETE FROM TLMT0020", NoData}, // the product
        {"ALTER TABLE TLMT0040 RENAME TO Gone", "ｴﾗｰｺｰﾄﾞ："},
    };
    for (const auto &[loss, told] : losses) {
        file.Run(loss);
        Show();
        ASSERT_FALSE(boxes.Shown().empty()) << loss;
        EXPECT_TRUE(boxes.TakeTexts()[0].startsWith(told)) << loss;
        EXPECT_FALSE(Find("cmdRegister")->isEnabled()) << loss;
        EXPECT_EQ(Text("txtCustCD"), "") << loss;
        Alt(Qt::Key_R);
        EXPECT_TRUE(dialog->isVisible()) << loss;
        Key(Qt::Key_Escape);
        EXPECT_FALSE(dialog->isVisible()) << loss;
        EXPECT_TRUE(boxes.Shown().empty()) << loss;
    }
}

TEST_F(DetailDialog, WhatIsRefusedKeepsTheDialogOpen)
{
    file.Run("CREATE TRIGGER Refuse BEFORE UPDATE ON TLSP0010 "
             "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    Show();
    Type("txtAnsLimDate", "260610");
    Type("txtBiko", "memo");
    Click("cmdRegister");
    EXPECT_EQ(boxes.TakeTexts().size(), 2u);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(Text("txtBiko"), "memo");
    EXPECT_EQ(Line(), StoredLine);
    EXPECT_EQ(state.detail.answeredDate, "20260605");
    file.Run("DROP TRIGGER Refuse");
    Click("cmdRegister");
    EXPECT_EQ(boxes.TakeTexts(), Told{Saved});
    EXPECT_EQ(Stored("AnsLimDate, Biko"), "20260610|memo");
}
