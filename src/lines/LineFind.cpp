#include "lines/LineFind.h"

#include <algorithm>

namespace {

/// Texts that look alike become the same.
QString Folded(const QString &text)
{
    const bool isPlain = std::ranges::all_of(text, [](QChar c) { return c < QChar(0x80); });
    return (isPlain ? text : text.normalized(QString::NormalizationForm_KC)).toCaseFolded();
}

} // namespace

LineFind::LineFind(const QString &wanted)
    : m_wanted(Folded(wanted.trimmed()))
{
}

bool LineFind::IsIn(const Line &line) const
{
    constexpr LineField fields[]
        = {LineField::OdrNo, LineField::HinCD, LineField::AccHinName, LineField::CustSecCD};
    return std::ranges::any_of(
        fields, [&](LineField field) { return Folded(line.Text(field)).contains(m_wanted); });
}
