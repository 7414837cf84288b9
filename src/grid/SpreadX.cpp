#include "grid/SpreadX.h"

#include "grid/SpreadGrid.h"
#include "platform/MsgBox.h"
#include "util/VbText.h"

#include <QStringList>
#include <algorithm>
#include <utility>

namespace {

using Action = SpreadGrid::Action;

constexpr QChar LineSeparator('\r');

/// A setting of the grid changed for a while, then as it was.
class SettingScope
{
public:
    using Setter = void (SpreadGrid::*)(bool);

    SettingScope(SpreadGrid *grid, Setter set, bool before, bool now)
        : m_grid(grid)
        , m_set(set)
        , m_before(before)
    {
        (m_grid->*m_set)(now);
    }
    ~SettingScope() { (m_grid->*m_set)(m_before); }
    SettingScope(const SettingScope &) = delete;
    SettingScope &operator=(const SettingScope &) = delete;

private:
    SpreadGrid *m_grid;
    Setter m_set;
    bool m_before;
};

SettingScope BlockModeOn(SpreadGrid *grid)
{
    return {grid, &SpreadGrid::SetBlockMode, grid->BlockMode(), true};
}

SettingScope RedrawOff(SpreadGrid *grid)
{
    return {grid, &SpreadGrid::SetRedraw, grid->Redraw(), false};
}

/// Splits at tabs; what follows the last tab is split at ";".
QStringList SplitItems(const QString &text)
{
    QStringList items = text.split('\t');
    const QStringList rest = items.takeLast().split(';');
    return items + rest;
}

std::pair<int, int> Range(int a, int b, int whole)
{
    if (a < 0 || b < 0)
        return {1, whole};
    return {std::min(a, b), std::max(a, b)};
}

} // namespace

bool SpreadX::CheckComponent() const
{
    if (!m_grid)
        ShowError("コンポーネントが設定されていません");
    return m_grid != nullptr;
}

bool SpreadX::CheckRow(int row) const
{
    if (!CheckComponent())
        return false;
    if (!IsItemRow(row))
        ShowError("行指定エラー");
    return IsItemRow(row);
}

void SpreadX::ShowError(const QString &message)
{
    MsgBox(message, BoxStyle::Critical, QString("エラー"));
}

void SpreadX::Create(QObject *control)
{
    auto *grid = qobject_cast<SpreadGrid *>(control);
    if (!grid) {
        ShowError("コンポーネントの指定に誤りがあります");
        return;
    }
    m_grid = grid;
    m_lineHeight = grid->RowHeight();
}

void SpreadX::SetLineHeight(double height)
{
    if (!CheckComponent())
        return;
    m_lineHeight = height;
    m_grid->SetRowHeight(1, height);
}

void SpreadX::SetMinLines(int count)
{
    if (count < 0 || !CheckComponent())
        return;
    m_minLines = count;
    if (m_grid->RowCount() == count)
        return;
    const auto redraw = RedrawOff(m_grid);
    m_grid->SetRowCount(m_grid->RowCount() < count ? count : std::max(m_itemCount, count));
}

bool SpreadX::InitRowLayout(const QString &layout)
{
    if (!CheckComponent())
        return false;
    const int columns = m_grid->ColumnCount();
    m_names.assign(size_t(columns), {});
    const QStringList lines = layout.split(LineSeparator).mid(0, MaxLines);
    m_lines = int(lines.size());
    for (int line = 0; line < m_lines; ++line) {
        const QStringList names = SplitItems(lines[line]);
        for (int column = 0; column < columns && column < names.size(); ++column)
            m_names[size_t(column)][size_t(line)] = Trim(names[column]);
    }
    for (int column = 1; column <= columns; ++column) {
        const auto &names = m_names[size_t(column - 1)];
        SetValue(column, 0,
                 QStringList(names.begin(), names.begin() + m_lines).join(LineSeparator));
    }
    return true;
}

void SpreadX::GetItemPosAtRow(const QString &name, int &column, int &line) const
{
    for (int atLine = 1; atLine <= MaxLines; ++atLine) {
        for (int atColumn = 1; atColumn <= int(m_names.size()); ++atColumn) {
            if (m_names[size_t(atColumn - 1)][size_t(atLine - 1)].toUpper() == name.toUpper()) {
                column = atColumn;
                line = atLine;
                return;
            }
        }
    }
    if (column == 0 || line == 0)
        ShowError(QString("GetItemPosAtRow\r項目名 '%1' は存在しません。").arg(name));
}

