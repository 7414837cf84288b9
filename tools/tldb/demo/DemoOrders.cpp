#include "tldb/demo/DemoOrders.h"

#include "tldb/demo/DemoNames.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr int FirstDay = -240;
constexpr int LastDay = 150;
constexpr int FirstDueDay = -30;
constexpr int LastDueDay = 90;
constexpr qint64 MostLinesPerOrder = 31; ///< as many as one answer record takes

constexpr int FirmOrder = 2;
constexpr int Replacement = 15;
constexpr int OtherSlipKinds[] = {1, 3, 11}; ///< never listed

constexpr std::string_view ContractKinds = "ABCDEFGHMNORSTUVWYZ";
constexpr const char *DeliveryTimes[] = {"", "", "0900", "1300", "1530"};

/// How many delivery lines orders have; three quarters of all have one, the average is 1.3.
struct LineCountShare
{
    int perMille;
    qint64 least;
    qint64 most;
};
constexpr LineCountShare LineCountShares[]
    = {{850, 1, 1}, {100, 2, 2}, {30, 3, 4}, {15, 5, 8}, {4, 9, 16}, {1, 17, MostLinesPerOrder}};

QString Padded(qint64 number, int width)
{
    return QString("%1").arg(number, width, 10, QChar('0'));
}

} // namespace

DemoOrderMaker::DemoOrderMaker(const DemoMasters &masters, QDate day, DemoRandom &random)
    : m_masters(masters)
    , m_random(random)
{
    for (int at = FirstDay; at <= LastDay; ++at)
        m_days.push_back(day.addDays(at).toString("yyyyMMdd"));
}

QString DemoOrderMaker::Day(int fromToday) const
{
    return m_days.at(size_t(fromToday - FirstDay));
}

qint64 DemoOrderMaker::DrawLineCount(qint64 mostLines)
{
    qint64 draw = m_random.Between(1, 1000);
    for (const LineCountShare &share : LineCountShares) {
        if (draw <= share.perMille)
            return std::min(m_random.Between(share.least, share.most), mostLines);
        draw -= share.perMille;
    }
    return 1;
}

DemoOrder DemoOrderMaker::Next(qint64 mostLines)
{
    // The lesser of two draws: customers at the head of the list order more.
    const qint64 last = qint64(m_masters.customers.size()) - 1;
    const DemoCustomer &customer
        = m_masters
              .customers[size_t(std::min(m_random.Between(0, last), m_random.Between(0, last)))];
    const DemoConversion &conversion = m_random.Pick(customer.products);
    const DemoProduct &product = m_masters.products[conversion.product];

    DemoOrder order;
    order.AccNo = ++m_accNo;
    order.CustCD = customer.CustCD;
    order.AccHinCD = product.AccHinCD;
    order.AccHinName = product.HinName;
    order.AccTan = product.price;
    order.TanKBN = m_random.Chance(90) ? "1" : QString::number(m_random.Between(2, 7));
    order.Unit = product.unit;
    order.EDIKBN = m_random.Chance(75) ? 1 : 0;
    order.F019 = product.material;
    const int dueDay = int(m_random.Between(FirstDueDay, LastDueDay));
    order.AccDate = Day(std::min(dueDay, 0) - int(m_random.Between(1, 90)));

    DemoLine common = CommonLine(customer, order);
    common.HinCD = conversion.HinCD;
    common.dueDay = dueDay;
    AddLines(order, common, DrawLineCount(mostLines), product.isMeasured);

    const bool isOrderShipped = dueDay < 0 && m_random.Chance(20);
    for (DemoLine &line : order.lines)
        SetState(line, customer, isOrderShipped);
    SplitAnswer(order.lines);

    for (const DemoLine &line : order.lines)
        order.ZanVal += line.ShpSts < 3 ? line.IndVal : 0;
    const bool isAnyShipped = std::any_of(order.lines.begin(), order.lines.end(),
                                          [](const DemoLine &line) { return line.ShpSts >= 3; });
    order.ShpSts = order.ZanVal == 0 ? 3 : isAnyShipped ? 2 : 1;
    return order;
}

/// What all lines of an order have in common.
DemoLine DemoOrderMaker::CommonLine(const DemoCustomer &customer, const DemoOrder &order)
{
    DemoLine line;
    line.AccNo = order.AccNo;
    line.CustCD = order.CustCD;
    line.AccHinCD = order.AccHinCD;
    line.Unit = order.Unit;
    line.Tan = order.AccTan;
    line.OdrNo = order.AccDate.mid(2, 4) + '-' + Padded(order.AccNo, 8);
    line.OdrBarCD = order.AccDate.mid(2, 4) + Padded(order.AccNo, 8);
    line.MfactNo = "S" + order.AccDate.mid(2, 4) + '-' + Padded(m_random.Between(1, 400), 4);

    const auto sections = DemoNames::Sections();
    const qint64 section = m_random.Between(0, qint64(sections.size()) - 1);
    line.CustSecCD = QString::number(1100 + section * 10);
    line.CustSecName = QString::fromUtf8(sections[size_t(section)]);
    line.PayDstCD = m_random.Pick(customer.destinations).PayDstCD;
    line.LimTime = m_random.Pick(DeliveryTimes);
    line.ContractKBN = QChar(m_random.Pick(ContractKinds));
    if (m_random.Chance(10))
        line.OdrBiko = QString::fromUtf8(m_random.Pick(DemoNames::Remarks()));
    if (m_random.Chance(4))
        line.DenKBN = Replacement;
    else if (m_random.Chance(3))
        line.DenKBN = m_random.Pick(OtherSlipKinds);
    else
        line.DenKBN = FirmOrder;
    return line;
}

