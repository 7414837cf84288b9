#pragma once

#include "data/dao/Database.h"

/// A database in memory with every table and no rows. Statements may read and try to change them;
/// nothing is changed, no other file is touched, and none runs for long.
Database &FuzzDatabase();
