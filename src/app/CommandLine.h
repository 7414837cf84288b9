#pragma once

#include "platform/Log.h"

#include <QStringList>
#include <QTextStream>
#include <optional>

/// What the command line asks for.
struct CommandLine
{
    QString programDir; ///< the program's own folder: the one after --home, else the executable's
    LogLevel logLevel = LogLevel::Info;
    bool isGuide = false; ///< show the operator's guide and nothing else
};

/// True when the arguments (the program's name first) ask for nothing that needs a display.
bool NeedsNoDisplay(int argc, char **argv);

/// Reads the arguments, the program's name first, without those that are for Qt. An exit status
/// when the process is to end with it: 0 after --help or --version, told on `out`; 2 after wrong
/// arguments, told on `err`.
std::optional<int> ReadCommandLine(const QStringList &arguments, CommandLine &line,
                                   QTextStream &out, QTextStream &err);
