#include "answerlist/LineModel.h"

#include "answerlist/ListColumns.h"
#include "answerlist/RowMark.h"
#include "grid/GridView.h"
#include "util/VbText.h"
#include "util/bDate.h"
#include "util/bValue.h"

#include <QApplication>
#include <QColor>
#include <QFont>
#include <algorithm>

namespace {

constexpr QRgb Silver = qRgb(0xC0, 0xC0, 0xC0); ///< shipped lines

const ListColumn &ColumnAt(int index)
{
    return ListColumns()[size_t(index)];
}

QString WithLineFeeds(QString text)
{
    return text.remove('\r');
}

/// What an edit begins with.
QString TypedText(const Line &line, CellTyping typing)
{
    switch (typing) {
    case CellTyping::Quantity:
        return line.Now().quantity.ToText();
    case CellTyping::Date:
        return UnformatDateText(ShownDate(line.Now().date), 1);
    case CellTyping::No:
        break;
    }
    return {};
}

/// The columns to type into stand out.
QVariant ColumnHeading(const ListColumn &column, int role)
{
    const bool isTyped = column.typing != CellTyping::No;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return WithLineFeeds(column.heading);
    case Qt::FontRole: {
        QFont font = QApplication::font("QHeaderView");
        font.setBold(isTyped);
        return font;
    }
    case Qt::DecorationRole:
        return isTyped ? MarkIcon(RowMark::Changed) : QVariant();
    case Qt::ToolTipRole:
        return isTyped ? QVariant("入力できる列です") : QVariant();
    default:
        return {};
    }
}

QString Today()
{
    return StoredDate(NowDateText());
}

} // namespace

void LineModel::Empty()
{
    beginResetModel();
    m_shownRows = 0;
    endResetModel();
}

const LineCounts &LineModel::Counts()
{
    if (const QString today = Today(); m_countedDay != today) {
        m_countedDay = today;
        m_counts = LineCounts::Of(m_edits.List(), today);
    }
    return m_counts;
}

void LineModel::Filled()
{
    Empty();
    const LineList &list = m_edits.List();
    m_countedDay.clear();
    m_lineRows.clear();
    if (m_showsOpenOnly)
        for (int row = 1; row <= list.Count(); ++row)
            if (list.At(row).IsOpen())
                m_lineRows.push_back(row);
    const int count = m_showsOpenOnly ? int(m_lineRows.size()) : list.Count();
    if (count == 0)
        return;
    beginInsertRows({}, 0, count - 1);
    m_shownRows = count;
    endInsertRows();
}

void LineModel::Changed()
{
    m_countedDay.clear();
    if (m_shownRows == 0)
        return;
    emit dataChanged(index(0, 0), index(m_shownRows - 1, columnCount() - 1));
    emit headerDataChanged(Qt::Vertical, 0, m_shownRows - 1);
}

void LineModel::ShowInserted(int lineRow, int shownRow)
{
    ++m_shownRows;
    m_counts.Add(m_edits.List().At(lineRow + 1), m_countedDay);
    if (!m_showsOpenOnly)
        return;
    const auto below = m_lineRows.begin() + shownRow;
    std::for_each(below, m_lineRows.end(), [](int &row) { ++row; });
    m_lineRows.insert(below, lineRow + 1);
}

void LineModel::Remove(int lineRow)
{
    const int shownRow = ShownRow(lineRow);
    beginRemoveRows({}, shownRow - 1, shownRow - 1);
    m_counts.Add(m_edits.List().At(lineRow), m_countedDay, -1);
    m_edits.Remove(lineRow);
    --m_shownRows;
    if (m_showsOpenOnly) {
        const auto below = m_lineRows.erase(m_lineRows.begin() + (shownRow - 1));
        std::for_each(below, m_lineRows.end(), [](int &row) { --row; });
    }
    endRemoveRows();
}

int LineModel::LineRow(int shownRow) const
{
    return m_showsOpenOnly && shownRow > 0 ? m_lineRows[size_t(shownRow - 1)] : shownRow;
}

