#pragma once

#include "data/ProgramState.h"

#include <QString>
#include <vector>

/// Demo data in which customers with a known number of lines stand, each line an order of its own
/// that can be answered. Made once per size and kept in the folder given.
class BenchDatabase
{
public:
    BenchDatabase(const QString &folder, int lines, const std::vector<int> &customerSizes);

    const QString &Folder() const { return m_folder; }

    /// The conditions that find the customer with this many lines.
    static SearchConditions CustomerOf(int lines);

    /// Opens the database as the program does.
    void Open(ProgramState &state) const { Open(m_folder, state); }
    static void Open(const QString &folder, ProgramState &state);

private:
    QString m_folder;
};
