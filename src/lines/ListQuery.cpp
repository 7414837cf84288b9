#include "lines/ListQuery.h"

#include "data/dao/SqlText.h"
#include "util/VbText.h"

#include <QStringList>

namespace {

/// The piece of the statement that selects each field.
constexpr struct
{
    LineField field;
    const char *piece;
} Columns[] = {
    {LineField::AccNo, " TLSP0010.AccNo"},
    {LineField::ShpSubNo, ",TLSP0010.ShpSubNo"},
    {LineField::AccSubNo, ",TLSP0010.AccSubNo"},
    {LineField::AnsMark, ",TLSP0010.AnsMark"},
    {LineField::OdrNo, ",TLSP0010.OdrNo"},
    {LineField::AccVal, ",TLSP0010.AccVal"},
    {LineField::LimDate, ",TLSP0010.LimDate"},
    {LineField::PayNo, ",TLSP0010.PayNo"},
    {LineField::IndVal, ",TLSP0010.IndVal"},
    {LineField::AnsLimDate, ",TLSP0010.AnsLimDate"},
    {LineField::AnsVal, ",TLSP0010.AnsVal"},
    {LineField::ShpSts, ",TLSP0010.ShpSts"},
    {LineField::ShpVal, ",TLSP0010.ShpVal"},
    {LineField::AnsLimUmu, ",TLSP0010.AnsLimUmu"},
    {LineField::DenKBN, ",TLSP0010.DenKBN"},
    {LineField::EDIKBN, ",TLAC0010.EDIKBN"},
    {LineField::ZanVal, ",TLAC0010.ZanVal"},
    {LineField::ContractKBN, ",TLSP0010.ContractKBN"},
    {LineField::HinCD, ",TLAC0010.AccHinCD as HinCD "},
    {LineField::LinKBN, ",TLMT0040.LinKBN"},
    {LineField::NokiInfPath, ",TLMT0040.NokiInfPath"},
    {LineField::NokiInfKBN, ",TLMT0040.NokiInfKBN"},
    {LineField::AccHinName, ",TLAC0010.AccHinName"},
    {LineField::F019, ",TLAC0010.F019"},
    {LineField::CustSecCD, ",TLSP0010.CustSecCD"},
};

consteval bool AreInOrder()
{
    int at = 0;
    for (const auto &column : Columns)
        if (int(column.field) != at++)
            return false;
    return true;
}
static_assert(AreInOrder(), "a field is read by its position in the statement");

QString SelectedColumns()
{
    QString sql = "SELECT ";
    for (const auto &column : Columns)
        sql += column.piece;
    return sql;
}

QString Prefix(const QString &column, const QString &value)
{
    return column + " LIKE '" + LikeText(SqlText(value)) + "*' ";
}

/// A prefix condition that a blank value leaves out.
QString PrefixIfGiven(const QString &column, const QString &value)
{
    return Trim(value).isEmpty() ? QString() : Prefix("AND " + column, value);
}

QString DateRange(const SearchConditions &conditions)
{
    static constexpr struct
    {
        const char *basis;
        const char *column;
    } bases[] = {
        {"SHPDATE", "TLSP0010.ShpDate"},
        {"LIMDATE", "TLSP0010.LimDate"},
        {"ACCDATE", "TLAC0010.AccDate"},
    };
    QString sql;
    for (const auto &basis : bases) {
        if (conditions.dateBasis != QLatin1String(basis.basis))
            continue;
        if (!Trim(conditions.fromDate).isEmpty())
            sql += QString(" And ") + basis.column + " >= '" + RTrim(conditions.fromDate) + "' ";
        if (!Trim(conditions.toDate).isEmpty())
            sql += QString("   And ") + basis.column + " <= '" + RTrim(conditions.toDate) + "' ";
    }
    return sql;
}

} // namespace

QString BuildListSql(const SearchConditions &conditions)
{
    QString sql = SelectedColumns();
    sql += " FROM TLSP0010,TLAC0010,TLMT0040 "
           " WHERE ";
    sql += Prefix("TLSP0010.CUSTCD", conditions.customerCode);
    sql += PrefixIfGiven("TLSP0010.CustSecCD", conditions.customerSectionCode);
    sql += "AND (TLSP0010.DenKBN = 2 OR TLSP0010.DenKBN = 15) ";
    sql += PrefixIfGiven("TLSP0010.ACCHINCD", conditions.productCode);
    if (conditions.isProductNameLiteral && !Trim(conditions.productName).isEmpty())
        sql += "AND TLAC0010.AccHinName LIKE '" + LiteralLikeText(SqlText(conditions.productName))
               + "*' ";
    else
        sql += PrefixIfGiven("TLAC0010.AccHinName", conditions.productName);
    sql += PrefixIfGiven("TLSP0010.ODRNO", conditions.orderNo);
    sql += PrefixIfGiven("TLSP0010.MFACTNO", conditions.makerNo);
    sql += PrefixIfGiven("TLSP0010.PAYKEYNO", conditions.payKeyNo);
    sql += "AND TLAC0010.ACCNO = TLSP0010.ACCNO ";
    sql += DateRange(conditions);
    sql += " AND TLSP0010.AccNo = TLAC0010.AccNo "
           " AND TLAC0010.ShpSts <> 3 "
           "AND TLSP0010.ShpSts <> 4 "
           "AND TLSP0010.CustCD = TLMT0040.CustCD "
           "AND TLSP0010.DpoFlg = 0 AND TLAC0010.DpoFlg = 0 AND TLMT0040.DpoFlg = 0 ";
    sql += "ORDER BY ";
    // The last two of the six keys never order the list.
    for (size_t position = 0; position < 4; ++position)
        sql += "TLSP0010." + conditions.sortKeys[position] + ',';
    sql += "TLSP0010.CUSTCD,"
           "TLSP0010.ACCNO,"
           "TLSP0010.ACCSUBNO,"
           "TLSP0010.ANSLIMDATE,"
           "TLSP0010.SHPSUBNO,"
           "TLSP0010.PAYKEYNO"
           ";";
    return sql;
}

QString BuildOrdersSql(const std::vector<qint64> &accNos)
{
    QStringList numbers;
    for (const qint64 accNo : accNos)
        numbers += QString::number(accNo);
    return SelectedColumns()
           + " FROM TLSP0010 INNER JOIN TLMT0040 ON TLSP0010.CustCD = TLMT0040.CustCD"
             " LEFT JOIN TLAC0010 ON TLSP0010.AccNo = TLAC0010.AccNo"
             " WHERE TLSP0010.AccNo IN ("
           + numbers.join(',')
           + ") AND TLSP0010.DpoFlg = 0 AND TLMT0040.DpoFlg = 0"
             " ORDER BY TLSP0010.AccNo, TLSP0010.AccSubNo, TLSP0010.ShpSubNo;";
}
