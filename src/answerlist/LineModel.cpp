#include "answerlist/LineModel.h"

#include "answerlist/ListColumns.h"
#include "grid/GridView.h"
#include "util/VbText.h"
#include "util/bDate.h"
#include "util/bValue.h"

#include <QApplication>
#include <QColor>
#include <QStyle>

namespace {

constexpr QRgb Silver = qRgb(0xC0, 0xC0, 0xC0); ///< shipped lines
constexpr QRgb Purple = qRgb(0x80, 0x00, 0x80); ///< lines of defective goods

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

/// The heading of a row whose line has an error.
QVariant ErrorMark(const QString &error, int role)
{
    switch (role) {
    case Qt::DecorationRole:
        return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        return error;
    default:
        return {};
    }
}

} // namespace

void LineModel::Empty()
{
    beginResetModel();
    m_shownRows = 0;
    endResetModel();
}

void LineModel::Filled()
{
    Empty();
    if (m_list.Count() == 0)
        return;
    beginInsertRows({}, 0, m_list.Count() - 1);
    m_shownRows = m_list.Count();
    endInsertRows();
}

void LineModel::Changed()
{
    if (m_shownRows == 0)
        return;
    emit dataChanged(index(0, 0), index(m_shownRows - 1, columnCount() - 1));
    emit headerDataChanged(Qt::Vertical, 0, m_shownRows - 1);
}

void LineModel::Remove(int row)
{
    beginRemoveRows({}, row - 1, row - 1);
    m_list.Remove(row);
    --m_shownRows;
    endRemoveRows();
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
    const Line &line = LineAt(index);
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
        return line.IsDefective() ? QColor(Purple) : QVariant();
    case GridView::MendRole:
        return line.Error() != LineError::None && index.column() + 1 == ColumnToMend(line.Error());
    default:
        return {};
    }
}

QVariant LineModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal)
        return role == Qt::DisplayRole ? QVariant(WithLineFeeds(ColumnAt(section).heading))
                                       : QVariant();
    const LineError error = m_list.At(section + 1).Error();
    if (error != LineError::None)
        if (const QVariant mark = ErrorMark(ErrorText(error), role); mark.isValid())
            return mark;
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags LineModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (ColumnAt(index.column()).typing != CellTyping::No && !LineAt(index).IsShipped())
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool LineModel::setData(const QModelIndex &index, const QVariant &typed, int role)
{
    if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable))
        return false;
    const int row = index.row() + 1;
    Line &line = m_list.At(row);
    const Answer before = line.Now();
    const QString text = Trim(typed.toString());
    if (ColumnAt(index.column()).typing == CellTyping::Quantity) {
        if (!IsNumberInSpec(text, DigitSpec::Quantity))
            return false;
        line.SetQuantity(QuantityOf(text));
        m_list.ForgetSumErrors(line.Key().accNo);
    } else {
        if (!text.isEmpty() && !IsTypedOrShownDate(text))
            return false;
        line.SetDate(StoredDate(text));
    }
    Changed();
    if (line.Now() == before)
        return false;
    emit Edited(row);
    return true;
}
