#include "grid/CellInput.h"

#include "forms/FieldInput.h"
#include "messages/bMessage.h"
#include "util/VbText.h"
#include "util/bDate.h"
#include "util/bValue.h"

void DateCellInput::Prepare(QLineEdit &editor) const
{
    FieldInput::AttachDate(editor);
}

bool DateCellInput::Accepts(const QString &typed) const
{
    const QString date = Trim(typed);
    if (date.isEmpty() || IsTypedOrShownDate(date))
        return true;
    ShowMessage(Message::WrongDate);
    return false;
}

void QuantityCellInput::Prepare(QLineEdit &editor) const
{
    FieldInput::AttachNumber(editor, DigitSpec::Quantity);
}

bool QuantityCellInput::Accepts(const QString &typed) const
{
    if (IsNumberInSpec(Trim(typed), DigitSpec::Quantity))
        return true;
    ShowMessage(Message::WrongNumber);
    return false;
}
