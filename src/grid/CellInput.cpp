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

QString DateCellInput::ToTyped(const QString &shown) const
{
    return UnformatDateText(shown, 1);
}

bool DateCellInput::ToShown(const QString &typed, QString &shown) const
{
    shown = Trim(typed);
    if (shown.isEmpty())
        return true;
    if (!IsTypedOrShownDate(shown)) {
        ShowMessage(Message::WrongDate);
        return false;
    }
    shown = FormatDateText(shown, 1);
    return true;
}

void QuantityCellInput::Prepare(QLineEdit &editor) const
{
    FieldInput::AttachNumber(editor, DigitSpec::Quantity);
}

QString QuantityCellInput::ToTyped(const QString &shown) const
{
    return Trim(shown).isEmpty() ? QString() : QuantityOf(shown).ToText();
}

bool QuantityCellInput::ToShown(const QString &typed, QString &shown) const
{
    const QString number = Trim(typed);
    if (!IsNumberInSpec(number, DigitSpec::Quantity)) {
        ShowMessage(Message::WrongNumber);
        return false;
    }
    shown = FormatQuantity(QuantityOf(number));
    return true;
}
