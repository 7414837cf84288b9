#pragma once

#include "data/dao/DaoError.h"

/// What the operation throws; number 0 when nothing.
template <typename Operation>
DaoError ErrorOf(Operation &&operation)
{
    try {
        operation();
    } catch (const DaoError &error) {
        return error;
    }
    return {};
}