int SpreadX::GetColPosAtRow(const QString &name) const
{
    int column = 0;
    int line = 0;
    GetItemPosAtRow(name, column, line);
    return column;
}

int SpreadX::GetLinePosAtRow(const QString &name) const
{
    int column = 0;
    int line = 0;
    GetItemPosAtRow(name, column, line);
    return line;
}

void SpreadX::GetItemNameAtRow(int column, int line, QString &name) const
{
    const bool isInside
        = column >= 1 && column <= int(m_names.size()) && line >= 1 && line <= MaxLines;
    name = isInside ? m_names[size_t(column - 1)][size_t(line - 1)] : QString();
}

bool SpreadX::FindItem(const QString &name, std::optional<int> row, int &itemRow, int &column,
                       int &line) const
{
    if (!CheckComponent())
        return false;
    itemRow = row.value_or(m_grid->ActiveRow());
    if (!CheckRow(itemRow))
        return false;
    GetItemPosAtRow(name, column, line);
    return column != 0;
}

void SpreadX::GetItemFromRow(const QString &name, std::optional<int> row, QString &value) const
{
    int itemRow = 0;
    int column = 0;
    int line = 0;
    if (!FindItem(name, row, itemRow, column, line))
        return;
    GetValue(column, itemRow, value);
    value = value.split(LineSeparator).value(line - 1);
}

void SpreadX::SetItemIntoRow(const QString &name, std::optional<int> row, const QString &value)
{
    int itemRow = 0;
    int column = 0;
    int line = 0;
    if (!FindItem(name, row, itemRow, column, line))
        return;
    QString cell;
    GetValue(column, itemRow, cell);
    QStringList pieces = cell.split(LineSeparator);
    while (pieces.size() < line)
        pieces += QString();
    pieces[line - 1] = value;
    SetValue(column, itemRow, pieces.join(LineSeparator));
}

QString SpreadX::GetAllItemsFromRow(int row) const
{
    if (!CheckRow(row))
        return {};
    QStringList cells;
    for (int column = 1; column <= m_grid->ColumnCount(); ++column) {
        QString cell;
        GetValue(column, row, cell);
        cells += cell;
    }
    return cells.join('\t');
}

void SpreadX::SetAllItemsIntoRow(int row, const QString &text)
{
    if (!CheckRow(row))
        return;
    const QStringList cells = SplitItems(text);
    for (int column = 1; column <= m_grid->ColumnCount() && column <= cells.size(); ++column)
        SetValue(column, row, cells[column - 1]);
}

void SpreadX::SelectRow(int row)
{
    m_grid->SetCurrentCell(1, row);
    m_grid->SetBlock(1, row, m_grid->ColumnCount(), row);
}

void SpreadX::ClearRowText(int row)
{
    SelectRow(row);
    const auto blockMode = BlockModeOn(m_grid);
    m_grid->Perform(Action::ClearText);
}

void SpreadX::AddNewRow(std::optional<int> row, int &newRow)
{
    if (!CheckComponent())
        return;
    const int target = row.value_or(m_itemCount + 1);
    if (target < 1 || target > m_itemCount + 1) {
        ShowError("挿入行指定エラー");
        return;
    }
    const bool isSpare = m_grid->RowCount() > m_itemCount; // one that MinLines keeps
    if (!isSpare)
        m_grid->SetRowCount(m_grid->RowCount() + 1);
    if (target <= m_itemCount) {
        SelectRow(target);
        m_grid->Perform(Action::InsertRow);
    } else if (isSpare) {
        ClearRowText(target);
    }
    m_grid->SetRowHeight(target, m_lineHeight);
    ++m_itemCount;
    newRow = target;
}

void SpreadX::AddItem(const QString &text, std::optional<int> row)
{
    int newRow = 0;
    AddNewRow(row, newRow);
    if (newRow == 0)
        return;
    SelectRow(newRow);
    m_grid->SetClip(text);
    m_grid->SetRowHeight(newRow, m_lineHeight);
}

void SpreadX::AddMultilineRow(const QString &text, std::optional<int> row)
{
    int newRow = 0;
    AddNewRow(row, newRow);
    if (newRow != 0)
        SetAllItemsIntoRow(newRow, text);
}

