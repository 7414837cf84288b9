#pragma once

#include "tldb/TableWriter.h"
#include "tldb/demo/DemoRandom.h"

#include <vector>

/// The masters that demonstration orders refer to.

struct DemoProduct
{
    QString AccHinCD, HinName;
    qint64 ReadTime = 0;
    QString material, unit;
    bool isMeasured = false;
    double price = 0;
};

struct DemoConversion
{
    QString CustCD, HinCD, AccHinCD;
    size_t product = 0;
};

struct DemoDestination
{
    QString CustCoCD, PayDstCD, PayDstName;
    qint64 PayNeedDays = 0;
};

struct DemoCustomer
{
    QString CustCD, CustName, TEL, VanCD, NokiInfPath, HenpVerPath;
    qint64 CustKBN = 0, LinKBN = 0, NokiInfKBN = 0;

    std::vector<DemoConversion> products; ///< what the customer orders
    std::vector<DemoDestination> destinations;

    /// True when the destinations can be found under the customer's company code.
    bool HasCompanyCode() const { return VanCD.size() >= 6; }
};

struct DemoMasters
{
    std::vector<DemoCustomer> customers; ///< the first one has the most orders
    std::vector<DemoProduct> products;
};

/// Masters for a number of delivery lines: the more lines, the more customers and products.
DemoMasters MakeDemoMasters(qint64 lineCount, DemoRandom &random);

/// Writes the masters and the company row. Throws DaoError.
void WriteDemoMasters(Database &database, const DemoMasters &masters, const RowStamp &stamp);