int LineModel::ShownRow(int lineRow) const
{
    if (!m_showsOpenOnly)
        return lineRow;
    const auto found = std::ranges::lower_bound(m_lineRows, lineRow);
    return found != m_lineRows.end() && *found == lineRow ? int(found - m_lineRows.begin()) + 1 : 0;
}

int LineModel::ShownRowFrom(int lineRow) const
{
    if (!m_showsOpenOnly)
        return lineRow;
    const auto found = std::ranges::lower_bound(m_lineRows, lineRow);
    return std::min(int(found - m_lineRows.begin()) + 1, m_shownRows);
}

RowSelection LineModel::LineRows(const RowSelection &shownRows) const
{
    if (!m_showsOpenOnly)
        return shownRows;
    std::vector<RowSelection::Range> rows;
    shownRows.ForEach([&](int row) {
        rows.emplace_back(LineRow(row), LineRow(row));
        return true;
    });
    return RowSelection(std::move(rows));
}

RowSelection LineModel::ShownRows(const RowSelection &lineRows) const
{
    if (!m_showsOpenOnly)
        return lineRows;
    std::vector<RowSelection::Range> rows;
    for (int row = 1; row <= m_shownRows; ++row)
        if (lineRows.Contains(LineRow(row)))
            rows.emplace_back(row, row);
    return RowSelection(std::move(rows));
}

int LineModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_shownRows;
}

int LineModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ListColumns().size());
}

QVariant LineModel::data(const QModelIndex &index, int role) const
{
    const ListColumn &column = ColumnAt(index.column());
    const Line &line = LineAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return WithLineFeeds(column.text(line));
    case Qt::EditRole:
        return TypedText(line, column.typing);
    case Qt::TextAlignmentRole:
        return int((column.isNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignTop);
    case Qt::BackgroundRole:
        return line.IsShipped() ? QColor(Silver) : QVariant();
    case Qt::ForegroundRole:
        return line.IsDefective() ? QColor(DefectiveColor) : QVariant();
    case Qt::AccessibleTextRole:
        return column.spoken ? column.spoken(line) : WithLineFeeds(column.text(line));
    case Qt::AccessibleDescriptionRole:
        return SpokenState(line);
    case Qt::ToolTipRole:
        return column.tellsLastAnswer && m_answerTip && line.IsStored() ? m_answerTip(line.Key())
                                                                        : QVariant();
    case GridView::MendRole:
        return line.Error() != LineError::None && index.column() + 1 == ColumnToMend(line.Error());
    default:
        return {};
    }
}

QVariant LineModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal)
        return ColumnHeading(ColumnAt(section), role);
    const Line &line = LineAt(section);
    switch (role) {
    case Qt::DisplayRole:
        return LineRow(section + 1);
    case Qt::DecorationRole:
        return MarkIcon(MarkOf(line));
    case Qt::AccessibleTextRole:
        return Trim(QString("%1 %2").arg(LineRow(section + 1)).arg(MarkText(line)));
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        return MarkText(line);
    default:
        return QAbstractTableModel::headerData(section, orientation, role);
    }
}

Qt::ItemFlags LineModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (ColumnAt(index.column()).typing != CellTyping::No && !LineAt(index.row()).IsShipped())
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool LineModel::setData(const QModelIndex &index, const QVariant &typed, int role)
{
    if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable))
        return false;
    const int row = LineRow(index.row() + 1);
    const Line &line = m_edits.List().At(row);
    const Answer before = line.Now();
    const QString text = Trim(typed.toString());
    const bool isQuantity = ColumnAt(index.column()).typing == CellTyping::Quantity;
    if (isQuantity ? !IsNumberInSpec(text, DigitSpec::Quantity)
                   : !text.isEmpty() && !IsTypedOrShownDate(text))
        return false;
    m_counts.Add(line, m_countedDay, -1);
    if (isQuantity)
        m_edits.SetQuantity(row, QuantityOf(text));
    else
        m_edits.SetDate(row, StoredDate(text));
    m_counts.Add(line, m_countedDay);
    emit dataChanged(this->index(0, 0), this->index(m_shownRows - 1, columnCount() - 1));
    emit headerDataChanged(Qt::Vertical, 0, m_shownRows - 1);
    if (line.Now() == before)
        return false;
    emit Edited(row);
    return true;
}
