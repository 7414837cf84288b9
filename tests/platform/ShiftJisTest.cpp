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
    for (const QString outside : {"é", "한", "🚚", "𠮟", "\u200b"}) {
        EXPECT_EQ(ToShiftJis("納" + outside + "期A"), ToShiftJis(u"納?期A"))
            << outside.toStdString();
        EXPECT_FALSE(IsShiftJisText("納" + outside)) << outside.toStdString();
    }
    const QString loneSurrogates[] = {QString(QChar(0xd83d)), QString(QChar(0xde9a))};
    for (const QString &half : loneSurrogates) {
        EXPECT_EQ(ToShiftJis("A" + half + "B"), "A?B");
        EXPECT_FALSE(IsShiftJisText(half));
    }
    EXPECT_TRUE(IsShiftJisText(u""));
    EXPECT_TRUE(IsShiftJisText(u"A?B"));
}

TEST(ShiftJis, OneBadTextDoesNotSpoilTheNext)
{
    EXPECT_EQ(ToShiftJis(u"納\U0001F69A"), QByteArray("\x94\x5b?"));
    EXPECT_EQ(ToShiftJis(u"納"), QByteArray("\x94\x5b"));
    FromShiftJis(QByteArray("\x94"));
    EXPECT_EQ(FromShiftJis(QByteArray("\x5b")), "[");
}

TEST(ShiftJis, BadBytesAreReplaced)
{
    const QChar bad = QChar::ReplacementCharacter;
    EXPECT_EQ(FromShiftJis(QByteArray("A\x94")), QString("A") + bad);
    EXPECT_EQ(FromShiftJis(QByteArray("\x94\x5b\x81")), QString("納") + bad);
    EXPECT_EQ(FromShiftJis(QByteArray("\x81\x0d\x0aZ")), bad + QString("\r\nZ"));
    EXPECT_EQ(FromShiftJis(QByteArray("A\xfdZ")), QString("A") + bad + 'Z');
    EXPECT_EQ(FromShiftJis(QByteArray("A\x1a")), "A\x1a") << "the end mark of old text files";
}

TEST(ShiftJis, ControlCharactersAreTheirOwnBytes)
{
    for (char control = 0; control < ' '; ++control) {
        const QString text = QString("納") + QLatin1Char(control) + "期";
        const QByteArray bytes = QByteArray("\x94\x5b") + control + "\x8a\xfa";
        EXPECT_EQ(ToShiftJis(text), bytes) << int(control);
        EXPECT_EQ(FromShiftJis(bytes), text) << int(control);
    }
    EXPECT_EQ(ToShiftJis(u"納\x7f"), QByteArray("\x94\x5b\x7f"));
    EXPECT_EQ(FromShiftJis(QByteArray("\x94\x5b\x7f")), QStringLiteral("納\x7f"));
    EXPECT_EQ(FromShiftJis(QByteArray("\x94\x1a\x94")), QStringLiteral("\uFFFD\x1a\uFFFD"));
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

TEST(ShiftJis, LengthsAreBytes)
{
    constexpr struct
    {
        QStringView text;
        int length;
    } cases[] = {
        {u"", 0},       {u"ABC", 3}, {u"ｱｲｳ", 3}, {u"アイウ", 6}, {u"ｶﾞ", 2},
        {u"A納ｱ期", 6}, {u"髙①", 4}, {u"　", 2},  {u"é", 1}, // as written: "?"
    };
    for (const auto &[text, length] : cases)
        EXPECT_EQ(ShiftJisLength(text), length) << text.toString().toStdString();
}
