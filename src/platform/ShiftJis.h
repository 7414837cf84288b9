#pragma once

#include <QByteArray>
#include <QString>

/// The text in Windows code page 932. A character outside of it becomes "?", and `isComplete`, when
/// given, false.
QByteArray ToShiftJis(QStringView text, bool *isComplete = nullptr);

/// The text that bytes in Windows code page 932 stand for. A byte that begins no character, or half
/// a character at the end, becomes U+FFFD.
QString FromShiftJis(QByteArrayView bytes);

/// The length of the text in bytes of code page 932: 2 for a full-width character, 1 for a
/// half-width one.
int ShiftJisLength(QStringView text);

/// False when the text holds a character that code page 932 does not have.
bool IsShiftJisText(QStringView text);

/// The text with every character that code page 932 has under another code ("〜" U+301C for "～"
/// U+FF5E, "−" U+2212 for "－"), or only as a composed one ("か" and U+3099 for "が"), put into the
/// table's own. The others stay, also those that the table does not have.
QString ToCodePage(const QString &text);
