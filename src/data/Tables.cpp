#include "data/Tables.h"

#include "data/dao/Database.h"
#include "data/dao/SqlText.h"
#include "util/Decimal.h"
#include "util/VbText.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

using enum ColumnType;

constexpr bool Key = true;

// The columns that every row carries: logical delete flag, last writer, date and time of the write.
#define COMMON_COLUMNS \
    {"DpoFlg", Integer}, {"UpdPGName", Text, 8}, {"UpdDate", Date, 8}, \
    { \
        "UpdTime", Text, 6 \
    }

constexpr ColumnDefinition DeliveryLines[] = {
    {"AccNo", Integer, 0, Key},
    {"AccSubNo", Integer, 0, Key},
    {"ShpSubNo", Integer, 0, Key},
    {"PayKeyNo", Text, 23},
    {"PayKeySubNp", Integer},
    {"OdrNo", Text, 23},
    {"CustCD", Text, 12},
    {"CustSecCD", Text, 8},
    {"CustSecName", Text, 20},
    {"PayDstCD", Text, 8},
    {"LimDate", Date, 8},
    {"LimTime", Text, 4},
    {"PayNo", Text, 8},
    {"HinCD", Text, 25},
    {"AccHinCD", Text, 25},
    {"MfactNo", Text, 19},
    {"Unit", Text, 3},
    {"Tan", Number},
    {"AccVal", Quantity},
    {"IndVal", Quantity},
    {"AnsVal", Quantity},
    {"ShpVal", Quantity},
    {"AnsLimDate", Date, 8},
    {"AnsMark", Text, 1},
    {"AnsLimUmu", Integer},
    {"ShpSts", Integer},
    {"ShpDate", Date, 8},
    {"ArvExpDate", Date, 8},
    {"DenKBN", Integer},
    {"ShpKBN", Integer},
    {"ContractKBN", Text, 1},
    {"Biko", Text, 30},
    {"OdrBiko", Text, 50},
    {"OdrBarCD", Text, 23},
    COMMON_COLUMNS,
};

constexpr ColumnDefinition Orders[] = {
    {"AccNo", Integer, 0, Key},
    {"CustCD", Text, 12},
    {"AccDate", Date, 8},
    {"AccHinCD", Text, 25},
    {"AccHinName", Text, 40},
    {"AccTan", Number},
    {"TanKBN", Text, 1},
    {"Unit", Text, 3},
    {"ZanVal", Quantity},
    {"ShpSts", Integer},
    {"EDIKBN", Integer},
    {"F019", Text, 60},
    COMMON_COLUMNS,
};

constexpr ColumnDefinition OrderSubLines[] = {
    {"AccNo", Integer, 0, Key},
    {"AccSubNo", Integer, 0, Key},
    COMMON_COLUMNS,
};

constexpr ColumnDefinition EiajOrders[] = {
    {"AccNo", Integer, 0, Key},
    {"CUSTCD", Text, 12},
    {"OdrNo", Text, 23},
    {"CockKBN", Text, 1},
    {"KobaiTanto", Text, 7},
    {"DstAreaName", Text, 20},
    COMMON_COLUMNS,
};

constexpr ColumnDefinition EiajOrderFields[] = {
    {"AccNo", Integer, 0, Key},
    {"F055", Text, 20},
    {"F082", Text, 1},
    COMMON_COLUMNS,
};

constexpr ColumnDefinition Companies[] = {
    {"CoCD", Text, 12},
    {"CoName", Text, 20},
    {"PostCD", Text, 8},
    {"Address", Text, 100},
    {"TEL", Text, 12},
    {"FAX", Text, 12},
    {"DpoMD_S", Text, 8},
    {"DpoMD_E", Text, 8},
    {"DpoYM_S", Text, 8},
    {"DpoYM_E", Text, 8},
    {"LastMonthDate", Text, 8},
    {"CloseDay", Integer},
    {"PayMonthKBN", Integer},
    {"TaxPer", Number},
    {"DpoYM", Integer},
    {"AccDenNo", Number},
    {"OdrDenNo", Number},
    {"AvlDenNo", Number},
    {"ShpDenNo", Number},
    {"SalDenNo", Number},
    {"RptDenNo", Number},
    {"PayDenNo", Number},
    {"AskDenNo", Text, 8},
    {"SaveDir", Text, 128},
    {"SaveBackNo", Integer},
    {"DefCustCD", Text, 12},
    {"HinCDConvKBN", Integer},
    {"AccBikoKBN", Integer},
    COMMON_COLUMNS,
};

constexpr ColumnDefinition Products[] = {
    {"AccHinCD", Text, 25, Key},
    {"HinName", Text, 40},
    {"ReadTime", Integer},
    COMMON_COLUMNS,
};

constexpr ColumnDefinition ProductConversions[] = {
    {"CustCD", Text, 12, Key},
    {"HinCD", Text, 25, Key},
    {"AccHinCD", Text, 25},
    COMMON_COLUMNS,
};

