#include "forms/DateField.h"

#include "util/bDate.h"

#include <QLineEdit>

void FormatDateField(QLineEdit &box, int kind)
{
    box.setText(FormatDateText(box.text(), kind));
}

void UnformatDateField(QLineEdit &box, int kind)
{
    box.setText(UnformatDateText(box.text(), kind));
}
