#include "util/VbText.h"

#include <QLocale>
#include <cmath>

QString RTrim(QStringView text)
{
    while (text.endsWith(u' '))
        text.chop(1);
    return text.toString();
}

QString Trim(QStringView text)
{
    while (text.startsWith(u' '))
        text = text.mid(1);
    return RTrim(text);
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
    while (at < text.size() && IsDigit(text[at]))
        ++at;
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
