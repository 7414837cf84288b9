#pragma once

#include <QString>

/// The version and the commit that the program was built from: "1.2.3 (0123abc)", with "-dirty"
/// after a commit that more was changed since.
QString ProgramVersion();
