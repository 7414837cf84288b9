#pragma once

#include "data/ProgramState.h"

/// The statement that selects the delivery lines for the search conditions and fixes their order.
QString BuildListSql(const SearchConditions &conditions);
