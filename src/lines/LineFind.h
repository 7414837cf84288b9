#pragma once

#include "lines/Line.h"

/// A text to look for in the lines: in order number, product code, name and section. Capitals and
/// small letters, half and full width are alike.
class LineFind
{
public:
    explicit LineFind(const QString &wanted);

    bool IsEmpty() const { return m_wanted.isEmpty(); }
    bool IsIn(const Line &line) const;

private:
    QString m_wanted;
};
