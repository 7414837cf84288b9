#pragma once

#include "data/ProgramState.h"

class SpreadX;

/// What the pickers list and which row they begin on.

/// The products whose code begins with this text; and all products.
QString BuildProductSql(const QString &code);
QString BuildAllProductsSql();

/// All customers when a name is known already, else those whose code begins with the picked code.
QString BuildCustomerSql(const PickedCode &picked);

/// What stands for a row to begin on when the list can't be read; the error has been shown.
inline constexpr int ListNotRead = -1;

/// Fill the grid; the row to begin on, 0 when there is no row at all.
int FillProducts(bDAO &db, const PickedCode &picked, SpreadX &grid);
int FillCustomers(bDAO &db, const PickedCode &picked, SpreadX &grid);
