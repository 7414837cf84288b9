#include "util/bTLKBN.h"

#include "support/QtPrinters.h"

#include <QStringList>
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
    const QStringList names = {"",
                               "確定",
                               "変更",
                               "未定",
                               "概算：算定方式",
                               "概算：試作品等",
                               "概算：修理委託",
                               "概算：仕様未定",
                               ""};
    for (int code = 0; code < names.size(); ++code) {
        EXPECT_EQ(InfoStateName(QString::number(code), 0), names[code]);
        EXPECT_EQ(InfoStateName(QString::number(code), 11), code == 3 ? "概算" : names[code]);
    }
}

TEST(bTLKBN, PaymentTermsName)
{
    EXPECT_EQ(PaymentTermsName("1"), "基本契約通り");
    EXPECT_EQ(PaymentTermsName("2"), "別途協議による");
    EXPECT_EQ(PaymentTermsName("3"), "現行の｢支払方法等について｣による");
    EXPECT_EQ(PaymentTermsName("4"), "その他交付書面による");
    EXPECT_EQ(PaymentTermsName(""), "");
}
