#include "util/bTLKBN.h"

#include <span>

namespace {

struct CodeName
{
    QStringView code;
    const char *name;
};

constexpr CodeName ContractKinds[] = {
    {u"A", "A 確定注文１型取引"},   {u"B", "B 確定注文２型取引"},   {u"C", "C 予約注文型取引"},
    {u"D", "D 期間注文型取引(週)"}, {u"E", "E 預託１型取引"},       {u"F", "F 預託２型取引"},
    {u"G", "G ベンダー在庫型取引"}, {u"H", "H 期間注文型取引(月)"}, {u"M", "M 毎日納品"},
    {u"N", "N ＮＳＰ通常契約"},     {u"O", "O ＮＳＰ通常追加契約"}, {u"R", "R ＲＰＳ情報"},
    {u"S", "S 通常注文"},           {u"T", "T ＴＣＳ契約"},         {u"U", "U ＴＣＳ追加契約"},
    {u"V", "V ＴＣＳ予約"},         {u"W", "W ＴＣＳ予約追加"},     {u"Y", "Y ＮＳＰ予約契約"},
    {u"Z", "Z ＮＳＰ予約追加"},
};

constexpr CodeName PartsManagementKinds[] = {
    {u"1", "1 定時部品"},
    {u"2", "2 一般部品"},
    {u"3", "3 一括部品"},
};

constexpr CodeName InfoStates[] = {
    {u"1", "確定"},           {u"2", "変更"},           {u"3", "未定"},
    {u"4", "概算：算定方式"}, {u"5", "概算：試作品等"}, {u"6", "概算：修理委託"},
    {u"7", "概算：仕様未定"},
};

constexpr CodeName PaymentTerms[] = {
    {u"1", "基本契約通り"},
    {u"2", "別途協議による"},
    {u"3", "現行の｢支払方法等について｣による"},
    {u"4", "その他交付書面による"},
};

/// The name of the code in the table; null when it has none.
const char *Find(std::span<const CodeName> table, const QString &code)
{
    for (const CodeName &entry : table)
        if (entry.code == code)
            return entry.name;
    return nullptr;
}

} // namespace

QString ContractKindName(const QString &code, int selector)
{
    const char *name = nullptr;
    if (selector == 0 || selector == 1)
        name = Find(ContractKinds, code);
    if (!name && (selector == 0 || selector == 6))
        name = Find(PartsManagementKinds, code);
    return name ? QString::fromUtf8(name) : code;
}

QString InfoStateName(const QString &code, int selector)
{
    if (selector == 11 && code == u"3")
        return QString("概算");
    return QString::fromUtf8(Find(InfoStates, code));
}

QString PaymentTermsName(const QString &code)
{
    return QString::fromUtf8(Find(PaymentTerms, code));
}
