#pragma once

#include <QString>

class QLineEdit;

/// The typing rules of text boxes and grid cells. Attached to a box they hold for everything that
/// the operator brings in: keys, paste, drag and drop, and text that an input method commits. A
/// text that the program shows (setText) stays exactly as it is, however long, and is what text()
/// gives back: a box's maxLength, taken over when the rule is attached, limits the operator alone.
/// Lengths are bytes of code page 932: a full-width character counts 2, a half-width one 1.
///
/// What is brought in is first put into the code page's own characters. A text with a character
/// that the page does not have, or a NUL, is refused whole. Line breaks and other control
/// characters around it are left out, within it they become a blank. What has no room is cut off;
/// what stood in the box never gives way.
///
/// A text that is refused or cut is told by a beep and a word, which goes up from the box as a
/// QStatusTipEvent; an empty one takes the word back with the next key that is taken or when the
/// box is left. Form shows it.
namespace FieldInput {

/// The text cut from the right until it has at most this many bytes.
QString CutToBytes(const QString &text, int maximum);

/// Half-width characters only, at most the box's maxLength() bytes; no input method.
void AttachCode(QLineEdit &box);

/// Any characters of the code page, at most the box's maxLength() bytes.
void AttachByteLength(QLineEdit &box);

/// Digits, up to the six of a typed date; no input method. A key that is none does nothing. A date
/// that is pasted or dropped whole, in full width, with slashes or its century too, takes the
/// place of all that stands in the box.
void AttachDate(QLineEdit &box);

/// A sign at the start, digits and one "." within the digit spec; no input method. A key that does
/// not fit does nothing. A number that is pasted or dropped may be in full width or have its
/// thousands separated.
void AttachNumber(QLineEdit &box, const QString &spec);

} // namespace FieldInput
