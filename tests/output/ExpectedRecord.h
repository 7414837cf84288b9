#pragma once

#include <QByteArray>
#include <gtest/gtest.h>

/// An answer record as its receiver describes it: bytes at positions that count from 1. Begins as
/// the record of an order of which nothing is known.
class ExpectedRecord
{
public:
    ExpectedRecord()
    {
        At(1, "00000");
        At(10, "000000");
        At(95, "000000000000");
        for (int slot = 1; slot <= 31; ++slot)
            Slot(slot, "000000        000000000000000000 ");
    }

    ExpectedRecord &At(int position, const QByteArray &text)
    {
        bytes.replace(position - 1, text.size(), text);
        EXPECT_EQ(bytes.size(), 1350) << position;
        return *this;
    }

    /// The 33 bytes of a delivery.
    ExpectedRecord &Slot(int slot, const QByteArray &text)
    {
        EXPECT_EQ(text.size(), 33) << text.constData();
        return At(164 + 33 * (slot - 1), text);
    }

    /// The wide blanks that end every long record.
    ExpectedRecord &WideReserves() { return At(1237, QByteArray("\x81\x40").repeated(57)); }

    QByteArray Short() const { return bytes.left(1236); }

    QByteArray bytes = QByteArray(1350, ' ');
};

/// Compares two records and names the first position at which they differ.
inline void ExpectSameBytes(const QByteArray &actual, const QByteArray &expected)
{
    ASSERT_EQ(actual.size(), expected.size());
    for (qsizetype at = 0; at < actual.size(); ++at)
        ASSERT_EQ(actual[at], expected[at])
            << "position " << at + 1 << ": "
            << actual.mid(at, 33).toPercentEncoding(" ").constData() << " instead of "
            << expected.mid(at, 33).toPercentEncoding(" ").constData();
}
