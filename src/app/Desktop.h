#pragma once

#include <QString>

class QApplication;

/// Gives the program its name, the Japanese texts of Qt's own boxes and, where the desktop's font
/// has no Japanese characters, a Japanese font. All else looks as the desktop makes it.
void PrepareDesktop(QApplication &application);

/// The program's own folder: the one after --home on the command line, else the executable's. Tells
/// of a command line that it can't read, and of --help, and ends the program then.
QString ProgramDir(const QApplication &application);