void SpreadX::UpdateItem(const QString &text, int row)
{
    if (!CheckComponent())
        return;
    if (!IsItemRow(row)) {
        ShowError("更新行指定エラー");
        return;
    }
    ClearRowText(row);
    m_grid->SetClip(text);
    m_grid->SetRowHeight(row, m_lineHeight);
}

void SpreadX::RemoveItem(int row)
{
    if (!CheckComponent() || !IsItemRow(row))
        return;
    SelectRow(row);
    m_grid->Perform(Action::DeleteRows);
    if (m_itemCount > m_minLines)
        m_grid->SetRowCount(m_grid->RowCount() - 1);
    else
        ClearRowText(m_itemCount);
    --m_itemCount;
}

void SpreadX::Clear(int column1, int column2, int row1, int row2)
{
    if (!CheckComponent())
        return;
    const auto redraw = RedrawOff(m_grid);
    m_grid->SetRowCount(m_minLines);
    m_itemCount = 0;
    if (m_minLines < 1)
        return;
    const auto [firstColumn, lastColumn] = Range(column1, column2, m_grid->ColumnCount());
    const auto [firstRow, lastRow] = Range(row1, row2, m_grid->RowCount());
    m_grid->SetBlock(firstColumn, firstRow, lastColumn, std::min(lastRow, m_grid->RowCount()));
    const auto blockMode = BlockModeOn(m_grid);
    m_grid->Perform(Action::ClearText);
}

void SpreadX::ActiveCell(int row, int column)
{
    if (!CheckComponent())
        return;
    m_grid->SetCurrentCell(column, row);
    m_grid->Perform(Action::ActivateCell);
}

void SpreadX::DrawGrid(int lineStyle, QRgb)
{
    if (!CheckComponent())
        return;
    m_grid->SetLineStyle(lineStyle);
    m_grid->Perform(Action::Draw);
}

void SpreadX::SetForeColor(QRgb color, int row, int column)
{
    if (!CheckComponent())
        return;
    m_grid->SetBlock(column, row, column, row);
    const auto blockMode = BlockModeOn(m_grid);
    m_grid->SetForeColor(color);
}

void SpreadX::SetBackColor(QRgb color, int row, int column)
{
    if (!CheckComponent())
        return;
    m_grid->SetBlock(column, row, column, row);
    const auto blockMode = BlockModeOn(m_grid);
    m_grid->SetBackColor(color);
}

void SpreadX::SetComboFindIndex(int column, int row, const QString &text)
{
    if (!CheckComponent())
        return;
    m_grid->SetCurrentCell(column, row);
    m_grid->SetComboIndex(text.isEmpty() ? -1 : int(m_grid->ComboEntries().indexOf(text)));
}

void SpreadX::GetValue(int column, int row, QString &value) const
{
    if (!CheckComponent())
        return;
    m_grid->SetCurrentCell(column, row);
    value = m_grid->Text();
}

void SpreadX::SetValue(int column, int row, const QString &value)
{
    if (!CheckComponent())
        return;
    m_grid->SetCurrentCell(column, row);
    m_grid->SetText(value);
}

void SpreadX::SetLockCell(bool isLocked, int column1, int row1, int column2, int row2)
{
    if (!CheckComponent())
        return;
    const auto [firstColumn, lastColumn] = Range(column1, column2, m_grid->ColumnCount());
    const auto [firstRow, lastRow] = Range(row1, row2, m_grid->RowCount());
    m_grid->SetBlock(firstColumn, firstRow, lastColumn, lastRow);
    const auto blockMode = BlockModeOn(m_grid);
    m_grid->SetLock(isLocked);
}

void SpreadX::CopyItem()
{
    if (!CheckComponent())
        return;
    const int source = m_grid->ActiveRow();
    const int column = m_grid->ActiveColumn();
    if (!CheckRow(source))
        return;
    int copy = 0;
    AddNewRow(source + 1, copy);
    SelectRow(source);
    m_grid->SetDestination(1, copy);
    m_grid->SetBlockMode(true);
    m_grid->Perform(Action::CopyBlock);
    m_grid->SetBlockMode(false);
    ActiveCell(copy, column);
}

void SpreadX::SelRange(int &first, int &last, bool &ok) const
{
    if (!CheckComponent())
        return;
    const auto &ranges = m_grid->SelectedRowRanges();
    ok = !ranges.empty();
    if (!ok)
        return;
    first = ranges.front().first;
    last = ranges.back().second;
}
