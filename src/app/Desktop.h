#pragma once

#include <QString>

class QApplication;

/// Gives the program its Japanese font, the Japanese texts of Qt's own boxes, its name and its way
/// with memory.
void PrepareDesktop(QApplication &application);

/// The program's own folder: the one after --home on the command line, else the executable's. Tells
/// of a command line that it can't read, and of --help, and ends the program then.
QString ProgramDir(const QApplication &application);
