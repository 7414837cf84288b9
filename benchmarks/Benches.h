#pragma once

#include "BenchDatabase.h"
#include "Measurement.h"

#include <vector>

/// Sizes of one run of the benchmarks.
struct Sizes
{
    QString folder; ///< where data is kept
    int database;   ///< lines in the large database
    int smallDatabase;
    std::vector<int> lists; ///< customers' line counts, ascending; the second is the standard
    int longest;            ///< a list as long as a database
    int list;               ///< the list that commands work on
    int search;             ///< one customer's lines
    int orders;             ///< orders registered and created
    int products;           ///< products in the picker
    int farOrders;          ///< orders over a slow network to a server
};

// Each adds its measurements.
void BenchLoading(const Sizes &sizes, std::vector<Measurement> &results);
void BenchCommands(const Sizes &sizes, std::vector<Measurement> &results);
void BenchSheets(const Sizes &sizes, std::vector<Measurement> &results);
void BenchOutput(const Sizes &sizes, std::vector<Measurement> &results);
void BenchStart(const Sizes &sizes, std::vector<Measurement> &results);
void BenchServer(const Sizes &sizes, std::vector<Measurement> &results); ///< in TEST_SERVER

/// The large database of these sizes.
BenchDatabase LargeDatabase(const Sizes &sizes);

/// The database that the longest list fills.
BenchDatabase LongestDatabase(const Sizes &sizes);

/// Run in a process of its own: what `argv` names first is the program with its own command line
/// ("search"), or the same form alone, without the program and its database ("bare"). Ends with 0
/// when its first window is on the screen, else with another code.
int ShowFirstWindow(int argc, char **argv);
