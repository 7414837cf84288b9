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

/// True when every character is one byte long.
bool IsHalfWidth(QStringView text);

/// Half-width characters only, at most the box's maxLength() bytes. A text with a full-width
/// character is refused whole; a longer one is cut.
void AttachCode(QLineEdit &box, const QString &allowList = {});

/// Any characters, at most the box's maxLength() bytes; a key over that is refused with a beep.
void AttachByteLength(QLineEdit &box);

/// Digits only, up to the typed form of the date kind (4 for kind 0, 6 for kind 1). A date in the
/// shown form may be pasted.
void AttachDate(QLineEdit &box, int kind);

/// A sign at the start, digits and one "." within the digit spec.
void AttachNumber(QLineEdit &box, const QString &spec);

} // namespace FieldInput
