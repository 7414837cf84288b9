#include "tldb/demo/DemoNames.h"

namespace {

constexpr DemoCustomerName CustomerNames[] = {
    {"月ヶ森電機株式会社", nullptr, 1, 1, 1, '1', nullptr},
    {"白鷺谷電子工業株式会社", nullptr, 2, 1, 1, '0', nullptr},
    {"霧ノ原通信機株式会社", nullptr, 1, 2, 1, '1', nullptr},
    {"株式会社朝凪坂製作所", nullptr, 2, 1, 1, '1', nullptr},
    {"雲雀野精密機器株式会社", nullptr, 1, 1, 1, '0', "\\\\edisv\\out\\C0005.TXT"},
    {"夕映沢計測器株式会社", "YUB7", 2, 1, 1, '1', nullptr},
    {"株式会社蛍瀬システムズ", nullptr, 1, 1, 0, '1', nullptr},
    {"花霞峠電装株式会社", nullptr, 2, 1, 0, '0', nullptr},
    {"風越浜エレクトロニクス㈱", nullptr, 1, 1, 1, '1', "\\\\edisv\\out\\C0009.TXT"},
    {"星降台ロボット工業株式会社", nullptr, 2, 1, 1, '0', nullptr},
    {"有限会社木洩日工房", "", 1, 1, 1, '0', nullptr},
    {"株式会社髙嶺ヶ丘医療機器", nullptr, 2, 1, 1, '1', nullptr},
};

constexpr const char *PlaceNames[]
    = {"月ヶ森", "白鷺谷", "霧ノ原", "朝凪坂", "雲雀野", "夕映沢", "蛍瀬",   "花霞峠",
       "風越浜", "星降台", "木洩日", "虹ノ瀬", "雪待平", "若竹淵", "鈴音崎", "水鏡沼"};

constexpr const char *TradeNames[] = {
    "電機株式会社",   "電子工業株式会社", "通信機株式会社", "精密機器株式会社", "電装株式会社",
    "計測器株式会社", "重電株式会社",     "光学株式会社",   "半導体株式会社",   "制御機器株式会社"};

constexpr DemoProductName ProductNames[] = {
    {"MC", "積層ｾﾗﾐｯｸｺﾝﾃﾞﾝｻ", "B特性 0.1μF 50V 1.6×0.8", "個", false, 1.5},
    {"EC", "ｱﾙﾐ電解ｺﾝﾃﾞﾝｻ", "105℃ 470μF 25V φ10×16", "個", false, 18},
    {"RD", "炭素皮膜抵抗器", "1/4W 10kΩ ±5%", "個", false, 2},
    {"RK", "角形ﾁｯﾌﾟ抵抗器", "1608 4.7kΩ ±1%", "個", false, 1},
    {"RY", "制御用ﾘﾚｰ", "DC24V 2c接点 ﾌﾟﾘﾝﾄ基板用", "個", false, 260},
    {"TR", "電源トランス", "AC100V/12V 20VA", "台", false, 1450},
    {"CN", "基板用コネクタ", "2.5mmﾋﾟｯﾁ 8極 ﾗｲﾄｱﾝｸﾞﾙ", "個", false, 42},
    {"HN", "ワイヤーハーネス", "UL1007 AWG24 L=350", "本", false, 380},
    {"PB", "プリント基板", "FR-4 4層 t1.6 金ﾌﾗｯｼｭ", "枚", false, 2100},
    {"CA", "樹脂ケース", "ABS 黒 94V-0 120×80×45", "個", false, 640},
    {"PL", "操作パネル", "A5052P t2.0 ｱﾙﾏｲﾄ", "枚", false, 3200},
    {"BT", "六角ボルト", "SUS304 M4×20", "本", false, 6.5},
    {"SP", "圧縮コイルばね", "SWP-B φ0.8 D=8 L=25", "個", false, 24},
    {"GS", "絶縁シート", "ﾎﾟﾘｶｰﾎﾞﾈｰﾄ t0.5 難燃", "枚", false, 35},
    {"FN", "冷却ファン", "DC12V 60角 3線ﾛｯｸｾﾝｻ付", "台", false, 980},
    {"SW", "押しボタンスイッチ", "照光式 緑 ﾓｰﾒﾝﾀﾘ", "個", false, 720},
    {"LD", "表示灯", "高輝度LED 赤 φ5", "個", false, 28},
    {"WR", "ビニル被覆電線", "KIV 0.75sq 黄", "m", true, 46},
    {"TB", "熱収縮チューブ", "φ6 黒 架橋ﾎﾟﾘｵﾚﾌｨﾝ", "m", true, 85},
    {"SD", "鉛フリーはんだ", "Sn-3.0Ag-0.5Cu φ0.8", "kg", true, 7800},
};

constexpr const char *SectionNames[]
    = {"資材部購買一課",         "資材部購買二課",         "生産管理部",
       "生産管理本部資材調達課", "電装事業部購買グループ", "試作課"};

constexpr const char *DestinationNames[]
    = {"本社工場",   "第二工場",       "資材倉庫",   "部品受入センター",
       "東物流倉庫", "西物流センター", "組立分工場", "サービス部品倉庫"};

constexpr const char *AreaNames[]
    = {"東棟１階受入", "西棟資材置場", "Ｂ棟２階", "北門横検収場", ""};

constexpr const char *BuyerNames[] = {"青葉", "小日向", "ｻｸﾗｲ", "ﾋﾉﾊﾗ", "木下川", "宇佐木"};

constexpr const char *RemarkTexts[]
    = {"分納可", "納期厳守願います", "ｶﾝﾊﾞﾝ方式", "成績書添付のこと", "色番 N-5", "先行手配分"};

} // namespace

namespace DemoNames {

std::span<const DemoCustomerName> Customers()
{
    return CustomerNames;
}

std::span<const char *const> Places()
{
    return PlaceNames;
}

std::span<const char *const> Trades()
{
    return TradeNames;
}

std::span<const DemoProductName> Products()
{
    return ProductNames;
}

std::span<const char *const> Sections()
{
    return SectionNames;
}

std::span<const char *const> Destinations()
{
    return DestinationNames;
}

std::span<const char *const> Areas()
{
    return AreaNames;
}

std::span<const char *const> Buyers()
{
    return BuyerNames;
}

std::span<const char *const> Remarks()
{
    return RemarkTexts;
}

} // namespace DemoNames
