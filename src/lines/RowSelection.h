#pragma once

#include <utility>
#include <vector>

/// Rows of the list that the operator has selected. Rows count from 1.
class RowSelection
{
public:
    using Range = std::pair<int, int>; ///< first and last

    RowSelection() = default;

    /// Takes ranges in any order; they may overlap.
    explicit RowSelection(std::vector<Range> ranges);

    bool Contains(int row) const;
    int Count() const;
    bool IsEmpty() const { return m_ranges.empty(); }
    int First() const { return m_ranges.front().first; } ///< of a selection that is not empty

    /// In order, none touching another.
    const std::vector<Range> &Ranges() const { return m_ranges; }

    /// The selection less these rows (in any order).
    RowSelection Without(std::vector<int> rows) const;

    /// Runs `visit` for every row in order, until it returns False.
    template <typename Visit>
    void ForEach(Visit &&visit) const
    {
        for (const auto &[first, last] : m_ranges)
            for (int row = first; row <= last; ++row)
                if (!visit(row))
                    return;
    }

private:
    std::vector<Range> m_ranges;
};
