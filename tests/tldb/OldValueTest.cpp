#include "support/QtPrinters.h"

#include "tldb/import/OldValue.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

template <typename Number>
QByteArray BytesOf(Number number)
{
    return QByteArray(reinterpret_cast<const char *>(&number), sizeof number);
}

QByteArray FromHex(const char *hex)
{
    return QByteArray::fromHex(hex);
}

} // namespace

TEST(OldValue, TextsPlainAndCompressed)
{
    const std::pair<const char *, const char *> cases[] = {
        {"4230 2000 0d00 0a00 3dd8 00de", "あ \r\n😀"},
        {"fffe 4142 e9", "ABé"},
        // A zero byte changes to two bytes a character and back.
        {"fffe 41 00 4230 00 42", "AあB"},
        {"4230 41", "あ\uFFFD"}, // half a character
    };
    for (const auto &[hex, text] : cases)
        EXPECT_EQ(ToText(FromHex(hex)), QString::fromUtf8(text)) << hex;
}

TEST(OldValue, DatesToTheSecond)
{
    const struct
    {
        double days;
        const char *text; ///< null: none
    } cases[] = {
        {37712.375347222223, "2003-04-01 09:00:30"},
        {-1.25, "1899-12-29 06:00:00"},
        {36584.999999999, "2000-02-29 00:00:00"}, // the nearest second is the next day's
        {2958466, nullptr},
        {std::nan(""), nullptr},
    };
    for (const auto &[days, text] : cases)
        EXPECT_EQ(ToDateTime(days).value_or(QString("none")), text ? text : "none") << days;
}

TEST(OldValue, NumbersKeepEveryDigit)
{
    using enum OldType;
    const double third = 1.0 / 3;
    const struct
    {
        OldType type;
        QByteArray bytes;
        int decimals;
        OldValue value;
    } cases[] = {
        {Short, FromHex("feff"), 0, qint64(-2)},
        {Single, BytesOf(float(third)), 0, double(float(third))},
        {Currency, BytesOf(qint64(-5)), 0, ExactNumber{"-0.0005"}},
        {Currency, BytesOf(std::numeric_limits<qint64>::min()), 0,
         ExactNumber{"-922337203685477.5808"}},
        {Decimal, FromHex("80 00000000 00000000 01000000 02000000"), 3,
         ExactNumber{"-4294967.298"}},
        {Decimal, FromHex("00 00000000 00000000 00000000 01000000"), 99, Unreadable()},
        {Guid, FromHex("04030201 0605 0807 0102 030405060708"), 0,
         QString("{01020304-0506-0708-0102-030405060708}")},
        {Long, FromHex("0102"), 0, Unreadable()}, // too few bytes
    };
    for (const auto &[type, bytes, decimals, value] : cases)
        EXPECT_TRUE(ToValue(type, bytes, decimals) == value)
            << int(type) << ' ' << bytes.toHex().toStdString();
}
