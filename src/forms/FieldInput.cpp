#include "forms/FieldInput.h"

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

QString InCodePage(const QString &text)
{
    if (IsShiftJisText(text))
        return text;
    QString inside;
    for (const QChar c : text)
        if (IsShiftJisText(QStringView(&c, 1)))
            inside += c;
    return inside;
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

/// A text to paste may bring line breaks and tabs along, from a copied list row say.
QString WithoutControls(QString text)
{
    return text.removeIf([](QChar c) { return c < u' '; });
}

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
        const auto kept = m_keep(WithoutControls(input));
        if (!kept)
            return Invalid;
        position = std::min(int(WithoutControls(input.left(position)).size()), int(kept->size()));
        input = *kept;
        return Acceptable;
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress)
            return !TakesKey(static_cast<const QKeyEvent &>(*event));
        if (event->type() == QEvent::InputMethod)
            return FilterCommit(static_cast<const QInputMethodEvent &>(*event));
        return false;
    }

private:
    /// Whether the box takes this as typed: whole, and pushing no other character out.
    bool TakesTyped(const QString &typed) const
    {
        return std::all_of(typed.begin(), typed.end(), m_isKey)
               && m_keep(TextWith(typed)) == TextWith(typed);
    }

    bool TakesKey(const QKeyEvent &key) const
    {
        const bool isCommand = key.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
        const QString typed = key.text();
        if (isCommand || typed.isEmpty() || !typed[0].isPrint() || TakesTyped(typed))
            return true;
        Beep();
        return false;
    }

    /// What an input method commits counts as so many keys: those refused are left out.
    bool FilterCommit(const QInputMethodEvent &event) const
    {
        QString taken;
        for (const QChar c : event.commitString())
            if (TakesTyped(taken + c))
                taken += c;
        if (taken == event.commitString())
            return false;
        Beep();
        QInputMethodEvent rest(event.preeditString(), event.attributes());
        rest.setCommitString(taken, event.replacementStart(), event.replacementLength());
        QCoreApplication::sendEvent(&m_box, &rest);
        return true;
    }

    void Beep() const
    {
        if (m_beeps)
            QApplication::beep();
    }

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
    box.setInputMethodHints(Qt::ImhLatinOnly);
    new Rule(
        box, IsAnyKey,
        [&box, allowList](const QString &text) -> std::optional<QString> {
            if (!IsHalfWidth(text))
                return std::nullopt;
            return CodeText(text, box.maxLength(), allowList);
        },
        true);
    // A code that comes from a table is no better than a typed one.
    QObject::connect(&box, &QLineEdit::textChanged, &box, [&box, allowList] {
        const QString code = CodeText(box.text(), box.maxLength(), allowList);
        if (code == box.text())
            return;
        const int caret = box.cursorPosition();
        box.setText(code);
        box.setCursorPosition(caret);
    });
}

void AttachByteLength(QLineEdit &box)
{
    new Rule(
        box, IsAnyKey,
        [&box](const QString &text) { return CutToBytes(InCodePage(text), box.maxLength()); },
        true);
}

void AttachDate(QLineEdit &box, int kind)
{
    box.setInputMethodHints(Qt::ImhDigitsOnly);
    const int length = kind == 0 ? 4 : 6;
    new Rule(
        box, IsDigit,
        [length, kind](const QString &text) -> std::optional<QString> {
            const QString typed = UnformatDateText(text, kind);
            const bool isShown = typed != text && FormatDateText(typed, kind) == text;
            const QString digits = isShown ? typed : text;
            const bool isDate
                = digits.size() <= length && std::all_of(digits.begin(), digits.end(), IsDigit);
            return isDate ? std::optional(text) : std::nullopt;
        },
        false);
}

void AttachNumber(QLineEdit &box, const QString &spec)
{
    box.setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    const DigitCounts counts = ParseDigitSpec(spec).value_or(DigitCounts());
    const QRegularExpression number(QString("^[+-]?[0-9]{0,%1}(\\.[0-9]{0,%2})?$")
                                        .arg(counts.integerDigits)
                                        .arg(counts.decimals));
    new Rule(
        box, [](QChar c) { return IsDigit(c) || c == '.' || c == '+' || c == '-'; },
        [number](const QString &text) -> std::optional<QString> {
            const QString digits = Trim(text).remove(',');
            return number.match(digits).hasMatch() ? std::optional(text) : std::nullopt;
        },
        false);
}

} // namespace FieldInput
