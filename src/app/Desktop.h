#pragma once

class QApplication;

/// Gives the program its Japanese font, the Japanese texts of Qt's own boxes and its name.
void PrepareDesktop(QApplication &application);
