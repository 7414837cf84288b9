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
    }
    m_rows.push_back(std::move(rows));
    return true;
}

void LineList::InsertBelow(int row, const Line &line)
{
    const Line copy = line; // it may be one of these lines
    m_lines.insert(m_lines.begin() + row, copy);
    if (m_isIndexed)
        m_index.Insert(copy.Key().accNo, row + 1);
}

void LineList::Remove(int row)
{
    if (m_isIndexed)
        m_index.Remove(At(row).Key().accNo, row);
    m_lines.erase(m_lines.begin() + (row - 1));
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
    return int(std::count_if(m_lines.begin(), m_lines.end(), [](const Line &line) {
        return !line.IsStored() || line.IsChanged();
    }));
}
