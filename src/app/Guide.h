#pragma once

class QApplication;

/// The operator's guide: the HTML pages installed with the program. It has a process of its own, so
/// that it can be read beside any screen or box, as these keep the other windows of their process
/// waiting.

/// Opens the guide whenever F1 is pressed in any window. One that is open is shown anew, in front;
/// it closes with the program.
void OpenGuideOnF1(QApplication &application);

/// Shows the guide until its window is closed. False when it is not installed: a box says so.
bool ShowGuide();
