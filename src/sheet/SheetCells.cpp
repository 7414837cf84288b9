#include "sheet/SheetCells.h"

#include "util/VbText.h"
#include "util/bDate.h"
#include "util/bValue.h"

#include <QList>
#include <algorithm>

namespace {

constexpr char16_t FullWidthFirst = u'\uff01';
constexpr char16_t FullWidthLast = u'\uff5e';
constexpr char16_t FullWidthShift = u'\uff01' - u'!';
constexpr char16_t FullWidthBlank = u'\u3000';

QChar HalfWidth(QChar c)
{
    if (c == FullWidthBlank)
        return u' ';
    return c >= FullWidthFirst && c <= FullWidthLast ? QChar(c.unicode() - FullWidthShift) : c;
}

bool IsDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool AreDigits(QStringView text)
{
    return std::all_of(text.begin(), text.end(), IsDigit);
}

/// A time of midnight is what a program adds to a date.
QStringView WithoutMidnight(QStringView text)
{
    const auto end
        = std::find_if(text.begin(), text.end(), [](QChar c) { return c == u' ' || c == u'T'; });
    const QStringView time = text.sliced(end - text.begin());
    const bool isMidnight
        = time.size() > 4 && std::all_of(time.begin() + 1, time.end(), [](QChar c) {
              return c == u'0' || c == u':' || c == u'.';
          });
    return isMidnight ? text.left(end - text.begin()) : text;
}

/// The digits before the first of these characters; takes them and it off the text.
QStringView TakeNumber(QStringView &text, QChar separator)
{
    const qsizetype at = text.indexOf(separator);
    const QStringView number = at < 0 ? QStringView() : text.left(at);
    text = at < 0 ? QStringView() : text.sliced(at + 1);
    return number;
}

std::optional<QString> DateOf(QStringView year, QStringView month, QStringView day)
{
    const auto isOneOrTwo = [](QStringView number) {
        return (number.size() == 1 || number.size() == 2) && AreDigits(number);
    };
    if (year.size() != 4 || !AreDigits(year) || !isOneOrTwo(month) || !isOneOrTwo(day))
        return std::nullopt;
    const QString stored = year.toString() + month.toString().rightJustified(2, '0')
                           + day.toString().rightJustified(2, '0');
    return IsValidDate(stored) ? std::optional(stored) : std::nullopt;
}

} // namespace

QString PlainCell(QStringView cell)
{
    cell = cell.trimmed();
    QString plain;
    if (cell.size() >= 3 && cell.startsWith(u"=\"") && cell.endsWith(u'"')) {
        plain = cell.sliced(2).chopped(1).toString().replace("\"\"", "\"");
        plain = plain.trimmed();
    } else {
        plain = cell.toString();
    }
    const auto isFullWidth = [](QChar c) { return c >= FullWidthBlank; };
    if (std::any_of(plain.cbegin(), plain.cend(), isFullWidth)) {
        std::transform(plain.begin(), plain.end(), plain.begin(), HalfWidth);
        plain = plain.trimmed();
    }
    return plain;
}

bool IsSafeCell(const QString &text)
{
    const QChar first = text.isEmpty() ? QChar(u' ') : text.front();
    return first == u'*'
           || (first.unicode() >= 0x80 && first.isLetter() && HalfWidth(first) == first);
}

std::optional<Decimal> NumberOfCell(const QString &plain)
{
    constexpr qsizetype MostDigits = 18;
    const qsizetype point = plain.indexOf('.');
    const QStringView whole = QStringView(plain).left(point < 0 ? plain.size() : point);
    const QStringView decimals = point < 0 ? QStringView() : QStringView(plain).sliced(point + 1);
    if (whole.isEmpty() || whole.size() > MostDigits + MostDigits / 3
        || decimals.size() > MostDigits || !AreDigits(decimals))
        return std::nullopt;
    if (!AreDigits(whole)) {
        // Separators that stand elsewhere than at each third digit are not for thousands.
        const auto groups = whole.split(u',');
        for (const QStringView group : groups)
            if (!AreDigits(group) || group.isEmpty() || group.size() > 3
                || (group.size() < 3 && group.data() != groups.front().data()))
                return std::nullopt;
    }
    return Decimal::FromText(plain);
}

std::optional<Decimal> QuantityOfCell(const QString &plain)
{
    const auto number = NumberOfCell(plain);
    if (!number || !IsNumberInSpec(number->ToText(), DigitSpec::Quantity))
        return std::nullopt;
    return number;
}

std::optional<QString> DateOfCell(const QString &plain)
{
    if (AreDigits(plain)) {
        const QString stored = plain.size() == 6 ? AddCentury(plain) : plain;
        return IsValidDate(stored) ? std::optional(stored) : std::nullopt;
    }
    QStringView text = WithoutMidnight(plain);
    const qsizetype yearEnd = std::find_if_not(text.begin(), text.end(), IsDigit) - text.begin();
    if (yearEnd != 4 || yearEnd == text.size())
        return std::nullopt;
    const QChar separator = text[yearEnd];
    if (separator == u'年' && text.endsWith(u'日')) {
        text.chop(1);
        const QStringView year = TakeNumber(text, u'年');
        const QStringView month = TakeNumber(text, u'月');
        return DateOf(year, month, text);
    }
    if (separator != u'/' && separator != u'-')
        return std::nullopt;
    const QStringView year = TakeNumber(text, separator);
    const QStringView month = TakeNumber(text, separator);
    return DateOf(year, month, text);
}
