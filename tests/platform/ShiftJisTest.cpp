#include "platform/ShiftJis.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

namespace {

// Characters on which tables that call themselves Shift-JIS differ, and ordinary ones beside them.
constexpr struct
{
    char16_t character;
    const char *bytes;
} Characters[] = {
    {u'―', "815c"},  {u'～', "8160"}, {u'∥', "8161"},  {u'－', "817c"}, {u'￥', "818f"},
    {u'￠', "8191"}, {u'￡', "8192"}, {u'￢', "81ca"}, {u'\\', "5c"},   {u'~', "7e"},
    {u'①', "8740"},  {u'№', "8782"},  {u'㈱', "878a"}, {u'髙', "fbfc"}, {u'纊', "fa5c"},
    {u'ｱ', "b1"},    {u'ﾟ', "df"},    {u'｢', "a2"},    {u'　', "8140"}, {u'表', "955c"},
    {u'納', "945b"}, {u'Ａ', "8260"}, {u'熙', "eaa4"}, {u'×', "817e"},  {u'\r', "0d"},
};

} // namespace

TEST(ShiftJis, CharactersHaveTheBytesOfWindows)
{
    for (const auto &[character, bytes] : Characters) {
        const QString text(character);
        EXPECT_EQ(ToShiftJis(text).toHex(), bytes) << text.toStdString();
        EXPECT_EQ(FromShiftJis(QByteArray::fromHex(bytes)), text) << bytes;
        EXPECT_TRUE(IsShiftJisText(text)) << text.toStdString();
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
    EXPECT_TRUE(IsShiftJisText(u"A?B"));
    EXPECT_EQ(ShiftJisLength(u"A納ｱé"), 5);
}

TEST(ShiftJis, BadBytesAreReplaced)
{
    const std::pair<QByteArray, QString> cases[] = {
        {"A\x94", "A\uFFFD"},
        {"\x94\x5b\x81", "納\uFFFD"},
        {"\x81\x0d\x0aZ", "\uFFFD\r\nZ"},
        {"A\xfdZ", "A\uFFFDZ"},
        {"A\x1a", "A\x1a"}, // the end mark of old text files
        {"\x94\x1a\x94", "\uFFFD\x1a\uFFFD"},
        {"\x5b", "["},
    };
    for (const auto &[bytes, text] : cases)
        EXPECT_EQ(FromShiftJis(bytes), text) << bytes.toHex().toStdString();
}

TEST(ShiftJis, ControlCharactersAreTheirOwnBytes)
{
    for (char control : QByteArray("\0\t\r\n\x1a\x1b\x1c\x1f\x7f", 9)) {
        const QString text = QString("納") + QLatin1Char(control) + "期";
        const QByteArray bytes = QByteArray("\x94\x5b") + control + "\x8a\xfa";
        EXPECT_EQ(ToShiftJis(text), bytes) << int(control);
        EXPECT_EQ(FromShiftJis(bytes), text) << int(control);
    }
}

TEST(ShiftJis, EveryTwoByteCharacterSurvivesAReadAndAWrite)
{
    int count = 0;
    for (int lead = 0x81; lead <= 0xfc; ++lead) {
        if (lead >= 0xa0 && lead < 0xe0)
            continue;
        for (int trail = 0x40; trail <= 0xfc; ++trail) {
            const char bytes[] = {char(lead), char(trail)};
            const QString text = FromShiftJis(QByteArrayView(bytes, 2));
            if (text.size() != 1 || text[0] == QChar(0xfffd))
                continue;
            ++count;
            const QByteArray written = ToShiftJis(text);
            ASSERT_EQ(written.size(), 2) << std::hex << lead << trail;
            ASSERT_EQ(FromShiftJis(written), text) << std::hex << lead << trail;
        }
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
        {"ｱﾞｶﾞ①㈱\\~ \r\n", "ｱﾞｶﾞ①㈱\\~ \r\n"},
        {"\u3099", "\u309b"},
        {"", ""},
    };
    for (const auto &[text, own] : cases)
        EXPECT_EQ(ToCodePage(text), own) << text.toStdString();
}
