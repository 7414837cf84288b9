#include "platform/ShiftJis.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

TEST(ShiftJis, CharactersHaveTheBytesOfWindows)
{
    // On which tables that call themselves Shift-JIS differ, and control characters.
    const std::pair<char16_t, const char *> cases[] = {
        {u'―', "815c"},  {u'～', "8160"}, {u'∥', "8161"},  {u'－', "817c"}, {u'￥', "818f"},
        {u'￠', "8191"}, {u'￢', "81ca"}, {u'\\', "5c"},   {u'~', "7e"},    {u'①', "8740"},
        {u'㈱', "878a"}, {u'髙', "fbfc"}, {u'纊', "fa5c"}, {u'ﾟ', "df"},    {u'表', "955c"},
        {u'\0', "00"},   {u'\r', "0d"},   {u'\x1a', "1a"}, {u'\x1c', "1c"}, {u'\x7f', "7f"},
    };
    for (const auto &[character, bytes] : cases) {
        const QString text = QString("納") + QChar(character) + "期";
        EXPECT_EQ(ToShiftJis(text).toHex(), QByteArray("945b") + bytes + "8afa");
        EXPECT_EQ(FromShiftJis(ToShiftJis(text)), text) << bytes;
        EXPECT_TRUE(IsShiftJisText(text)) << bytes;
    }
}

TEST(ShiftJis, CharactersOutsideTheTableBecomeOneQuestionMark)
{
    const QString outside[] = {"é", "한", "🚚", "𠮟", "\u200b", QChar(0xd83d), QChar(0xde9a)};
    for (const QString &character : outside) {
        EXPECT_EQ(ToShiftJis("納" + character + "期A"), QByteArray("\x94\x5b?\x8a\xfa"
                                                                   "A"))
            << character.toStdString();
        EXPECT_FALSE(IsShiftJisText("納" + character)) << character.toStdString();
        EXPECT_EQ(ToShiftJis(u"納"), QByteArray("\x94\x5b")) << "the next text is not spoilt";
    }
    EXPECT_EQ(ShiftJisLength(u"A納ｱé"), 5);
}

TEST(ShiftJis, BadBytesAreReplaced)
{
    const std::pair<QByteArray, QString> cases[] = {
        {"A\x94", "A\uFFFD"},
        {"\x94\x5b\x81", "納\uFFFD"},
        {"\x81\x0d\x0aZ", "\uFFFD\r\nZ"},
        {"A\xfdZ", "A\uFFFDZ"},
        {"\x94\x1a\x94", "\uFFFD\x1a\uFFFD"},
    };
    for (const auto &[bytes, text] : cases)
        EXPECT_EQ(FromShiftJis(bytes), text) << bytes.toHex().toStdString();
}

TEST(ShiftJis, EveryTwoByteCharacterSurvivesAReadAndAWrite)
{
    int count = 0;
    for (int code = 0x8140; code <= 0xfcfc; ++code) {
        const char bytes[] = {char(code >> 8), char(code)};
        const QString text = FromShiftJis(QByteArrayView(bytes, 2));
        if (text.size() != 1 || text[0] == QChar(0xfffd))
            continue;
        ++count;
        const QByteArray written = ToShiftJis(text);
        ASSERT_EQ(written.size(), 2) << std::hex << code;
        ASSERT_EQ(FromShiftJis(written), text) << std::hex << code;
    }
    EXPECT_GE(count, 7000);
}

TEST(ShiftJis, TwinsBecomeTheTablesOwnCharacters)
{
    const std::pair<QString, QString> cases[] = {
        {"重量10\u301c20kg \u22125℃保管", "重量10\uff5e20kg \uff0d5℃保管"},
        {"\u2016\u2014\u00a2\u00a3\u00ac", "\u2225\u2015\uffe0\uffe1\uffe2"},
        {"\u203e\u00a6\u00a5\u00b5\u00c5\u00a0", "\uffe3\uffe4\uffe5\u03bc\u212b "},
        {"か\u3099ハ\u309aハ\u3099ク\u3099", "がパバグ"},
        {"あ\u3099\u309a", "あ\u309b\u309c"},     // no kana of the table has these
        {"\u2126\u212a", "ΩK"},                   // ohm and kelvin are other codes of letters
        {"神\ufa19﨑\u301c", "神\ufa19﨑\uff5e"}, // twins of each other that the table has both
        {"é𠮟納\u2212", "é𠮟納\uff0d"},           // what it has not stays
    };
    for (const auto &[text, own] : cases)
        EXPECT_EQ(ToCodePage(text), own) << text.toStdString();
}
