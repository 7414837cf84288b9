#pragma once

#include <QString>
#include <optional>

class QLineEdit;

/// The typing rules of text boxes and grid cells. Attached to a box they hold for everything that
/// the operator brings in: keys, paste, drag and drop, and text that an input method commits.
/// Lengths are bytes of code page 932: a full-width character counts 2, a half-width one 1.
namespace FieldInput {

/// The characters of the text, in order, that are in the allow-list (compared without case).
QString AllowedOnly(const QString &text, const QString &allowList);

/// The text cut from the right until it has at most this many bytes.
QString CutToBytes(const QString &text, int maximum);

/// What a code box keeps of a text: its one-byte characters, cut to `maximum` bytes, and of these,
/// when the allow-list is not blank, the allowed ones.
QString CodeText(const QString &text, int maximum, const QString &allowList = {});

/// The characters of the text that code page 932 has: no answer file or database of the suite can
/// hold another.
QString InCodePage(const QString &text);

/// True when every character is one byte long.
bool IsHalfWidth(QStringView text);

// Keys, and what an input method commits, are taken one by one or refused; the box's other text
// never gives way to them. A text pasted or dropped loses its control characters, is refused whole
// where a character of it does not belong, and is cut where it is too long. A text that the program
// itself shows is left alone, in a code box too as far as it is a code.

/// Half-width characters only, at most the box's maxLength() bytes; a key over that is refused with
/// a beep.
void AttachCode(QLineEdit &box, const QString &allowList = {});

/// Any characters of the code page, at most the box's maxLength() bytes; a key over that is refused
/// with a beep.
void AttachByteLength(QLineEdit &box);

/// Digits only, up to the typed form of the date kind (4 for kind 0, 6 for kind 1). A date in the
/// shown form may be pasted.
void AttachDate(QLineEdit &box, int kind);

/// A sign at the start, digits and one "." within the digit spec.
void AttachNumber(QLineEdit &box, const QString &spec);

} // namespace FieldInput
