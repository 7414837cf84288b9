#include "answerlist/SC030120.h"

#include "lines/LinesFixture.h"
#include "support/WindowHands.h"

#include <QInputMethodEvent>
#include <QLabel>
#include <QScrollArea>
#include <QTableWidget>
#include <optional>

namespace {

using Told = std::vector<QString>;

constexpr auto BadDate = "日付の入力が間違っています\r";
constexpr auto BadNumber = "数値の入力が間違っています\r";
constexpr auto NoData = "データが存在しません\r";
constexpr auto Saved = "登録されました\r";
constexpr auto MayLose = "登録していない変更があります。破棄して戻りますか";
constexpr auto MayOverwrite = "ほかの人がこの明細を変更しています。上書きしますか";

class DetailDialog : public LinesFixture, public WindowHands
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

    /// The line as it is stored, and an answer that is not registered yet.
    void ResetLine()
    {
        file.Run("DELETE FROM TLSP0010");
        AddLine(7, 1, 2,
                "CustSecName = '資材部', MfactNo = 'M-7', AccVal = 2000, IndVal = 0.25, "
                "AnsVal = 10, LimDate = '19970528', AnsLimDate = '20260601', ShpDate = '20260529', "
                "ArvExpDate = '20260601', Biko = '前の備考', ContractKBN = 'D', AnsMark = '2'");
        state.detail
            = {7, 1, 2, "20260605", Decimal::FromText(u"1012.5"), true, "20260601", 10, false};
    }

