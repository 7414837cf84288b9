#pragma once

#include "tldb/demo/DemoMasters.h"

#include <QDate>
#include <vector>

/// Demonstration orders with their delivery lines. Members bear the names of their columns.

struct DemoLine
{
    qint64 AccNo = 0, AccSubNo = 0, ShpSubNo = 0;
    QString PayKeyNo;
    qint64 PayKeySubNp = 0;
    QString OdrNo, CustCD, CustSecCD, CustSecName, PayDstCD;
    QString LimDate, LimTime, PayNo;
    QString HinCD, AccHinCD, MfactNo, Unit;
    double Tan = 0, AccVal = 0, IndVal = 0, AnsVal = 0, ShpVal = 0;
    QString AnsLimDate, AnsMark;
    qint64 AnsLimUmu = 0, ShpSts = 1;
    QString ShpDate, ArvExpDate;
    qint64 DenKBN = 2, ShpKBN = 1;
    QString ContractKBN, Biko, OdrBiko, OdrBarCD;

    int dueDay = 0; ///< LimDate, counted from the day that the data is made for
};

struct DemoOrder
{
    qint64 AccNo = 0;
    QString CustCD, AccDate, AccHinCD, AccHinName;
    double AccTan = 0;
    QString TanKBN, Unit;
    double ZanVal = 0;
    qint64 ShpSts = 1, EDIKBN = 0;
    QString F019;

    std::vector<DemoLine> lines;
};

struct DemoSubLine
{
    qint64 AccNo = 0, AccSubNo = 0;
};

struct DemoEiajOrder
{
    qint64 AccNo = 0;
    QString CUSTCD, OdrNo, CockKBN, KobaiTanto, DstAreaName, F055, F082;
};

/// Makes one order after the other.
class DemoOrderMaker
{
public:
    /// `masters` and `random` are kept by reference. Dates lie around `day`.
    DemoOrderMaker(const DemoMasters &masters, QDate day, DemoRandom &random);

    /// The next order, with at most `mostLines` delivery lines. Its instructed quantities add up to
    /// the ordered one, those not shipped to its open one.
    DemoOrder Next(qint64 mostLines);

private:
    QString Day(int fromToday) const;
    qint64 DrawLineCount(qint64 mostLines);
    DemoLine CommonLine(const DemoCustomer &customer, const DemoOrder &order);
    void AddLines(DemoOrder &order, const DemoLine &common, qint64 count, bool isMeasured);
    void SetState(DemoLine &line, const DemoCustomer &customer, bool isOrderShipped);
    void Ship(DemoLine &line, int transportDays);
    void Answer(DemoLine &line, const DemoCustomer &customer, int transportDays);
    void SplitAnswer(std::vector<DemoLine> &lines);

    const DemoMasters &m_masters;
    DemoRandom &m_random;
    std::vector<QString> m_days;
    qint64 m_accNo = 10'000;
};

/// Writes orders with `lineCount` delivery lines in all. Throws DaoError.
void WriteDemoOrders(Database &database, const DemoMasters &masters, qint64 lineCount, QDate day,
                     DemoRandom &random, const RowStamp &stamp);
