#pragma once

#include "data/SearchConditions.h"

#include <vector>

/// What the list reads of a delivery line, in the order of its statement's columns.
enum class LineField {
    AccNo,
    ShpSubNo,
    AccSubNo,
    AnsMark,
    OdrNo,
    AccVal,
    LimDate,
    PayNo,
    IndVal,
    AnsLimDate,
    AnsVal,
    ShpSts,
    ShpVal,
    AnsLimUmu,
    DenKBN,
    EDIKBN,
    ZanVal,
    ContractKBN,
    HinCD,
    LinKBN,
    NokiInfPath,
    NokiInfKBN,
    AccHinName,
    F019,
    CustSecCD,
};

/// The statement that selects the delivery lines for the search conditions and fixes their order.
QString BuildListSql(const SearchConditions &conditions);

/// The same columns of all live lines of these orders, whatever the search was.
QString BuildOrdersSql(const std::vector<qint64> &accNos);
