#pragma once

class QApplication;

/// Gives the program its Japanese font, the Japanese texts of Qt's own boxes, its name and its way
/// with memory.
void PrepareDesktop(QApplication &application);
