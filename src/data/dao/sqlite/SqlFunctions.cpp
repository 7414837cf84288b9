#include "data/dao/sqlite/SqlFunctions.h"

#include <sqlite3.h>

namespace {

char16_t Folded(QChar c)
{
    const char16_t unit = c.unicode();
    return unit >= u'A' && unit <= u'Z' ? char16_t(unit + 32) : unit;
}

/// Whether `c` is in the list between the brackets.
bool IsInList(QChar c, QStringView list)
{
    const bool isNegated = list.size() > 1 && list.front() == u'!';
    if (isNegated)
        list = list.mid(1);
    bool isFound = false;
    for (qsizetype at = 0; at < list.size() && !isFound; ++at) {
        if (at + 2 < list.size() && list[at + 1] == u'-') {
            isFound = Folded(c) >= Folded(list[at]) && Folded(c) <= Folded(list[at + 2]);
            at += 2;
        } else {
            isFound = Folded(c) == Folded(list[at]);
        }
    }
    return isFound != isNegated;
}

/// Matches one pattern element against one character; returns its length, 0 when it does not fit.
qsizetype ElementLength(QChar c, QStringView pattern)
{
    switch (pattern.front().unicode()) {
    case u'?':
        return 1;
    case u'#':
        return c >= u'0' && c <= u'9' ? 1 : 0;
    case u'[': {
        const qsizetype close = pattern.indexOf(u']', 1);
        return close > 0 && IsInList(c, pattern.mid(1, close - 1)) ? close + 1 : 0;
    }
    default:
        return Folded(c) == Folded(pattern.front()) ? 1 : 0;
    }
}

QString ArgumentText(sqlite3_value *value)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_value_text(value)),
                             sqlite3_value_bytes(value));
}

bool AnyNull(int count, sqlite3_value **values)
{
    for (int at = 0; at < count; ++at)
        if (sqlite3_value_type(values[at]) == SQLITE_NULL)
            return true;
    return false;
}

void LikePattern(sqlite3_context *context, int count, sqlite3_value **values)
{
    if (!AnyNull(count, values)) // a null fits neither way: the result stays null
        sqlite3_result_int(context,
                           FitsLikePattern(ArgumentText(values[1]), ArgumentText(values[0])));
}

void LeftText(sqlite3_context *context, int count, sqlite3_value **values)
{
    if (AnyNull(count, values))
        return;
    const QByteArray left = ArgumentText(values[0]).left(sqlite3_value_int(values[1])).toUtf8();
    sqlite3_result_text(context, left.data(), int(left.size()), SQLITE_TRANSIENT);
}

} // namespace

bool FitsLikePattern(QStringView text, QStringView pattern)
{
    // Where to go on when a "*" has to take one more character.
    qsizetype starPattern = -1;
    qsizetype starText = 0;
    qsizetype atText = 0;
    qsizetype atPattern = 0;
    while (atText < text.size()) {
        if (atPattern < pattern.size() && pattern[atPattern] == u'*') {
            starPattern = ++atPattern;
            starText = atText;
            continue;
        }
        const qsizetype length
            = atPattern < pattern.size() ? ElementLength(text[atText], pattern.mid(atPattern)) : 0;
        if (length > 0) {
            atPattern += length;
            ++atText;
        } else if (starPattern >= 0) {
            atPattern = starPattern;
            atText = ++starText;
        } else {
            return false;
        }
    }
    while (atPattern < pattern.size() && pattern[atPattern] == u'*')
        ++atPattern;
    return atPattern == pattern.size();
}

void AddSqlFunctions(sqlite3 *connection)
{
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    sqlite3_create_function(connection, "like_pattern", 2, flags, nullptr, LikePattern, nullptr,
                            nullptr);
    sqlite3_create_function(connection, "left_text", 2, flags, nullptr, LeftText, nullptr, nullptr);
}
