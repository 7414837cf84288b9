#include "util/VbText.h"

#include <QLocale>
#include <cmath>

namespace {

QStringView RTrimmed(QStringView text)
{
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

} // namespace

QStringView Trimmed(QStringView text)
{
    while (text.startsWith(u' '))
        text = text.sliced(1);
    return RTrimmed(text);
}

QString Trim(QStringView text)
{
    return Trimmed(text).toString();
}

QString Trim(QString text)
{
    return text.startsWith(u' ') ? Trim(QStringView(text)) : RTrim(std::move(text));
}

QString RTrim(QStringView text)
{
    return RTrimmed(text).toString();
}

QString RTrim(QString text)
{
    // Most texts end in no blank and need no copy.
    if (text.endsWith(u' '))
        text.truncate(RTrimmed(text).size());
    return text;
}

namespace {

bool IsDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

} // namespace

double Val(QStringView text)
{
    qsizetype at = 0;
    while (at < text.size() && text[at] == u' ')
        ++at;
    const qsizetype start = at;
    if (at < text.size() && (text[at] == u'+' || text[at] == u'-'))
        ++at;
    const qsizetype digitsStart = at;
    qint64 whole = 0;
    constexpr qsizetype ExactDigits = 15;
    for (; at < text.size() && IsDigit(text[at]); ++at)
        whole = at - digitsStart < ExactDigits ? whole * 10 + (text[at].unicode() - u'0') : whole;
    const bool isWhole = at - digitsStart <= ExactDigits && (at == text.size() || text[at] != u'.');
    if (isWhole)
        return start < digitsStart && text[start] == u'-' ? double(-whole) : double(whole);

    if (at < text.size() && text[at] == u'.')
        ++at;
    while (at < text.size() && IsDigit(text[at]))
        ++at;
    return QLocale::c().toDouble(text.mid(start, at - start));
}

int IntVal(QStringView text)
{
    const double value = std::nearbyint(Val(text));
    return value >= -32768 && value <= 32767 ? int(value) : 0;
}

QString FixedText(const QString &text, int length)
{
    return text.left(length).leftJustified(length, ' ');
}
