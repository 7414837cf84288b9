#pragma once

#include <QString>

/// The catalogue text of a message code, lines joined by CR; empty for a code without one.
QString MessageText(int code);

/// Shows the message box of a code: its catalogue text and, on a line of its own, the extra text.
/// A code without a text (0 above all) shows the extra text alone. Returns the code of the button
/// pressed (BoxButton).
int ShowMessage(int code, const QString &extra = QString());
