#pragma once

#include "data/Company.h"
#include "data/bDAO.h"
#include "platform/Files.h"
#include "util/Decimal.h"

#include <QString>
#include <array>

inline constexpr auto ProgramId = "TL030101";

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

/// A code and its name on their way to a picker and back.
struct PickedCode
{
    QString code;
    QString name;
};

/// A delivery line on its way to the detail dialog and back.
struct DetailLine
{
    qint64 accNo = 0;
    int accSubNo = 0;
    int shpSubNo = 0;
    QString answeredDate; ///< stored form, or whatever stands in its place; registered or not
    Decimal answeredQuantity;
    bool isWithoutEdiMark = false;

    // As the list knows the line to be stored.
    QString storedDate;
    Decimal storedQuantity;
    bool isAnswered = false; ///< its answer has been output
};

/// Everything that lives for the whole run and that the screens share. The program's Main owns the
/// one instance and hands it to each screen by reference.
struct ProgramState
{
    QString iniDir;
    QString dbPath;
    Files files;
    bDAO db;
    CompanyRecord company;
    SearchConditions conditions;
    QString databaseWarning; ///< damage found in the database; empty: none is known of
    bool isSearchMode = false;
    bool isListRequested = false;
    bool isReloadNeeded = false;
    PickedCode pickedCustomer;
    PickedCode pickedProduct;
    DetailLine detail;
};