/// Adds the order's lines with their keys, days and instructed quantities.
void DemoOrderMaker::AddLines(DemoOrder &order, const DemoLine &common, qint64 count,
                              bool isMeasured)
{
    const qint64 subLines
        = count > 1 && m_random.Chance(30) ? m_random.Between(2, std::min<qint64>(count, 3)) : 1;
    const qint64 lot = m_random.Between(1, 50);
    double ordered = 0;
    for (qint64 at = 0; at < count; ++at) {
        DemoLine line = common;
        line.AccSubNo = at % subLines + 1;
        line.ShpSubNo = at < subLines ? 1 : at - subLines + 2;
        line.PayKeyNo = "K" + Padded(order.AccNo, 9) + Padded(at + 1, 4);
        line.PayKeySubNp = count == 1 ? 0 : at + 1;
        line.PayNo = Padded((order.AccNo * 37 + at) % 100'000'000, 8);
        line.dueDay = std::min(common.dueDay + int(at) * 7, LastDueDay);
        line.LimDate = Day(line.dueDay);
        line.IndVal = double(lot * m_random.Between(1, 20));
        if (isMeasured)
            line.IndVal += double(m_random.Between(0, 3)) / 4;
        ordered += line.IndVal;
        order.lines.push_back(line);
    }
    for (DemoLine &line : order.lines)
        line.AccVal = ordered;
}

/// Decides how far the line has come: open, answered, on its way or shipped.
void DemoOrderMaker::SetState(DemoLine &line, const DemoCustomer &customer, bool isOrderShipped)
{
    int transportDays = 0;
    for (const DemoDestination &destination : customer.destinations)
        if (customer.HasCompanyCode() && destination.PayDstCD == line.PayDstCD)
            transportDays = int(destination.PayNeedDays);
    line.ShpDate = Day(line.dueDay - transportDays);
    line.ArvExpDate = line.LimDate;

    const int shippedPercent = line.dueDay < 0 ? 45 : line.dueDay < 14 ? 12 : 1;
    if (isOrderShipped || m_random.Chance(shippedPercent)) {
        Ship(line, transportDays);
        return;
    }
    if (m_random.Chance(25))
        Answer(line, customer, transportDays);
    if (m_random.Chance(2))
        line.ShpSts = 2;
    if (m_random.Chance(5))
        line.Biko = QString::fromUtf8(m_random.Pick(DemoNames::Remarks()));
}

void DemoOrderMaker::Ship(DemoLine &line, int transportDays)
{
    const int arrival = std::min(line.dueDay, int(m_random.Between(0, 3)) - 3);
    line.AnsLimDate = Day(arrival);
    line.AnsMark = line.AnsLimDate == line.LimDate ? "1" : "2";
    line.AnsVal = line.IndVal;
    line.AnsLimUmu = 3;
    line.ShpVal = line.IndVal;
    line.ShpDate = Day(arrival - transportDays);
    line.ArvExpDate = line.AnsLimDate;
    line.ShpSts = m_random.Chance(5) ? 4 : 3;
}

void DemoOrderMaker::Answer(DemoLine &line, const DemoCustomer &customer, int transportDays)
{
    line.AnsVal = line.IndVal;
    line.AnsLimUmu = m_random.Chance(75) ? 3 : 0;
    line.AnsMark = "2";
    // Where a quantity alone is an answer, some lines have no more than that.
    if (customer.LinKBN == 1 && m_random.Chance(8))
        return;
    const int delay = m_random.Chance(60) ? 0 : int(m_random.Between(-5, 21));
    line.AnsLimDate = Day(line.dueDay + delay);
    line.AnsMark = delay == 0 ? "1" : "2";
    line.ShpDate = Day(line.dueDay + delay - transportDays);
    line.ArvExpDate = line.AnsLimDate;
}

/// Now and then turns an order's last line into one that the supplier split off from the line
/// before it of the same order sub-line: nothing instructed, part of that line's quantity answered.
void DemoOrderMaker::SplitAnswer(std::vector<DemoLine> &lines)
{
    if (lines.size() < 2 || !m_random.Chance(25))
        return;
    DemoLine &split = lines.back();
    const auto source = std::find_if(lines.rbegin() + 1, lines.rend(), [&](const DemoLine &line) {
        return line.AccSubNo == split.AccSubNo;
    });
    if (source == lines.rend() || source->ShpSts != 1 || split.ShpSts != 1)
        return;
    source->AnsVal = source->IndVal;
    split.AnsVal = split.IndVal;
    source->IndVal += split.IndVal;
    split.IndVal = 0;
    split.LimDate = source->LimDate;
    for (DemoLine *line : {&*source, &split}) {
        line->AnsLimDate = Day(line->dueDay);
        line->AnsMark = line->AnsLimDate == line->LimDate ? "1" : "2";
        line->ArvExpDate = line->AnsLimDate;
        line->AnsLimUmu = 0;
    }
}
