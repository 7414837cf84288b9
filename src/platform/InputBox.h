#pragma once

#include <QString>
#include <functional>

/// Asks for one line of text in a modal box. Returns the text typed, or an empty text when the
/// operator cancelled. Line breaks in the prompt are CR or CR LF.
QString InputBox(const QString &prompt, const QString &title);

/// Test seam: while set, the handler (prompt, title) answers in place of every box.
void SetInputBoxHandler(std::function<QString(const QString &, const QString &)> handler);