constexpr ColumnDefinition Customers[] = {
    {"CustCD", Text, 12, Key},  {"CustName", Text, 40},
    {"TEL", Text, 14},          {"CustKBN", Integer},
    {"VanCD", Text, 12},        {"LinKBN", Integer},
    {"NokiInfPath", Text, 128}, {"NokiInfKBN", Integer},
    {"AnsInfPath", Text, 128},  {"AnsInfKBN", Integer},
    {"ShpInfPath", Text, 128},  {"ShpInfKBN", Integer},
    {"RsvPath1", Text, 128},    {"RsvInfKBN1", Integer},
    {"RsvPath2", Text, 128},    {"RsvInfKBN2", Integer},
    {"NohinPath", Text, 128},   {"NohinKBN", Integer},
    {"HenpVerPath", Text, 128}, COMMON_COLUMNS,
};

constexpr ColumnDefinition Destinations[] = {
    {"CustCoCD", Text, 6, Key},
    {"PayDstCD", Text, 8, Key},
    {"PayDstName", Text, 40},
    {"PayNeedDays", Integer},
    COMMON_COLUMNS,
};

constexpr ColumnDefinition AnswerHistory[] = {
    {"AccNo", Integer, 0, Key},
    {"AccSubNo", Integer, 0, Key},
    {"ShpSubNo", Integer, 0, Key},
    {"AnsNo", Integer, 0, Key}, // counts the answers of the line: whose clock is right matters not
    {"CustCD", Text, 12},
    {"OdrNo", Text, 23},
    {"PayNo", Text, 8},
    {"LimDate", Date, 8},
    {"AnsLimDate", Date, 8},
    {"AnsVal", Quantity},
    {"AnsMark", Text, 1},
    {"AnsKBN", Text, 1}, // answer kind
    {"RecNo", Text, 5},  // as the record has it; blank where none was written
    {"RecPath", Text, 128},
    {"UserName", Text, 32},
    {"MachineName", Text, 64},
    COMMON_COLUMNS,
};

#undef COMMON_COLUMNS

} // namespace

std::span<const TableDefinition> Tables()
{
    static const TableDefinition tables[] = {
        {"TLSP0010",
         "納期明細",
         DeliveryLines,
         {"CustCD", "OdrNo", "AccHinCD", "MfactNo", "PayKeyNo", "LimDate"}},
        {"TLAC0010", "受注", Orders, {}},
        {"TLAC0020", "受注明細", OrderSubLines, {}},
        {"TLEI0010", "EIAJ注文情報", EiajOrders, {}},
        {"TLEI0011", "EIAJ注文情報（続き）", EiajOrderFields, {}},
        {"TLMT0010", "ｼｽﾃﾑ管理ﾏｽﾀ", Companies, {}},
        {"TLMT0020", "商品マスタ", Products, {}},
        {"TLMT0030", "商品変換マスタ", ProductConversions, {}},
        {"TLMT0040", "得意先マスタ", Customers, {}},
        {"TLMT0050", "納入先マスタ", Destinations, {}},
        {HistoryTable, "納期回答履歴", AnswerHistory, {}, true},
    };
    return tables;
}

const TableDefinition *FindTable(const QString &name)
{
    for (const TableDefinition &table : Tables())
        if (name.compare(QLatin1String(table.name), Qt::CaseInsensitive) == 0)
            return &table;
    return nullptr;
}

const ColumnDefinition *FindColumn(const TableDefinition &table, const QString &name)
{
    for (const ColumnDefinition &column : table.columns)
        if (name.compare(QLatin1String(column.name), Qt::CaseInsensitive) == 0)
            return &column;
    return nullptr;
}

std::optional<QString> SqlLiteralOf(const ColumnDefinition &column, const QString &value)
{
    if (column.IsText())
        return SqlQuoted(RTrim(value));
    static const QRegularExpression number(QRegularExpression::anchoredPattern(
        "[+-]?0*([0-9]{1,18}(\\.[0-9]{0,18}0*)?|\\.[0-9]{1,18}0*)"));
    const QString text = Trim(value);
    if (!text.isEmpty() && !number.match(text).hasMatch())
        return std::nullopt;
    return Decimal::FromText(text).ToText();
}

QString CreateTableSql(const Connection &engine, const QString &name,
                       std::span<const ColumnDefinition> columns)
{
    QStringList parts;
    QStringList keys;
    for (const ColumnDefinition &column : columns) {
        const StoredColumn wanted = engine.Wanted(column);
        parts += wanted.name + ' ' + wanted.type
                 + (wanted.collation.isEmpty() ? "" : " COLLATE " + wanted.collation)
                 + (wanted.isNotNull ? " NOT NULL" : "");
        if (column.isKey)
            keys += column.name;
    }
    if (!keys.isEmpty())
        parts += "PRIMARY KEY (" + keys.join(", ") + ')';
    return "CREATE TABLE " + name + " (" + parts.join(", ") + ')';
}

void CreateTable(Database &database, const TableDefinition &table)
{
    database.ExecuteNative(CreateTableSql(database.Engine(), table.name, table.columns));
    for (const char *column : table.indexes)
        database.ExecuteNative(QString("CREATE INDEX %1_%2 ON %1 (%2)").arg(table.name, column));
}

void CreateTables(Database &database)
{
    database.ExecuteNative("BEGIN");
    for (const TableDefinition &table : Tables())
        CreateTable(database, table);
    database.SetProperty("AccessVersion", CurrentAccessVersion);
    database.SetProperty("SchemaVersion", QString::number(SchemaVersion));
    database.ExecuteNative("COMMIT");
}
