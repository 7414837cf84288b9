#pragma once

#include <span>

/// The words that demonstration data is made of. Companies and people are invented.

struct DemoCustomerName
{
    const char *name;
    const char *vanCode; ///< null: one is made up
    int linKBN;
    int custKBN;
    int nokiInfKBN;
    char layoutFlag;        ///< "0" asks for the short answer record
    const char *answerPath; ///< null: a file below C:\EDI\OUT
};

struct DemoProductName
{
    const char *codePrefix;
    const char *name;
    const char *material; ///< material, standard and size
    const char *unit;
    bool isMeasured; ///< ordered in quarters of a unit
    double price;    ///< about what a unit costs
};

namespace DemoNames {

/// The first customers of every demonstration, each with another mix of settings.
std::span<const DemoCustomerName> Customers();

// The names of further customers are put together from a place and a trade.
std::span<const char *const> Places();
std::span<const char *const> Trades();

std::span<const DemoProductName> Products();
std::span<const char *const> Sections(); ///< customers' departments
std::span<const char *const> Destinations();
std::span<const char *const> Areas();
std::span<const char *const> Buyers();
std::span<const char *const> Remarks();

} // namespace DemoNames
