#include "tldb/demo/DemoNames.h"
#include "tldb/demo/DemoOrders.h"

#include <algorithm>

namespace {

const RowField<DemoLine> LineFields[] = {
    {"AccNo", &DemoLine::AccNo},
    {"AccSubNo", &DemoLine::AccSubNo},
    {"ShpSubNo", &DemoLine::ShpSubNo},
    {"PayKeyNo", &DemoLine::PayKeyNo},
    {"PayKeySubNp", &DemoLine::PayKeySubNp},
    {"OdrNo", &DemoLine::OdrNo},
    {"CustCD", &DemoLine::CustCD},
    {"CustSecCD", &DemoLine::CustSecCD},
    {"CustSecName", &DemoLine::CustSecName},
    {"PayDstCD", &DemoLine::PayDstCD},
    {"LimDate", &DemoLine::LimDate},
    {"LimTime", &DemoLine::LimTime},
    {"PayNo", &DemoLine::PayNo},
    {"HinCD", &DemoLine::HinCD},
    {"AccHinCD", &DemoLine::AccHinCD},
    {"MfactNo", &DemoLine::MfactNo},
    {"Unit", &DemoLine::Unit},
    {"Tan", &DemoLine::Tan},
    {"AccVal", &DemoLine::AccVal},
    {"IndVal", &DemoLine::IndVal},
    {"AnsVal", &DemoLine::AnsVal},
    {"ShpVal", &DemoLine::ShpVal},
    {"AnsLimDate", &DemoLine::AnsLimDate},
    {"AnsMark", &DemoLine::AnsMark},
    {"AnsLimUmu", &DemoLine::AnsLimUmu},
    {"ShpSts", &DemoLine::ShpSts},
    {"ShpDate", &DemoLine::ShpDate},
    {"ArvExpDate", &DemoLine::ArvExpDate},
    {"DenKBN", &DemoLine::DenKBN},
    {"ShpKBN", &DemoLine::ShpKBN},
    {"ContractKBN", &DemoLine::ContractKBN},
    {"Biko", &DemoLine::Biko},
    {"OdrBiko", &DemoLine::OdrBiko},
    {"OdrBarCD", &DemoLine::OdrBarCD},
};

const RowField<DemoOrder> OrderFields[] = {
    {"AccNo", &DemoOrder::AccNo},           {"CustCD", &DemoOrder::CustCD},
    {"AccDate", &DemoOrder::AccDate},       {"AccHinCD", &DemoOrder::AccHinCD},
    {"AccHinName", &DemoOrder::AccHinName}, {"AccTan", &DemoOrder::AccTan},
    {"TanKBN", &DemoOrder::TanKBN},         {"Unit", &DemoOrder::Unit},
    {"ZanVal", &DemoOrder::ZanVal},         {"ShpSts", &DemoOrder::ShpSts},
    {"EDIKBN", &DemoOrder::EDIKBN},         {"F019", &DemoOrder::F019},
};

const RowField<DemoSubLine> SubLineFields[] = {
    {"AccNo", &DemoSubLine::AccNo},
    {"AccSubNo", &DemoSubLine::AccSubNo},
};

const RowField<DemoEiajOrder> EiajOrderFields[] = {
    {"AccNo", &DemoEiajOrder::AccNo},           {"CUSTCD", &DemoEiajOrder::CUSTCD},
    {"OdrNo", &DemoEiajOrder::OdrNo},           {"CockKBN", &DemoEiajOrder::CockKBN},
    {"KobaiTanto", &DemoEiajOrder::KobaiTanto}, {"DstAreaName", &DemoEiajOrder::DstAreaName},
};

const RowField<DemoEiajOrder> EiajFurtherFields[] = {
    {"AccNo", &DemoEiajOrder::AccNo},
    {"F055", &DemoEiajOrder::F055},
    {"F082", &DemoEiajOrder::F082},
};

DemoEiajOrder MakeEiajOrder(const DemoOrder &order, DemoRandom &random)
{
    DemoEiajOrder eiaj;
    eiaj.AccNo = order.AccNo;
    eiaj.CUSTCD = order.CustCD;
    eiaj.OdrNo = order.lines.front().OdrNo;
    eiaj.CockKBN = QString::number(random.Between(1, 3));
    eiaj.KobaiTanto = QString::fromUtf8(random.Pick(DemoNames::Buyers()));
    eiaj.DstAreaName = QString::fromUtf8(random.Pick(DemoNames::Areas()));
    eiaj.F055 = QString("L%1-%2").arg(random.Between(1, 9)).arg(random.Between(100, 999));
    eiaj.F082 = QString::number(random.Between(1, 4));
    return eiaj;
}

} // namespace

void WriteDemoOrders(Database &database, const DemoMasters &masters, qint64 lineCount, QDate day,
                     DemoRandom &random, const RowStamp &stamp)
{
    TableWriter<DemoLine> lines(database, "TLSP0010", LineFields, stamp);
    TableWriter<DemoOrder> orders(database, "TLAC0010", OrderFields, stamp);
    TableWriter<DemoSubLine> subLines(database, "TLAC0020", SubLineFields, stamp);
    TableWriter<DemoEiajOrder> eiajOrders(database, "TLEI0010", EiajOrderFields, stamp);
    TableWriter<DemoEiajOrder> eiajFurther(database, "TLEI0011", EiajFurtherFields, stamp);
    DemoOrderMaker maker(masters, day, random);

    for (qint64 rest = lineCount; rest > 0;) {
        const DemoOrder order = maker.Next(rest);
        rest -= qint64(order.lines.size());
        orders.Insert(order);
        qint64 lastSubLine = 0;
        for (const DemoLine &line : order.lines) {
            lines.Insert(line);
            lastSubLine = std::max(lastSubLine, line.AccSubNo);
        }
        for (qint64 subLine = 1; subLine <= lastSubLine; ++subLine)
            subLines.Insert({order.AccNo, subLine});
        if (order.EDIKBN == 1) {
            const DemoEiajOrder eiaj = MakeEiajOrder(order, random);
            eiajOrders.Insert(eiaj);
            eiajFurther.Insert(eiaj);
        }
    }
}
