#pragma once

#include <QStringList>

/// Keeps every statement that SQLite is given over connections opened while it lives.
class StatementLog
{
public:
    StatementLog();
    ~StatementLog();
    StatementLog(const StatementLog &) = delete;
    StatementLog &operator=(const StatementLog &) = delete;

    /// The statements so far, which are then forgotten.
    QStringList Take();
};
