#include "forms/FieldInput.h"

#include "support/QtPrinters.h"
#include "util/bDate.h"
#include "util/bValue.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>

namespace {

// The ways in which an operator brings a text into a box.

void TypeKeys(QLineEdit &box, const QString &text)
{
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_unknown, QString(c), Qt::NoModifier);
}

void Commit(QLineEdit &box, const QString &text)
{
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
    const std::unique_ptr<QMenu> menu(box.createStandardContextMenu());
    for (QAction *action : menu->actions())
        if (action->text().contains("Paste"))
            return action->trigger();
    FAIL() << "the box offers no paste";
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

struct Way
{
    const char *name;
    void (*bring)(QLineEdit &box, const QString &text);
};

const std::vector<Way> OneByOne = {{"keys", TypeKeys}, {"input method", Commit}};
const std::vector<Way> AtOnce = {{"Ctrl+V", PasteByKey}, {"menu", PasteByMenu}, {"drop", Drop}};

/// A shown box that holds `text`, the part between "<" and ">" selected, or the caret at "|".
class Box : public QLineEdit
{
public:
    explicit Box(int maximum) { setMaxLength(maximum); }

    void Set(QString text)
    {
        const qsizetype first = text.indexOf('<');
        const qsizetype last = text.indexOf('>') - 1;
        const qsizetype caret = text.indexOf('|');
        setText(text.remove('<').remove('>').remove('|'));
        if (first >= 0)
            setSelection(int(first), int(last - first));
        else if (caret >= 0)
            setCursorPosition(int(caret));
        show();
        activateWindow();
        setFocus();
    }
};

struct Case
{
    QString before;
    QString brought;
    QString after;
};

void Check(Box &box, const std::vector<Way> &ways, const std::vector<Case> &cases)
{
    for (const Way &way : ways) {
        for (const auto &[before, brought, after] : cases) {
            box.Set(before);
            way.bring(box, brought);
            EXPECT_EQ(box.text(), after)
                << way.name << ": " << brought.toStdString() << " into " << before.toStdString();
        }
    }
}

} // namespace

TEST(FieldInput, KeepsOfACodeItsHalfWidthCharactersInOrderAndInLength)
{
    const struct
    {
        QString text;
        int maximum;
        QString allowList;
        QString code;
    } cases[] = {
        {"AＢC納D", 8, "", "ACD"},
        {"ｱｲｳｶﾞ", 4, "", "ｱｲｳｶ"},
        {"A𠮷B", 8, "", "AB"}, // not in the code page at all
        {"a1B2c3", 8, "ABC", "aBc"},
        {"A1B2", 8, "   ", "A1B2"},        // a blank list is no list
        {"12AB34", 4, "0123456789", "12"}, // cut first, then the list
    };
    for (const auto &[text, maximum, allowList, code] : cases)
        EXPECT_EQ(FieldInput::CodeText(text, maximum, allowList), code) << text.toStdString();
}

TEST(FieldInput, CodeBoxTakesHalfWidthCharactersOnly)
{
    Box box(8);
    FieldInput::AttachCode(box);
    Check(box, OneByOne,
          {{"", "AB1'#*[|", "AB1'#*[|"},
           {"", "ABCDEFGHIJ", "ABCDEFGH"},
           {"", "ｱｲ", "ｱｲ"},
           {"|12345678", "A", "12345678"}, // full: nothing is pushed out
           {"<123>45678", "AB", "AB45678"},
           {"12|3456", "ABC", "12AB3456"}});
    Check(box, {AtOnce[0], AtOnce[1]},
          {{"", "ABCDEFGHIJ", "ABCDEFGH"},
           {"12", "A納B", "12"},       // refused whole
           {"", "C0001\r\n", "C0001"}, // a copied cell
           {"12|34", "A\tB", "12AB34"}});
    Check(box, {AtOnce[2]}, {{"", "ABCDEFGHIJ", "ABCDEFGH"}, {"12", "A納B", "12"}});
}

TEST(FieldInput, CodeBoxKeepsItsAllowListAndCleansWhatTheProgramPutsIn)
{
    Box box(4);
    FieldInput::AttachCode(box, "0123456789ab");
    Check(box, OneByOne, {{"", "1xB2", "1B2"}});
    Check(box, AtOnce, {{"", "1xB2", "1B2"}});
    box.setText("納1a2b3");
    EXPECT_EQ(box.text(), "1a2");
}

TEST(FieldInput, ByteLengthBoxCountsFullWidthCharactersTwice)
{
    Box box(7);
    FieldInput::AttachByteLength(box);
    Check(box, OneByOne,
          {{"", "納期回答", "納期回"},
           {"納期回", "答A", "納期回A"}, // one byte left: the wide key is refused
           {"<納>期回", "ABCD", "ABC期回"},
           {"|納期回A", "B", "納期回A"},
           {"", "A𠮷B", "AB"}});
    Check(box, AtOnce, {{"", "納期回答", "納期回"}, {"A", "①㈱髙B", "A①㈱髙"}, {"", "A𠮷B", "AB"}});
}

TEST(FieldInput, DateBoxTakesDigitsUpToItsTypedForm)
{
    Box monthAndDay(8);
    FieldInput::AttachDate(monthAndDay, 0);
    Check(monthAndDay, OneByOne, {{"0528", "1", "0528"}, {"<05>28", "12", "1228"}});
    Check(monthAndDay, AtOnce, {{"", "05/28", "05/28"}, {"", "05281", ""}});
    Box date(8);
    FieldInput::AttachDate(date, 1);
    Check(date, OneByOne,
          {{"", "97/05-28 a９1", "970528"},
           {"97<05>28", "1", "97128"},
           {"97/05/2", "8", "97/05/28"}});
    Check(date, AtOnce,
          {{"", "970528", "970528"},
           {"", "97/05/28", "97/05/28"},
           {"", "97a05/28", ""},
           {"12", "3/4", "12"}});
}

TEST(FieldInput, NumberBoxTakesASignedNumberOfItsSpec)
{
    Box quantity(20);
    FieldInput::AttachNumber(quantity, DigitSpec::Quantity);
    Check(quantity, OneByOne,
          {{"", "1.2.3", "1.23"},
           {"", "-1-2", "-12"},
           {"1", "-", "1"},
           {"|1", "+", "+1"},
           {"", "1234567890", "123456789"},
           {"", "1.2,34e5", "1.234"},
           {"<123456789>.5", "1", "1.5"},
           {"123456789", ".", "123456789."}});
    Check(quantity, AtOnce,
          {{"", " 1,234.500 ", " 1,234.500 "}, {"", "1.2.3", ""}, {"", "1234567890", ""}});
    Box counter(20);
    FieldInput::AttachNumber(counter, DigitSpec::Counter);
    Check(counter, OneByOne, {{"", "123", "12"}, {"", "1.5", "1."}});
}
