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
        {"H", 1, "H 期間注文型取引(月)"},
        {"Z", 1, "Z ＮＳＰ予約追加"},
        {"X", 1, "X"},
        {"X", 0, "X"},
        {"", 1, ""},
        {"", 0, ""},
        {"a", 1, "a"},
        {"Ａ", 1, "Ａ"},
        {"A ", 1, "A "},
        {"2", 1, "2"},
        {"2", 6, "2 一般部品"},
        {"2", 0, "2 一般部品"},
        {"A", 6, "A"},
        {"4", 6, "4"},
        {"A", 2, "A"},
        {"2", 2, "2"},
    };
    for (const auto &[code, selector, name] : cases)
        EXPECT_EQ(ContractKindName(code, selector), name) << code << ' ' << selector;
}

// Each name repeats its code; letters left out of the coding have none.
TEST(bTLKBN, NamedContractKinds)
{
    QString named;
    for (char16_t code = u'A'; code <= u'Z'; ++code) {
        const QString name = ContractKindName(QString(code), 1);
        if (name.size() > 1) {
            named += QChar(code);
            EXPECT_TRUE(name.startsWith(QString(code) + ' ')) << name.toStdString();
        }
    }
    EXPECT_EQ(named, "ABCDEFGHMNORSTUVWYZ");
}

TEST(bTLKBN, InfoStateName)
{
    constexpr struct
    {
        const char *code;
        int selector;
        const char *name;
    } cases[] = {
        {"1", 0, "確定"},
        {"2", 0, "変更"},
        {"3", 0, "未定"},
        {"3", 11, "概算"},
        {"1", 11, "確定"},
        {"4", 0, "概算：算定方式"},
        {"5", 0, "概算：試作品等"},
        {"6", 11, "概算：修理委託"},
        {"7", 0, "概算：仕様未定"},
        {"8", 0, ""},
        {"9", 0, ""},
        {"", 0, ""},
        {"", 11, ""},
        {"１", 0, ""},
    };
    for (const auto &[code, selector, name] : cases)
        EXPECT_EQ(InfoStateName(code, selector), name) << code << ' ' << selector;
}

TEST(bTLKBN, PaymentTermsName)
{
    EXPECT_EQ(PaymentTermsName("1"), "基本契約通り");
    EXPECT_EQ(PaymentTermsName("2"), "別途協議による");
    EXPECT_EQ(PaymentTermsName("3"), "現行の｢支払方法等について｣による");
    EXPECT_EQ(PaymentTermsName("4"), "その他交付書面による");
    EXPECT_EQ(PaymentTermsName("5"), "");
    EXPECT_EQ(PaymentTermsName(""), "");
}
