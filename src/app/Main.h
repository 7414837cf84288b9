#pragma once

#include "data/ProgramState.h"

#include <QString>

/// The program: start-up, the search and list screens in turn, end.

/// Finds the settings and the database, opens it and loads the company row. False when the program
/// can't go on: the database is closed then, and the operator has been told what there is to tell.
bool InitApp(ProgramState &state, const QString &programDir);

/// Closes the database.
bool EndApp(ProgramState &state);

/// What the search starts with: the company's default customer.
void SetSearchDefaults(ProgramState &state);

/// Shows the search screen and the list in turn until the operator leaves the search screen without
/// asking for the list.
void RunScreens(ProgramState &state);

/// The whole run. `programDir` is the program's own folder. A second copy of the same user ends at
/// once. False when the program could not be started: the log and the standard error say why, also
/// where the operator is shown nothing.
bool Main(const QString &programDir);
