#include "util/bTLKBN.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

TEST(bTLKBN, ContractKindName)
{
    constexpr struct
    {
        const char *code;
        int selector;
        const char *name;
    } cases[] = {
        {"A", 1, "A 確定注文１型取引"},
        {"D", 0, "D 期間注文型取引(週)"},
        {"X", 1, "X"},
        {"", 0, ""},
        {"a", 1, "a"},
        {"Ａ", 1, "Ａ"},
        {"2", 1, "2"},
        {"2", 6, "2 一般部品"},
        {"2", 0, "2 一般部品"},
        {"A", 6, "A"},
        {"A", 2, "A"},
    };
    for (const auto &[code, selector, name] : cases)
        EXPECT_EQ(ContractKindName(code, selector), name) << code << ' ' << selector;
}

TEST(bTLKBN, NamesWithoutTheirCode)
{
    constexpr struct
    {
        const char *code;
        int selector;
        const char *state;
        const char *terms;
    } cases[] = {
        {"", 0, "", ""},
        {"1", 0, "確定", "基本契約通り"},
        {"3", 0, "未定", "現行の｢支払方法等について｣による"},
        {"3", 11, "概算", "現行の｢支払方法等について｣による"},
        {"4", 11, "概算：算定方式", "その他交付書面による"},
        {"8", 0, "", ""},
    };
    for (const auto &[code, selector, state, terms] : cases) {
        EXPECT_EQ(InfoStateName(code, selector), state) << code << ' ' << selector;
        EXPECT_EQ(PaymentTermsName(code), terms) << code;
    }
}
