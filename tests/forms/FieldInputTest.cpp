#include "forms/FieldInput.h"
#include "forms/ShownText.h"

#include "support/QtPrinters.h"
#include "util/bValue.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMimeData>
#include <QStatusTipEvent>
#include <QTest>
#include <gtest/gtest.h>

namespace {

/// A shown box that holds `text`, the part between "<" and ">" selected, or the caret at "|".
class Box : public QLineEdit
{
public:
    explicit Box(int maximum = 32767) { setMaxLength(maximum); }

    void Set(QString text)
    {
        text.replace('|', "<>");
        const qsizetype first = text.indexOf('<');
        const qsizetype last = text.indexOf('>') - 1;
        setText(text.remove('<').remove('>'));
        if (first >= 0)
            setSelection(int(first), int(last - first));
        show();
        activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(this));
        setFocus();
        word.clear();
    }

    QString word; ///< that the box has for its operator

protected:
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::StatusTip)
            word = static_cast<QStatusTipEvent *>(event)->tip();
        return QLineEdit::event(event);
    }
};

// The ways in which an operator brings a text into a box.

void TypeKeys(QLineEdit &box, const QString &text)
{
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_unknown, QString(c), Qt::NoModifier);
}

void TypeAtOnce(QLineEdit &box, const QString &text)
{
    QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_unknown, text, Qt::NoModifier);
}

void Commit(QLineEdit &box, const QString &text)
{
    QInputMethodEvent compose("あ", {});
    QApplication::sendEvent(&box, &compose);
    QInputMethodEvent event;
    event.setCommitString(text);
    QApplication::sendEvent(&box, &event);
}

void PasteByKey(QLineEdit &box, const QString &text)
{
    QApplication::clipboard()->setText(text);
    QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
}

void PasteByMenu(QLineEdit &box, const QString &text)
{
    QApplication::clipboard()->setText(text);
    QContextMenuEvent ask(QContextMenuEvent::Mouse, {}, box.mapToGlobal(QPoint()));
    QApplication::sendEvent(&box, &ask);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    for (QAction *action : menu->actions())
        if (action->text().endsWith("Ctrl+V"))
            action->trigger();
    menu->close();
}

void Drop(QLineEdit &box, const QString &text)
{
    QMimeData data;
    data.setText(text);
    const QPoint at(box.inputMethodQuery(Qt::ImCursorRectangle).toRect().center());
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&box, &enter);
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&box, &drop);
}

using Way = std::pair<const char *, void (*)(QLineEdit &, const QString &)>;

const std::vector<Way> Keys = {{"keys", TypeKeys}};
const std::vector<Way> AtOnce = {{"key of several", TypeAtOnce},
                                 {"input method", Commit},
                                 {"Ctrl+V", PasteByKey},
                                 {"menu", PasteByMenu},
                                 {"drop", Drop}};
const std::vector<Way> Pastes(AtOnce.begin() + 1, AtOnce.end());

struct Case
{
    QString before;
    QString brought;
    QString after;
    QString word = {}; ///< a part of the word that the operator gets; empty: none
};

void Check(Box &box, const std::vector<Way> &ways, const std::vector<Case> &cases)
{
    for (const auto &[way, bring] : ways) {
        for (const auto &[before, brought, after, word] : cases) {
            if (bring == Drop && before.contains('<'))
                continue; // it lands at the pointer and not on what is selected
            box.Set(before);
            bring(box, brought);
            const std::string what
                = way + (": " + brought + " into " + before + ": " + box.word).toStdString();
            EXPECT_EQ(box.text(), after) << what;
            EXPECT_TRUE(word.isEmpty() ? box.word.isEmpty() : box.word.contains(word)) << what;
        }
    }
}

} // namespace

TEST(FieldInput, WhatTheProgramShowsStaysAsItIs)
{
    const QString texts[] = {"重量10\u301c20kg \u22125℃保管", QString(60, u'納'),
                             "一行目\r\n二行目\n", "é\tか\u3099 "};
    Box box(30);
    FieldInput::AttachCode(box);
    ShownText shown(box);
    for (const QString &text : texts) {
        shown.Show(text);
        box.Set(text);
        QTest::keyClick(&box, Qt::Key_Home);
        QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(box.text(), text);
        EXPECT_TRUE(shown.IsShown());
        QTest::keyClick(&box, Qt::Key_Delete);
        EXPECT_EQ(box.text(), text.mid(1)) << "an edit changes no more than it says";
        EXPECT_FALSE(shown.IsShown());
    }
}

