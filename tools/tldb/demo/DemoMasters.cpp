#include "tldb/demo/DemoMasters.h"

#include "tldb/demo/DemoNames.h"

#include <algorithm>

namespace {

constexpr qint64 LinesPerFurtherCustomer = 25'000;
constexpr qint64 LeastProducts = 60;
constexpr qint64 LinesPerFurtherProduct = 500;
constexpr qint64 LeastProductsPerCustomer = 24;
constexpr qint64 LinesPerFurtherCustomerProduct = 4'000;

struct DemoCompany
{
    QString CoCD = "SUPPLIER0001";
    QString CoName = "若竹淵部品工業株式会社";
    QString PostCD = "999-0000";
    QString Address = "架空県若竹淵市水鏡町１－２－３";
    QString TEL = "000-000-0001", FAX = "000-000-0002";
    qint64 CloseDay = 20;
    double TaxPer = 10;
    qint64 DpoYM = 24;
    QString DefCustCD;
};

const RowField<DemoCompany> CompanyFields[]
    = {{"CoCD", &DemoCompany::CoCD},         {"CoName", &DemoCompany::CoName},
       {"PostCD", &DemoCompany::PostCD},     {"Address", &DemoCompany::Address},
       {"TEL", &DemoCompany::TEL},           {"FAX", &DemoCompany::FAX},
       {"CloseDay", &DemoCompany::CloseDay}, {"TaxPer", &DemoCompany::TaxPer},
       {"DpoYM", &DemoCompany::DpoYM},       {"DefCustCD", &DemoCompany::DefCustCD}};

const RowField<DemoProduct> ProductFields[] = {{"AccHinCD", &DemoProduct::AccHinCD},
                                               {"HinName", &DemoProduct::HinName},
                                               {"ReadTime", &DemoProduct::ReadTime}};

const RowField<DemoConversion> ConversionFields[] = {{"CustCD", &DemoConversion::CustCD},
                                                     {"HinCD", &DemoConversion::HinCD},
                                                     {"AccHinCD", &DemoConversion::AccHinCD}};

const RowField<DemoCustomer> CustomerFields[] = {{"CustCD", &DemoCustomer::CustCD},
                                                 {"CustName", &DemoCustomer::CustName},
                                                 {"TEL", &DemoCustomer::TEL},
                                                 {"CustKBN", &DemoCustomer::CustKBN},
                                                 {"VanCD", &DemoCustomer::VanCD},
                                                 {"LinKBN", &DemoCustomer::LinKBN},
                                                 {"NokiInfPath", &DemoCustomer::NokiInfPath},
                                                 {"NokiInfKBN", &DemoCustomer::NokiInfKBN},
                                                 {"HenpVerPath", &DemoCustomer::HenpVerPath}};

const RowField<DemoDestination> DestinationFields[]
    = {{"CustCoCD", &DemoDestination::CustCoCD},
       {"PayDstCD", &DemoDestination::PayDstCD},
       {"PayDstName", &DemoDestination::PayDstName},
       {"PayNeedDays", &DemoDestination::PayNeedDays}};

DemoProduct MakeProduct(qint64 number, DemoRandom &random)
{
    const auto names = DemoNames::Products();
    const DemoProductName &name = names[size_t(number) % names.size()];
    const qint64 serial = number / qint64(names.size()) + 1;
    DemoProduct product;
    product.AccHinCD = QString("%1-%2").arg(name.codePrefix).arg(serial * 7, 5, 10, QChar('0'));
    if (number % 17 == 5) // the mark of a revised part, which a search has to take literally
        product.AccHinCD += QString("#%1").arg(random.Between(2, 9));
    product.HinName = QString::fromUtf8(name.name) + QString::fromUtf8(" %1形").arg(serial * 7);
    product.ReadTime = random.Between(1, 12) * 5;
    product.material = QString::fromUtf8(name.material);
    product.unit = QString::fromUtf8(name.unit);
    product.isMeasured = name.isMeasured;
    product.price = name.price * double(random.Between(3, 8)) / 4;
    return product;
}

/// The settings of one of the first customers; a further one takes turns with them and has a name
/// of its own.
DemoCustomer MakeCustomer(qint64 number, DemoRandom &random)
{
    const auto names = DemoNames::Customers();
    const DemoCustomerName &name = names[size_t(number) % names.size()];
    const bool isFurther = number >= qint64(names.size());
    DemoCustomer customer;
    customer.CustCD = QString("C%1").arg(number + 1, 4, 10, QChar('0'));
    customer.CustName = QString::fromUtf8(name.name);
    if (isFurther)
        customer.CustName = QString::fromUtf8(random.Pick(DemoNames::Places()))
                            + QString::fromUtf8(random.Pick(DemoNames::Trades()));
    customer.TEL = QString("000-%1").arg(random.Between(1'000'000, 9'999'999));
    customer.VanCD = name.vanCode ? QString(name.vanCode)
                                  : QString("V%1%2")
                                        .arg(number + 1, 5, 10, QChar('0'))
                                        .arg(random.Between(100'000, 999'999));
    customer.CustKBN = name.custKBN;
    customer.LinKBN = name.linKBN;
    customer.NokiInfKBN = name.nokiInfKBN;
    customer.NokiInfPath = name.answerPath && !isFurther
                               ? QString(name.answerPath)
                               : QString("C:\\EDI\\OUT\\%1\\NOUKI.TXT").arg(customer.CustCD);
    customer.HenpVerPath = QString("1%1SUP%2").arg(QChar(name.layoutFlag)).arg(number * 37 + 1201);
    return customer;
}

void AddDestinations(DemoCustomer &customer, DemoRandom &random)
{
    const auto names = DemoNames::Destinations();
    const qint64 count = random.Between(3, qint64(names.size()));
    for (qint64 at = 0; at < count; ++at)
        customer.destinations.push_back(
            {customer.VanCD.left(6), QString("D%1").arg(at + 1, 3, 10, QChar('0')),
             QString::fromUtf8(names[size_t(at)]), (at + random.Between(0, 1)) % 8});
}

void AddProducts(DemoCustomer &customer, qint64 customerNumber, qint64 count,
                 const std::vector<DemoProduct> &products)
{
    for (qint64 at = 0; at < count; ++at) {
        const size_t product = size_t(customerNumber * 11 + at) % products.size();
        customer.products.push_back(
            {customer.CustCD,
             QString("%1%2").arg(QChar('A' + int(customerNumber % 26))).arg(100'000 + at * 13),
             products[product].AccHinCD, product});
    }
}

} // namespace

DemoMasters MakeDemoMasters(qint64 lineCount, DemoRandom &random)
{
    DemoMasters masters;
    const qint64 productCount = LeastProducts + lineCount / LinesPerFurtherProduct;
    for (qint64 number = 0; number < productCount; ++number)
        masters.products.push_back(MakeProduct(number, random));

    const qint64 customerCount = std::min(
        qint64(DemoNames::Customers().size()) + lineCount / LinesPerFurtherCustomer, qint64(9999));
    const qint64 productsPerCustomer = std::min(
        LeastProductsPerCustomer + lineCount / LinesPerFurtherCustomerProduct, productCount);
    for (qint64 number = 0; number < customerCount; ++number) {
        DemoCustomer customer = MakeCustomer(number, random);
        AddDestinations(customer, random);
        AddProducts(customer, number, productsPerCustomer, masters.products);
        masters.customers.push_back(std::move(customer));
    }
    return masters;
}

void WriteDemoMasters(Database &database, const DemoMasters &masters, const RowStamp &stamp)
{
    DemoCompany company;
    company.DefCustCD = masters.customers.front().CustCD;
    TableWriter<DemoCompany>(database, "TLMT0010", CompanyFields, stamp).Insert(company);

    TableWriter<DemoProduct> products(database, "TLMT0020", ProductFields, stamp);
    for (const DemoProduct &product : masters.products)
        products.Insert(product);

    TableWriter<DemoConversion> conversions(database, "TLMT0030", ConversionFields, stamp);
    TableWriter<DemoCustomer> customers(database, "TLMT0040", CustomerFields, stamp);
    TableWriter<DemoDestination> destinations(database, "TLMT0050", DestinationFields, stamp);
    for (const DemoCustomer &customer : masters.customers) {
        customers.Insert(customer);
        for (const DemoConversion &conversion : customer.products)
            conversions.Insert(conversion);
        if (customer.HasCompanyCode())
            for (const DemoDestination &destination : customer.destinations)
                destinations.Insert(destination);
    }
}