    /// The line with this answer, on the list too.
    void ResetLine(const QString &date, const QString &quantity, const QString &remarks)
    {
        ResetLine();
        Change("TLSP0010", "1 = 1",
               "AnsLimDate = '" + date + "', AnsVal = " + quantity + ", Biko = '" + remarks + "'");
        state.detail.answeredDate = state.detail.storedDate = date;
        state.detail.answeredQuantity = state.detail.storedQuantity = Decimal::FromText(quantity);
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

    /// The three boxes to answer in, without the quantity's padding.
    QString Entries()
    {
        return Text("txtAnsLimDate") + '|' + Text("txtAnsVal").trimmed() + '|' + Text("txtBiko");
    }

    /// Leaves or saves by a key; 0 stands for a click on the button, F4 for the window's frame.
    void Go(Qt::Key way, const QString &button)
    {
        if (way == Qt::Key_0)
            Click(button);
        else if (way == Qt::Key_F4)
            dialog->close();
        else if (way == Qt::Key_R || way == Qt::Key_X)
            Alt(way);
        else
            Key(way);
    }

    /// The history's rows as they are shown, cells separated by "|".
    QStringList History()
    {
        const QAbstractItemModel &cells = *Find<QTableWidget>("spdHistory")->model();
        QStringList rows;
        for (int row = 0; row < cells.rowCount(); ++row) {
            QStringList texts;
            for (int column = 0; column < cells.columnCount(); ++column)
                texts += cells.index(row, column).data().toString();
            rows += texts.join('|');
        }
        return rows;
    }

    QString Line() { return Stored("AnsLimDate, AnsVal, ShpDate, Biko, UpdPGName"); }

    static constexpr auto StoredLine = "20260601|10.0|20260529|前の備考|";

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
    EXPECT_EQ(Find("stbMain")->findChildren<QLabel *>().front(), Find<QLabel>("MSG"));
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(DetailDialog, CodesWithoutANameAndMissingRows)
{
    file.Run("DELETE FROM TLEI0010; UPDATE TLEI0011 SET F082 = '8';"
             "UPDATE TLAC0010 SET TanKBN = '9', ZanVal = NULL, AccTan = NULL, F019 = NULL;"
             "UPDATE TLSP0010 SET ContractKBN = 'x', LimDate = '', Biko = NULL, PayNo = NULL");
    state.detail.answeredDate.clear();
    Show();
    EXPECT_EQ(Texts({"txtF082", "txtF082Name", "txtTanKBN", "txtTanKBNName", "txtContractKBN",
                     "txtKobaiTanto", "txtPayNo", "txtF019", "txtLimDate", "txtBiko", "txtAccTan"}),
              "8||9||x||||||            0");
}

TEST_F(DetailDialog, KeysWalkThroughTheInputs)
{
    Show();
    for (const char *field : {"txtAnsLimDate", "txtAnsVal", "txtBiko", "cmdRegister", "cmdExit"}) {
        EXPECT_EQ(Focus(), field);
        Key(Qt::Key_Tab);
    }
    for (const char *field : {"txtAnsLimDate", "txtAnsVal", "txtBiko"}) {
        EXPECT_EQ(Focus(), field);
        Key(Qt::Key_Return);
    }
    EXPECT_EQ(Focus(), "cmdRegister");
    const std::pair<Qt::Key, const char *> mnemonics[]
        = {{Qt::Key_B, "txtBiko"}, {Qt::Key_Q, "txtAnsVal"}, {Qt::Key_D, "txtAnsLimDate"}};
    for (const auto &[key, field] : mnemonics) {
        Key(key, Qt::AltModifier);
        EXPECT_EQ(Focus(), field);
    }
}

TEST_F(DetailDialog, AWrongEntryIsToldOnceHoweverItIsLeft)
{
    const std::pair<const char *, const char *> entries[] = {{"txtAnsLimDate", "260631"},
                                                             {"txtAnsLimDate", "26063"},
                                                             {"txtAnsVal", "-1"},
                                                             {"txtAnsVal", "5."}};
    for (const auto &[box, wrong] : entries) {
        const QString told = box == QString("txtAnsVal") ? BadNumber : BadDate;
        for (const Qt::Key way : {Qt::Key_Tab, Qt::Key_Return, Qt::Key_R, Qt::Key_0}) {
            SCOPED_TRACE(std::string(box) + " \"" + wrong + "\" " + std::to_string(way));
            Show();
            Type(box, wrong);
            Go(way, "cmdRegister");
            QApplication::processEvents();
            EXPECT_EQ(boxes.TakeTexts(), Told{told});
            EXPECT_TRUE(dialog->isVisible());
            EXPECT_EQ(Focus(), box);
            EXPECT_EQ(Text(box), wrong);
            EXPECT_EQ(Box(box)->selectedText(), wrong);
            EXPECT_EQ(Line(), StoredLine);
        }
    }
    Show();
    Keys("26");
    Key(Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(Focus(), "cmdExit") << "on the way out it need not be right";
}

TEST_F(DetailDialog, LeavingAsksOnlyWhenSomethingWasEdited)
{
    const std::pair<const char *, bool> edits[] = {
        {"", false},      {"\t\t\t", false},  {"260605\t1012.5\t", false}, // put back
        {"26", true},     {"260606\t", true}, {"\b", true},
        {"\t1012", true}, {"\t\t\b", true},
    };
    for (const auto &[keys, isEdited] : edits) {
        for (const Qt::Key way : {Qt::Key_Escape, Qt::Key_X, Qt::Key_0, Qt::Key_F4}) {
            SCOPED_TRACE(QString("%1 %2").arg(keys).arg(way).toStdString());
            Show();
            Keys(keys);
            const QString entered = Entries();
            const QString focus = Focus();
            if (isEdited) {
                boxes.Press(BoxButton::No);
                Go(way, "cmdExit");
                EXPECT_TRUE(boxes.Shown().at(0).style & BoxStyle::DefaultButton2);
                EXPECT_EQ(boxes.TakeTexts(), Told{MayLose});
                EXPECT_TRUE(dialog->isVisible());
                EXPECT_EQ(Focus(), focus);
                EXPECT_EQ(Entries(), entered);
                boxes.Press(BoxButton::Yes);
            }
            Go(way, "cmdExit");
            EXPECT_EQ(boxes.TakeTexts(), isEdited ? Told{MayLose} : Told());
            EXPECT_FALSE(dialog->isVisible());
            EXPECT_EQ(Line(), StoredLine);
            EXPECT_EQ(state.detail.answeredDate, "20260605");
        }
    }
}

TEST_F(DetailDialog, WhatIsEnteredIsSavedAndTheRestAsItCameIn)
{
    const struct
    {
        const char *date, *quantity, *remarks; ///< before
        const char *keys;                      ///< ">" is the end key
        const char *shown;
        const char *saved; ///< nothing: just as it was
    } lines[] = {
        {"99999999", "1.23456", "10〜20kg −5℃", "\t\t\t", "99/99/99|1.234|10〜20kg −5℃", {}},
        {"ABC",
         "1234567890123",
         "一行目\r\n二行目\n",
         "\t\t\t",
         "C|567,890,123|一行目↵二行目↵",
         {}},
        {"ABC", "0", "一\r\n二", "\b\t\t>3\t", "|0|一↵二3", "|0.0|一\r\n二3"},
        {"19260520", "1.23456", "", "260520\t1.234\t", "26/05/20|1.234|", {}}, // as shown
        {"", "5", "", "\t\b\t *'#[a] \"q\" & |納ｶ", "|0| *'#[a] \"q\" & |納ｶ",
         "|0.0| *'#[a] \"q\" & |納ｶ"},
        {"", "5", "", "\t\txあいうえおかきくけこさしすせそ", "|5|xあいうえおかきくけこさしすせ",
         "|5.0|xあいうえおかきくけこさしすせ"},
    };
    for (const auto &[date, quantity, remarks, keys, shown, saved] : lines) {
        SCOPED_TRACE(std::string(date) + ' ' + remarks);
        ResetLine(date, quantity, remarks);
        const QString stored = Stored("AnsLimDate, AnsVal, Biko");
        Show();
        for (const QChar key : QString(keys)) {
            QInputMethodEvent converted;
            converted.setCommitString(key);
            if (key == '>')
                Key(Qt::Key_End);
            else if (key < QChar(0x80))
                Keys(key);
            else
                QApplication::sendEvent(QApplication::focusWidget(), &converted);
        }
        EXPECT_EQ(Entries(), shown);
        Click("cmdRegister");
        EXPECT_EQ(boxes.TakeTexts(), Told{Saved});
        EXPECT_EQ(dialog->result(), QDialog::Accepted);
        EXPECT_EQ(Stored("AnsLimDate, AnsVal, Biko"), saved ? saved : stored);
        EXPECT_EQ(Stored("AnsLimDate"), state.detail.answeredDate);
        EXPECT_EQ(Decimal::FromText(Stored("AnsVal")), state.detail.answeredQuantity);
    }
}

TEST_F(DetailDialog, AnothersChangeIsOverwrittenOnlyWhenAskedFor)
{
    const struct
    {
        const char *change;
        bool isAskedBefore, isAskedAfter; ///< made before the dialog opened, or after it
    } changes[] = {
        {"AnsLimDate = '20260602'", true, true},
        {"AnsVal = 10.5", true, true},
        {"AnsLimUmu = 3", true, true},
        {"Biko = '別の備考'", false, true}, // the dialog shows it
        {"ShpDate = '20260528', UpdPGName = 'OTHER', Biko = '前の備考 '", false, false},
    };
    for (const auto &[change, isAskedBefore, isAskedAfter] : changes) {
        for (const bool isBefore : {true, false}) {
            SCOPED_TRACE(std::string(change) + (isBefore ? " before" : " after"));
            ResetLine();
            if (isBefore)
                Change("TLSP0010", "1 = 1", change);
            Show();
            if (!isBefore)
                Change("TLSP0010", "1 = 1", change);
            const QString theirs = Line();
            Keys("260607");
            const bool isAsked = isBefore ? isAskedBefore : isAskedAfter;
            if (isAsked) {
                boxes.Press(BoxButton::No);
                Click("cmdRegister");
                EXPECT_TRUE(boxes.Shown().at(0).style & BoxStyle::DefaultButton2);
                EXPECT_EQ(boxes.TakeTexts(), Told{MayOverwrite});
                EXPECT_EQ(Line(), theirs);
                ASSERT_TRUE(dialog->isVisible());
                boxes.Press(BoxButton::Yes);
            }
            Click("cmdRegister");
            EXPECT_EQ(boxes.TakeTexts(), isAsked ? (Told{MayOverwrite, Saved}) : Told{Saved});
            EXPECT_EQ(Stored("AnsLimDate, AnsVal"), "20260607|1012.5");
            EXPECT_FALSE(dialog->isVisible());
        }
    }
}

TEST_F(DetailDialog, ALineThatCannotBeShownCannotBeSaved)
{
    for (const auto &[change, told] :
         {std::pair("DELETE FROM TLMT0020", NoData), {"DROP TABLE TLMT0020", "ｴﾗｰｺｰﾄﾞ：3075"}}) {
        file.Run(change);
        Show();
        const auto texts = boxes.TakeTexts();
        EXPECT_EQ(texts.size(), 1U);
        EXPECT_TRUE(texts.front().startsWith(told)) << texts.front().toStdString();
        EXPECT_FALSE(Find("cmdRegister")->isEnabled());
        Alt(Qt::Key_R);
        EXPECT_TRUE(dialog->isVisible());
        Key(Qt::Key_Escape);
        EXPECT_FALSE(dialog->isVisible());
    }
}

TEST_F(DetailDialog, WhatIsRefusedKeepsTheDialogOpen)
{
    file.Refuse("UPDATE");
    Show();
    Keys("260610\r1234.567\rmemo\r\r"); // the last on the button
    EXPECT_EQ(boxes.TakeTexts().size(), 2u);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(Entries(), "26/06/10|1,234.567|memo");
    EXPECT_EQ(state.detail.answeredDate, "20260605");
    file.RefuseNothing();
    Click("cmdRegister");
    EXPECT_EQ(boxes.TakeTexts(), Told{Saved});
    EXPECT_EQ(Stored("AnsLimDate, AnsVal, Biko"), "20260610|1234.567|memo");
}

TEST_F(DetailDialog, ShowsEarlierAnswersTheLatestFirst)
{
    Show();
    EXPECT_EQ(History(), QStringList());
    EXPECT_TRUE(Find("spdHistory")->isVisible());
    Key(Qt::Key_Escape);

    AddAnswer(7, 1, 2, 1);
    AddAnswer(7, 1, 2, 10, "AnsKBN = '2', AnsVal = 1234.5");
    AddAnswer(7, 1, 2, 9,
              "AnsLimDate = '', AnsKBN = '2', RecNo = '', RecPath = '', UpdTime = NULL");
    AddAnswer(7, 1, 1, 1); // of other lines
    AddAnswer(7, 2, 2, 1);
    AddAnswer(8, 1, 2, 1);
    Show();
    EXPECT_EQ(History(), (QStringList{"26/05/01 09:08|26/05/28|1,234.500|tanaka（desk1）|2 変更",
                                      "26/05/01||18.000|tanaka（desk1）|2 変更",
                                      "26/05/01 09:08|26/05/28|2.000|tanaka（desk1）|1 新規"}));
    EXPECT_EQ(Find<QTableWidget>("spdHistory")->item(0, 4)->toolTip(),
              "レコード番号 00007　C:\\OUT\\C1.TXT");
    auto *table = Find<QTableWidget>("spdHistory");
    Key(Qt::Key_H, Qt::AltModifier);
    EXPECT_EQ(Focus(), "spdHistory");
    Key(Qt::Key_Down);
    Key(Qt::Key_Down);
    EXPECT_EQ(table->currentRow(), 2);
    Keys("9");
    Key(Qt::Key_F2);
    EXPECT_FALSE(table->findChild<QLineEdit *>()) << "it only shows";
    Key(Qt::Key_Return);
    EXPECT_NE(Focus(), "spdHistory");
    Key(Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(DetailDialog, FitsALowScreenWithItsHistory)
{
    constexpr int LowScreen = 768;
    constexpr int FrameAndPanel = 68;
    for (int number = 1; number <= 20; ++number)
        AddAnswer(7, 1, 2, number);
    Show();
    EXPECT_LE(dialog->height(), LowScreen - FrameAndPanel);
    EXPECT_EQ(dialog->findChild<QScrollArea *>(), nullptr) << "nothing has to be scrolled";
    const auto *table = Find<QTableWidget>("spdHistory");
    EXPECT_GE(table->viewport()->height(), 2 * table->rowHeight(0)) << "two answers at least";
}

TEST_F(DetailDialog, ADatabaseWithoutHistoryHasNoTableForIt)
{
    file.Run("DROP TABLE TLAH0010");
    Show();
    EXPECT_FALSE(Find("spdHistory")->isVisible());
    EXPECT_FALSE(Find("lblHistory")->isVisible());
    EXPECT_TRUE(boxes.Shown().empty());
    Keys("260610\r\r\r\r");
    EXPECT_EQ(boxes.TakeTexts(), Told{Saved});
}
