#include "lines/LineList.h"

#include <algorithm>

bool LineList::Load(std::unique_ptr<Recordset> rows, const std::function<bool()> &step)
{
    Clear();
    QSet<QString> dates;
    const int count = rows->RecordCount();
    m_lines.reserve(size_t(count));
    for (int row = 0; row < count; ++row, rows->MoveNext()) {
        if (!step()) {
            Clear();
            return false;
        }
        m_lines.emplace_back(*rows, row, dates);
        m_lines.back().SetId(++m_lastId);
    }
    m_rows.push_back(std::move(rows));
    return true;
}

std::vector<int> LineList::InsertBelow(std::vector<Below> lines)
{
    std::stable_sort(lines.begin(), lines.end(),
                     [](const Below &a, const Below &b) { return a.row < b.row; });
    for (Below &below : lines)
        if (below.line.Id() == 0)
            below.line.SetId(++m_lastId);
    std::vector<int> rows;
    for (const Below &below : lines)
        rows.push_back(below.row + 1 + int(rows.size()));
    if (lines.size() == 1) {
        m_lines.insert(m_lines.begin() + lines[0].row, lines[0].line);
        if (m_isIndexed)
            m_index.Insert(lines[0].line.Key().accNo, rows[0]);
        return rows;
    }
    std::vector<Line> merged;
    merged.reserve(m_lines.size() + lines.size());
    auto next = lines.begin();
    for (int row = 0; row <= Count(); ++row) {
        if (row > 0)
            merged.push_back(std::move(At(row)));
        for (; next != lines.end() && next->row == row; ++next)
            merged.push_back(std::move(next->line));
    }
    m_lines = std::move(merged);
    m_isIndexed = false;
    return rows;
}

void LineList::Remove(std::vector<int> rows)
{
    if (rows.size() == 1) {
        if (m_isIndexed)
            m_index.Remove(At(rows[0]).Key().accNo, rows[0]);
        m_lines.erase(m_lines.begin() + (rows[0] - 1));
        return;
    }
    if (rows.empty())
        return;
    std::sort(rows.begin(), rows.end());
    auto gone = rows.begin();
    int kept = 0;
    for (int row = 1; row <= Count(); ++row) {
        if (gone != rows.end() && *gone == row)
            ++gone;
        else if (++kept < row)
            At(kept) = std::move(At(row));
    }
    m_lines.erase(m_lines.begin() + kept, m_lines.end());
    m_isIndexed = false;
}

std::vector<int> LineList::RowsById() const
{
    std::vector<int> rows(size_t(m_lastId) + 1);
    for (int row = 1; row <= Count(); ++row)
        rows[At(row).Id()] = row;
    return rows;
}

void LineList::Reread(int row, const LineList &readings, const Line &reading, bool keepsAnswer)
{
    for (const auto &rows : readings.m_rows)
        if (std::find(m_rows.begin(), m_rows.end(), rows) == m_rows.end())
            m_rows.push_back(rows);
    Line &line = At(row);
    if (keepsAnswer)
        line.KeepAnswerOver(reading);
    else
        line.Reread(reading);
    for (const int other : RowsOfOrder(line.Key().accNo))
        if (!At(other).IsStored() && At(other).Source() == line.Key())
            At(other).RereadSource(reading);
}

void LineList::ForgetSumErrors(qint64 accNo)
{
    for (const int row : RowsOfOrder(accNo))
        if (const LineError error = At(row).Error();
            error == LineError::NoSum || error == LineError::MoreThanOpen)
            At(row).SetError(LineError::None);
}

std::vector<int> LineList::RowsOfOrder(qint64 accNo) const
{
    if (!m_isIndexed) {
        std::vector<qint64> accNos;
        accNos.reserve(m_lines.size());
        for (const Line &line : m_lines)
            accNos.push_back(line.Key().accNo);
        m_index.Build(accNos);
        m_isIndexed = true;
    }
    return m_index.Rows(accNo);
}

int LineList::RowOf(const LineKey &key) const
{
    for (const int row : RowsOfOrder(key.accNo))
        if (At(row).IsStored() && At(row).Key() == key)
            return row;
    return 0;
}

int LineList::UnregisteredCount() const
{
    return int(std::ranges::count_if(m_lines, &Line::IsUnregistered));
}
