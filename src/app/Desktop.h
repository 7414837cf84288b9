#pragma once

class QApplication;

/// Gives the program its name, the Japanese texts of Qt's own boxes and, where the desktop's font
/// has no Japanese characters, a Japanese font. All else looks as the desktop makes it.
void PrepareDesktop(QApplication &application);
