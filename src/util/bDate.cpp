#include "util/bDate.h"

#include "platform/Clock.h"
#include "util/VbText.h"

#include <QDate>
#include <algorithm>

QString FormatDateText(const QString &text, int kind)
{
    static constexpr struct
    {
        int fullLength; ///< with a two-digit day; one shorter with a one-digit day
        int yearStart;  ///< where the two shown digits of the year stand; -1: no year is shown
        int monthStart;
    } forms[] = {{4, -1, 0}, {6, 0, 2}, {6, -1, 2}, {8, 2, 4}};

    if (kind < 0 || kind > 3)
        return text;
    const auto &form = forms[kind];
    if (text.size() != form.fullLength && text.size() != form.fullLength - 1)
        return text;
    const QString day = text.size() == form.fullLength ? text.right(2) : '0' + text.right(1);
    const QString monthAndDay = text.mid(form.monthStart, 2) + '/' + day;
    return form.yearStart < 0 ? monthAndDay : text.mid(form.yearStart, 2) + '/' + monthAndDay;
}

QString UnformatDateText(const QString &text, int kind)
{
    const qsizetype length = text.size();
    if ((kind == 0 || kind == 2) && length == 5)
        return text.left(2) + text.right(2);
    if ((kind == 1 || kind == 3) && length == 8)
        return StripDateSlashes(text);
    if ((kind == 2 && length == 4) || (kind == 3 && length == 6))
        return AddCentury(text);
    return text;
}

QString StripDateSlashes(const QString &text)
{
    if (text.size() != 8)
        return text;
    const QChar digits[] = {text[0], text[1], text[3], text[4], text[6], text[7]};
    return QString(digits, std::size(digits));
}

QString AddCentury(const QString &text)
{
    const QString trimmed = Trim(text);
    if (trimmed.size() < 2)
        return {};
    return (Val(QStringView(trimmed).left(2)) <= 50 ? "20" : "19") + trimmed;
}

QString DropCentury(const QString &text)
{
    return Trim(text).size() >= 2 ? text.mid(2) : QString();
}

bool IsValidDate(const QString &text)
{
    if (text.size() != 8)
        return false;
    const int year = IntVal(QStringView(text).left(4));
    return year >= 1900 && year <= 3000
           && QDate::isValid(year, IntVal(QStringView(text).mid(4, 2)),
                             IntVal(QStringView(text).mid(6, 2)));
}

bool IsTypedDate(const QString &typed)
{
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    return typed.size() == 6 && std::all_of(typed.begin(), typed.end(), isDigit)
           && IsValidDate(AddCentury(typed));
}

bool IsTypedOrShownDate(const QString &text)
{
    const QString typed = StripDateSlashes(text);
    return IsTypedDate(typed) && (typed == text || FormatDateText(typed, 1) == text);
}

QString StoredDate(const QString &text)
{
    return AddCentury(UnformatDateText(text, 1));
}

QString ShownDate(const QString &stored)
{
    if (stored.size() == 8 && Trimmed(stored).size() >= 2) {
        const QChar shown[]
            = {stored[2], stored[3], u'/', stored[4], stored[5], u'/', stored[6], stored[7]};
        return QString(shown, std::size(shown));
    }
    return FormatDateText(DropCentury(stored), 1);
}

QString DateBefore(const QString &stored, int days)
{
    if (!IsValidDate(stored))
        return {};
    const QDate date(IntVal(QStringView(stored).left(4)), IntVal(QStringView(stored).mid(4, 2)),
                     IntVal(QStringView(stored).mid(6, 2)));
    return date.addDays(-days).toString("yyyyMMdd");
}

QString NowDateText()
{
    return Now().toString("yy/MM/dd");
}

QString NowTimeText()
{
    return Now().toString("HH:mm:ss");
}
