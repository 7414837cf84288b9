// A pattern (the first line) and a text. The matching function agrees with one that tries every
// split, and so does a LIKE that runs in the engine, whichever form it was translated to.

#include "FuzzDatabase.h"
#include "Fuzzing.h"

#include "data/dao/SqlFunctions.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

/// The least and the greatest character of a range, letters as small ones.
using Range = std::pair<QChar, QChar>;

struct Element
{
    bool isStar = false;
    bool isNegated = false;
    std::vector<Range> ranges; ///< one character of these

    bool Fits(QChar c) const
    {
        const bool isIn = std::any_of(ranges.begin(), ranges.end(), [c](const Range &range) {
            return range.first <= c && c <= range.second;
        });
        return isIn != isNegated;
    }
};

QString SmallLetters(QString text)
{
    for (QChar &c : text)
        if (c.unicode() < 0x80)
            c = c.toLower();
    return text;
}

Element ListElement(QString list)
{
    Element element;
    element.isNegated = list.size() > 1 && list[0] == '!';
    if (element.isNegated)
        list.remove(0, 1);
    while (!list.isEmpty()) {
        const bool isRange = list.size() >= 3 && list[1] == '-';
        element.ranges.push_back({list[0], list[isRange ? 2 : 0]});
        list.remove(0, isRange ? 3 : 1);
    }
    return element;
}

/// The pattern's elements; one that nothing fits for a list that is not closed.
std::vector<Element> ElementsOf(const QString &pattern)
{
    std::vector<Element> elements;
    for (qsizetype at = 0; at < pattern.size(); ++at) {
        const QChar c = pattern[at];
        if (c == '*') {
            elements.push_back({true, false, {}});
        } else if (c == '?') {
            elements.push_back({false, true, {}});
        } else if (c == '#') {
            elements.push_back({false, false, {{'0', '9'}}});
        } else if (c == '[') {
            const qsizetype close = pattern.indexOf(']', at);
            if (close < 0)
                return {Element()};
            elements.push_back(ListElement(pattern.mid(at + 1, close - at - 1)));
            at = close;
        } else {
            elements.push_back({false, false, {{c, c}}});
        }
    }
    return elements;
}

bool FitsByDefinition(const QString &text, const std::vector<Element> &elements)
{
    // fits[n]: the elements so far fit the first n characters.
    std::vector<bool> fits(size_t(text.size()) + 1);
    fits[0] = true;
    for (const Element &element : elements) {
        std::vector<bool> next(fits.size());
        for (size_t n = 0; n < fits.size(); ++n) {
            if (element.isStar)
                next[n] = fits[n] || (n > 0 && next[n - 1]);
            else
                next[n] = n > 0 && fits[n - 1] && element.Fits(text[qsizetype(n) - 1]);
        }
        fits = next;
    }
    return fits.back();
}

QString Quoted(QString text)
{
    return '\'' + text.replace("'", "''") + '\'';
}

double Asked(const QString &condition)
{
    return FuzzDatabase().OpenRecordset("SELECT " + condition)->Number(0);
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString input = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString pattern = input.section('\n', 0, 0);
    const QString text = input.section('\n', 1);
    const bool fits = FitsByDefinition(SmallLetters(text), ElementsOf(SmallLetters(pattern)));
    Require(FitsLikePattern(text, pattern) == fits, "the function matches as defined", input);
    if (input.contains(QChar(0)))
        return 0; // no statement can hold it
    Require(Asked(Quoted(text) + " LIKE " + Quoted(pattern)) == double(fits),
            "LIKE matches as defined", input);
    Require(Asked(Quoted(text) + " NOT LIKE " + Quoted(pattern)) == double(!fits),
            "NOT LIKE is the opposite", input);
    return 0;
}
