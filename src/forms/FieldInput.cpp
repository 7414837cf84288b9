#include "forms/FieldInput.h"

#include "forms/InputRule.h"
#include "platform/ShiftJis.h"
#include "util/bDate.h"
#include "util/bValue.h"

#include <QLineEdit>
#include <QRegularExpression>
#include <algorithm>

namespace FieldInput {

QString CutToBytes(const QString &text, int maximum)
{
    QString cut = text.left(maximum); // no character has less than a byte
    while (ShiftJisLength(cut) > maximum)
        cut.chop(1);
    return cut;
}

namespace {

Verdict Refused(const QString &word)
{
    return {std::nullopt, word};
}

Verdict WithinBytes(const Brought &brought, int limit, const QString &limitWord)
{
    const int room = limit - ShiftJisLength(brought.before + brought.after);
    const QString fitting = CutToBytes(brought.text, std::max(room, 0));
    if (fitting == brought.text)
        return {fitting};
    if (fitting.isEmpty())
        return Refused("これ以上入力できません" + limitWord);
    return {fitting, "長すぎるため後ろを切りました" + limitWord};
}

QString InHalfWidth(QString text)
{
    constexpr char16_t Distance = u'！' - u'!';
    for (QChar &c : text) {
        if (c >= u'！' && c <= u'～')
            c = QChar(c.unicode() - Distance);
        else if (c == u'　')
            c = u' ';
    }
    return text;
}

/// The typed form of a date that a text spells out whole and can only mean; empty for any other
/// text.
QString SpelledDate(const QString &text)
{
    static const QRegularExpression forms[] = {
        QRegularExpression("^((?:[0-9]{2}){1,2})([0-9]{2})([0-9]{2})$"),
        QRegularExpression("^([0-9]{2})/([0-9]{2})/([0-9]{2})$"),
        QRegularExpression("^([0-9]{4})([/-])([0-9]{1,2})\\g2([0-9]{1,2})$"),
        QRegularExpression("^([0-9]{4})年([0-9]{1,2})月([0-9]{1,2})日$"),
    };
    for (const QRegularExpression &form : forms) {
        const auto match = form.match(text);
        if (!match.hasMatch())
            continue;
        const int last = match.lastCapturedIndex();
        const QString year = match.captured(1);
        const QString typed = year.right(2) + match.captured(last - 1).rightJustified(2, '0')
                              + match.captured(last).rightJustified(2, '0');
        const bool isSameYear = year.size() == 2 || AddCentury(typed).startsWith(year);
        return isSameYear && IsTypedDate(typed) ? typed : QString();
    }
    return {};
}

bool IsDigits(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

/// A key of a box for digits that it has no use for does nothing; anything else is told.
Verdict NotReadable(const Brought &brought, const QString &what)
{
    if (brought.isKey && brought.text.size() == 1 && brought.text[0].unicode() < 0x80)
        return {};
    constexpr int Shown = 20;
    const QString shown
        = brought.text.size() > Shown ? brought.text.left(Shown) + "…" : brought.text;
    return Refused("「" + shown + "」は" + what + "として読めません");
}

Verdict JudgeDate(const Brought &brought)
{
    constexpr int Length = 6;
    const QString text = InHalfWidth(brought.text).trimmed();
    const QString rest = brought.before + brought.after;
    if (brought.isKey && IsDigits(text))
        return rest.size() + text.size() <= Length ? Verdict{text} : Verdict();
    if (const QString date = SpelledDate(text); !date.isEmpty())
        return {date, {}, true};
    const QString result = brought.before + text + brought.after;
    const bool isPart
        = !text.isEmpty() && IsDigits(result) && (result.size() < Length || IsTypedDate(result));
    return isPart ? Verdict{text} : NotReadable(brought, "日付");
}

Verdict JudgeNumber(const Brought &brought, const QRegularExpression &number)
{
    static const QRegularExpression separated("^[+-]?[0-9]{1,3}(,[0-9]{3})+(\\.[0-9]*)?$");
    QString text = InHalfWidth(brought.text).trimmed();
    if (separated.match(text).hasMatch())
        text.remove(',');
    const bool fits
        = !text.isEmpty() && number.match(brought.before + text + brought.after).hasMatch();
    return fits ? Verdict{text} : NotReadable(brought, "数値");
}

/// For boxes whose every key counts as it is: with an input method left on, none would arrive.
void SwitchInputMethodOff(QLineEdit &box)
{
    box.setAttribute(Qt::WA_InputMethodEnabled, false);
}

} // namespace

void AttachCode(QLineEdit &box)
{
    SwitchInputMethodOff(box);
    new InputRule(box, [limit = box.maxLength()](const Brought &brought) {
        if (ShiftJisLength(brought.text) != brought.text.size())
            return Refused("半角文字で入力してください");
        return WithinBytes(brought, limit, QString("（半角 %1 文字まで）").arg(limit));
    });
}

void AttachByteLength(QLineEdit &box)
{
    new InputRule(box, [limit = box.maxLength()](const Brought &brought) {
        return WithinBytes(brought, limit,
                           QString("（半角 %1 文字、全角 %2 文字まで）").arg(limit).arg(limit / 2));
    });
}

void AttachDate(QLineEdit &box)
{
    SwitchInputMethodOff(box);
    new InputRule(box, JudgeDate);
}

void AttachNumber(QLineEdit &box, const QString &spec)
{
    SwitchInputMethodOff(box);
    const DigitCounts counts = ParseDigitSpec(spec).value_or(DigitCounts());
    const QRegularExpression number(QString("^[+-]?[0-9]{0,%1}(\\.[0-9]{0,%2})?$")
                                        .arg(counts.integerDigits)
                                        .arg(counts.decimals));
    new InputRule(box, [number](const Brought &brought) { return JudgeNumber(brought, number); });
}

} // namespace FieldInput
