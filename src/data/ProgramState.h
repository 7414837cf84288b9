#pragma once

#include "data/Company.h"
#include "data/SearchConditions.h"
#include "data/bDAO.h"
#include "platform/Files.h"
#include "util/Decimal.h"

#include <QString>

inline constexpr auto ProgramId = "TL030101";

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