TEST(FieldInput, EveryWayInTurnsTwinsAndRefusesWhatHasNoCode)
{
    Box box(40);
    FieldInput::AttachByteLength(box);
    const std::vector<Case> cases = {
        {"", "\u301c\u2212\u2016\u2014\u00a2\u00a3\u00ac",
         "\uff5e\uff0d\u2225\u2015\uffe0\uffe1\uffe2"},
        {"10\u301c|", "\u301c", "10\u301c\uff5e"}, // what stood there stays
        {"", "か\u3099ハ\u309a", "がパ"},
        {"あか|き", "\u3099", "あがき"}, // the mark by itself
        {"|納期", "é", "納期", "「é」（U+00E9）"},
    };
    Check(box, Keys, cases);
    Check(box, AtOnce, cases);
    const QString nul(QChar(0));
    Check(box, AtOnce, {{"|納期", "A𠮷B", "納期", "U+20BB7"}, {"A", "B" + nul, "A", "U+0000"}});
    Check(box, Pastes, {{"|納期", "\tA\r\nB\n", "A B納期"}}); // a copied cell
}

TEST(FieldInput, AWordGoesWithTheNextKeyOrWhenTheBoxIsLeft)
{
    Box box(1);
    FieldInput::AttachCode(box);
    EXPECT_FALSE(box.testAttribute(Qt::WA_InputMethodEnabled));
    for (const bool isLeft : {false, true}) {
        box.Set("");
        TypeKeys(box, "é");
        QTest::keyClick(&box, Qt::Key_Shift);
        EXPECT_FALSE(box.word.isEmpty());
        if (isLeft)
            box.clearFocus();
        else
            QTest::keyClick(&box, Qt::Key_Backspace);
        EXPECT_TRUE(box.word.isEmpty());
    }
}

TEST(FieldInput, CodeBoxTakesHalfWidthCharactersOnly)
{
    Box box(8);
    FieldInput::AttachCode(box);
    const std::vector<Case> cases = {
        {"", "A1'#*[|ｱ", "A1'#*[|ｱ"},
        {"", "ABCDEFGHIJ", "ABCDEFGH", "半角 8 文字まで"},
        {"|12345678", "A", "12345678", "半角 8 文字まで"}, // full: nothing is pushed out
        {"12|3456", "ABC", "12AB3456", "半角 8 文字まで"},
        {"12", "納", "12", "半角文字"},
    };
    Check(box, Keys, cases);
    Check(box, AtOnce, cases);
    Check(box, AtOnce, {{"12", "A納B", "12", "半角文字"}});
}

TEST(FieldInput, ByteLengthBoxCountsFullWidthCharactersTwice)
{
    Box box(7);
    FieldInput::AttachByteLength(box);
    EXPECT_TRUE(box.testAttribute(Qt::WA_InputMethodEnabled));
    const QString limit = "半角 7 文字、全角 3 文字まで";
    const std::vector<Case> cases = {{"", "納期回答", "納期回", limit},
                                     {"納期回", "答", "納期回", limit}, // one byte left
                                     {"納期回", "A", "納期回A"},
                                     {"<納>期回", "ABCD", "ABC期回", limit},
                                     {"納期回答です|", "A", "納期回答です", limit}};
    Check(box, Keys, cases);
    Check(box, AtOnce, cases);
}

TEST(FieldInput, DateBoxTakesSixDigitsOrADateWhole)
{
    Box box(8);
    FieldInput::AttachDate(box);
    EXPECT_FALSE(box.testAttribute(Qt::WA_InputMethodEnabled));
    Check(box, Keys,
          {{"", "97/05-28 a1", "970528"},
           {"97<05>28", "1", "97128"},
           {"970528|", "é", "970528", "é"}});
    const QString no = "日付として読めません";
    Check(box, Pastes,
          {{"", "２６１２０８", "261208"},
           {"", "　2026/12/08\r\n", "261208"},
           {"<270101>", "26/12/08", "261208"},
           {"2701|", "20261208", "261208"}, // a whole date takes the place of what was begun
           {"", "2026年12月8日", "261208"},
           {"27", "261332", "27", no},
           {"27", "2126/12/08", "27", no}, // the box would read 2026
           {"27", "26/1/8", "27", no},
           {"26|", "9999", "26", no}});
}

TEST(FieldInput, NumberBoxTakesASignedNumberOfItsSpec)
{
    Box quantity;
    FieldInput::AttachNumber(quantity, DigitSpec::Quantity);
    EXPECT_FALSE(quantity.testAttribute(Qt::WA_InputMethodEnabled));
    Check(quantity, Keys,
          {{"", "1.2.3", "1.23"},
           {"", "1234567890", "123456789"},
           {"<123456789>.5", "1", "1.5"},
           {"123456789", ".", "123456789."}});
    const QString no = "数値として読めません";
    Check(quantity, Pastes,
          {{"", " 1,234.500 ", "1234.500"},
           {"", "１，２３４．５", "1234.5"},
           {"7", "12,5", "7", no}, // not 125
           {"7", "1234567890", "7", no}});
}
