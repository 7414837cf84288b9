#pragma once

#include "data/Company.h"

class bDAO;

/// Fills the company record from the first row of the company master. False when there is no row;
/// the program then can't go on.
bool LoadCompany(bDAO &db, const QString &executableName, CompanyRecord &company);
