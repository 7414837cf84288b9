#pragma once

class QLineEdit;

/// FormatDateText and UnformatDateText on the text of a box, in place.
void FormatDateField(QLineEdit &box, int kind);
void UnformatDateField(QLineEdit &box, int kind);
