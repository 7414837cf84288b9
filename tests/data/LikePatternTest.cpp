#include "data/dao/sqlite/SqlFunctions.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

TEST(LikePattern, Fits)
{
    constexpr struct
    {
        QStringView pattern;
        QStringView text;
        bool fits;
    } cases[] = {
        {u"", u"", true},           {u"", u"A", false},           {u"*", u"A|B", true},
        {u"AB", u"ab", true},       {u"AB", u"ABC", false},       {u"AB*", u"AB", true},
        {u"*B", u"ABA", false},     {u"A*B*C", u"AxBxBxC", true}, {u"A*B*C", u"AxCxB", false},
        {u"*ab", u"aab", true},     {u"?", u"", false},           {u"A?C", u"AC", false},
        {u"?", u"納", true},        {u"#", u"5", true},           {u"#", u"５", false},
        {u"12[#]4", u"12#4", true}, {u"12[#]4", u"1234", false},  {u"[*]*", u"*A", true},
        {u"[*]*", u"A*", false},    {u"[abc]x", u"Bx", true},     {u"[a-c]", u"B", true},
        {u"[a-c]", u"D", false},    {u"[!a-c]", u"D", true},      {u"[!a-c]", u"", false},
        {u"[!]", u"!", true},       {u"[a-]", u"-", true},        {u"[0-9A-F]", u"e", true},
        {u"[[]A]", u"[A]", true},   {u"A[B", u"A[B", false},      {u"%_", u"xx", false},
        {u"ア*", u"ｱｲ", false},     {u"Ａ", u"ａ", false},
    };
    for (const auto &[pattern, text, fits] : cases)
        EXPECT_EQ(FitsLikePattern(text, pattern), fits)
            << pattern.toString().toStdString() << " <- " << text.toString().toStdString();
}

TEST(LikePattern, ManyStarsDoNotTakeForever)
{
    EXPECT_FALSE(FitsLikePattern(QString(5000, 'a'), u"*a*a*a*a*a*a*a*a*a*a*b"));
}
