#include "util/FieldInput.h"

#include "platform/ShiftJis.h"
#include "util/VbText.h"
#include "util/bDate.h"
#include "util/bValue.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>
#include <QValidator>
#include <algorithm>
#include <functional>

namespace FieldInput {

QString AllowedOnly(const QString &text, const QString &allowList)
{
    QString allowed;
    for (const QChar c : text)
        if (allowList.contains(c, Qt::CaseInsensitive))
            allowed += c;
    return allowed;
}

QString CutToBytes(const QString &text, int maximum)
{
    QString cut = text;
    while (ShiftJisLength(cut) > maximum)
        cut.chop(1);
    return cut;
}

bool IsHalfWidth(QStringView text)
{
    return ShiftJisLength(text) == text.size() && IsShiftJisText(text);
}

QString CodeText(const QString &text, int maximum, const QString &allowList)
{
    QString code;
    for (const QChar c : text)
        if (IsHalfWidth(QStringView(&c, 1)))
            code += c;
    code = CutToBytes(code, maximum);
    return Trim(allowList).isEmpty() ? code : AllowedOnly(code, allowList);
}

namespace {

/// One rule on one box. `keep` gives what the box keeps of a text that would stand in it; nothing
/// refuses the change that led to it.
class Rule : public QValidator
{
public:
    using Keep = std::function<std::optional<QString>(const QString &text)>;
    using IsKey = std::function<bool(QChar key)>;

    Rule(QLineEdit &box, IsKey isKey, Keep keep, bool beeps)
        : QValidator(&box)
        , m_box(box)
        , m_isKey(std::move(isKey))
        , m_keep(std::move(keep))
        , m_beeps(beeps)
    {
        box.setValidator(this);
        box.installEventFilter(this);
    }

    State validate(QString &input, int &position) const override
    {
        const auto kept = m_keep(input);
        if (!kept)
            return Invalid;
        input = *kept;
        position = std::min(position, int(input.size()));
        return Acceptable;
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool isCommand = key->modifiers() & (Qt::ControlModifier | Qt::AltModifier);
        const QString typed = key->text();
        if (isCommand || typed.isEmpty() || !typed[0].isPrint())
            return false;
        // A typed key is taken whole or not at all; it never pushes another character out.
        const bool isAccepted = std::all_of(typed.begin(), typed.end(), m_isKey)
                                && m_keep(TextWith(typed)) == TextWith(typed);
        if (!isAccepted && m_beeps)
            QApplication::beep();
        return !isAccepted;
    }

private:
    QString TextWith(const QString &typed) const
    {
        QString text = m_box.text();
        if (m_box.hasSelectedText())
            return text.replace(m_box.selectionStart(), m_box.selectionLength(), typed);
        return text.insert(m_box.cursorPosition(), typed);
    }

    QLineEdit &m_box;
    IsKey m_isKey;
    Keep m_keep;
    bool m_beeps;
};

bool IsDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool IsAnyKey(QChar)
{
    return true;
}

} // namespace

void AttachCode(QLineEdit &box, const QString &allowList)
{
    new Rule(
        box, IsAnyKey,
        [&box, allowList](const QString &text) -> std::optional<QString> {
            if (!IsHalfWidth(text))
                return std::nullopt;
            return CodeText(text, box.maxLength(), allowList);
        },
        true);
}

void AttachByteLength(QLineEdit &box)
{
    new Rule(
        box, IsAnyKey, [&box](const QString &text) { return CutToBytes(text, box.maxLength()); },
        true);
}

void AttachDate(QLineEdit &box, int kind)
{
    const int length = kind == 0 ? 4 : 6;
    new Rule(
        box, IsDigit,
        [length, kind](const QString &text) -> std::optional<QString> {
            const QString typed = text.contains('/') ? UnformatDateText(text, kind) : text;
            const bool isTyped
                = typed.size() <= length && std::all_of(typed.begin(), typed.end(), IsDigit);
            return isTyped ? std::optional(text) : std::nullopt;
        },
        false);
}

void AttachNumber(QLineEdit &box, const QString &spec)
{
    const DigitCounts counts = ParseDigitSpec(spec).value_or(DigitCounts());
    const QRegularExpression number(QString("^[+-]?[0-9]{0,%1}(\\.[0-9]{0,%2})?$")
                                        .arg(counts.integerDigits)
                                        .arg(counts.decimals));
    new Rule(
        box, [](QChar c) { return IsDigit(c) || c == '.' || c == '+' || c == '-'; },
        [number](const QString &text) -> std::optional<QString> {
            const QString digits = QString(text).remove(',').remove(' ');
            return number.match(digits).hasMatch() ? std::optional(text) : std::nullopt;
        },
        false);
}

} // namespace FieldInput
