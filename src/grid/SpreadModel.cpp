#include "grid/SpreadModel.h"

#include <algorithm>

void SpreadModel::SetColumnCount(int count)
{
    beginResetModel();
    m_headings.resize(size_t(count));
    m_alignments.resize(size_t(count), Qt::AlignLeft | Qt::AlignTop);
    m_styles.assign(1, RowStyle(size_t(count)));
    for (Row &row : m_rows)
        row.style = 0;
    endResetModel();
}

void SpreadModel::SetRowCount(int count)
{
    if (count > RowCount()) {
        m_rows.resize(size_t(count));
        if (m_isNotifying)
            Announce();
    } else if (count < RowCount()) {
        Announce();
        beginRemoveRows({}, count, RowCount() - 1);
        m_rows.resize(size_t(count));
        m_announcedRows = count;
        endRemoveRows();
    }
}

void SpreadModel::Announce()
{
    if (m_announcedRows == RowCount())
        return;
    beginInsertRows({}, m_announcedRows, RowCount() - 1);
    m_announcedRows = RowCount();
    endInsertRows();
}

void SpreadModel::InsertRow(int row)
{
    // A last row that the views do not know of yet falls off without their notice.
    if (m_announcedRows == RowCount())
        SetRowCount(RowCount() - 1);
    else
        m_rows.pop_back();
    const bool isKnown = row <= m_announcedRows + 1;
    if (isKnown)
        beginInsertRows({}, row - 1, row - 1);
    m_rows.insert(m_rows.begin() + (row - 1), Row());
    if (isKnown) {
        ++m_announcedRows;
        endInsertRows();
    }
}

void SpreadModel::DeleteRows(int firstRow, int lastRow)
{
    Announce();
    const int count = RowCount();
    beginRemoveRows({}, firstRow - 1, lastRow - 1);
    m_rows.erase(m_rows.begin() + (firstRow - 1), m_rows.begin() + lastRow);
    m_announcedRows = RowCount();
    endRemoveRows();
    SetRowCount(count);
}

void SpreadModel::SetHeading(int column, const QString &text)
{
    m_headings[size_t(column - 1)] = text;
    emit headerDataChanged(Qt::Horizontal, column - 1, column - 1);
}

SpreadModel::TextRange SpreadModel::CellRange(const QString &text, int column)
{
    qsizetype start = 0;
    for (int before = 1; before < column; ++before) {
        const qsizetype tab = text.indexOf('\t', start);
        if (tab < 0)
            return {-1, 0};
        start = tab + 1;
    }
    const qsizetype end = text.indexOf('\t', start);
    return {start, (end < 0 ? text.size() : end) - start};
}

QString SpreadModel::Text(int column, int row) const
{
    const QString &text = RowText(row);
    const auto [start, length] = CellRange(text, column);
    return start < 0 ? QString() : text.mid(start, length);
}

QString SpreadModel::ShownText(int column, int row) const
{
    return Text(column, row).replace("\r\n", "\n").replace('\r', '\n');
}

void SpreadModel::SetText(int column, int row, const QString &text)
{
    QString &rowText = m_rows[size_t(row - 1)].text;
    auto [start, length] = CellRange(rowText, column);
    if (start < 0) {
        rowText += QString(column - 1 - rowText.count('\t'), '\t');
        start = rowText.size();
    }
    // A tab would end the cell.
    rowText.replace(start, length, QString(text).replace('\t', ' '));
    NotifyChanged(row, row);
}

void SpreadModel::SetRowText(int row, const QString &text)
{
    m_rows[size_t(row - 1)].text = text;
    NotifyChanged(row, row);
}

const CellStyle &SpreadModel::Style(int column, int row) const
{
    return m_styles[m_rows[size_t(row - 1)].style][size_t(column - 1)];
}

quint16 SpreadModel::StyleNumber(const RowStyle &style)
{
    const auto known = std::find(m_styles.begin(), m_styles.end(), style);
    if (known != m_styles.end())
        return quint16(known - m_styles.begin());
    m_styles.push_back(style);
    return quint16(m_styles.size() - 1);
}

void SpreadModel::SetNotifying(bool isNotifying)
{
    m_isNotifying = isNotifying;
    if (!isNotifying)
        return;
    Announce();
    if (m_firstChanged > 0)
        NotifyChanged(m_firstChanged, std::min(m_lastChanged, RowCount()));
    m_firstChanged = m_lastChanged = 0;
}

void SpreadModel::NotifyChanged(int firstRow, int lastRow)
{
    if (firstRow > lastRow)
        return;
    if (m_isNotifying) {
        emit dataChanged(index(firstRow - 1, 0), index(lastRow - 1, ColumnCount() - 1));
        return;
    }
    m_firstChanged = m_firstChanged == 0 ? firstRow : std::min(m_firstChanged, firstRow);
    m_lastChanged = std::max(m_lastChanged, lastRow);
}

int SpreadModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_announcedRows;
}

int SpreadModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount();
}

QVariant SpreadModel::data(const QModelIndex &index, int role) const
{
    const int column = index.column() + 1;
    const int row = index.row() + 1;
    switch (role) {
    case Qt::DisplayRole:
        return ShownText(column, row);
    case Qt::EditRole:
        return Text(column, row);
    case Qt::TextAlignmentRole:
        return int(Alignment(column));
    case Qt::ForegroundRole:
        if (const auto color = Style(column, row).foreColor)
            return QColor(*color);
        return {};
    case Qt::BackgroundRole:
        if (const auto color = Style(column, row).backColor)
            return QColor(*color);
        return {};
    default:
        return {};
    }
}

QVariant SpreadModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::DisplayRole && orientation == Qt::Horizontal)
        return Heading(section + 1).replace("\r\n", "\n").replace('\r', '\n');
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags SpreadModel::flags(const QModelIndex &) const
{
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}
