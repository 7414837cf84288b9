#pragma once

#include <QString>

/// The catalogue's messages that this program shows, by name.
namespace Message {
constexpr int ExtraTextAlone = 0;
constexpr int WrongDate = 8;
constexpr int WrongNumber = 9;
constexpr int NoData = 13;
constexpr int Registered = 14;
constexpr int NotRegistered = 15;
constexpr int NotUpdated = 17;
constexpr int NotDeleted = 19;
constexpr int MayDelete = 20;
constexpr int NoValidRow = 22;
constexpr int NotCreated = 43;
constexpr int NotRegisteredYet = 76;
constexpr int NoRowForDate = 88;
} // namespace Message

/// The catalogue text of a message code, lines joined by CR; empty for a code without one.
QString MessageText(int code);

/// Shows the message box of a code: its catalogue text and, on a line of its own, the extra text.
/// A code without a text (0 above all) shows the extra text alone. Returns the code of the button
/// pressed (BoxButton).
int ShowMessage(int code, const QString &extra = QString());
