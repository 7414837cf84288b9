#pragma once

#include <QString>
#include <array>

/// What the operator searches for. An empty or blank text is no condition.
struct SearchConditions
{
    QString customerCode;
    QString customerName;
    QString customerSectionCode;
    QString productCode;
    QString productName;
    bool isProductNameLiteral
        = false; ///< from the master: its "*", "?", "#" and "[" are no wildcards
    QString orderNo;
    QString makerNo;
    QString payKeyNo;
    QString dateBasis = "SHPDATE"; ///< "SHPDATE", "LIMDATE" or "ACCDATE"
    QString fromDate;              ///< stored form or empty
    QString toDate;                ///< stored form or empty
    std::array<QString, 6> sortKeys
        = {"ACCHINCD", "ODRNO", "MFACTNO", "LIMDATE", "SHPDATE", "CUSTSECCD"};
};
