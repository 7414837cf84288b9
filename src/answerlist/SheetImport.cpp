#include "answerlist/SheetImport.h"

#include "sheet/SheetColumns.h"
#include "ui_SheetImport.h"
#include "util/bDate.h"

#include <QAbstractTableModel>
#include <QFont>
#include <QHeaderView>
#include <algorithm>
#include <functional>

namespace {

QString Count(size_t rows)
{
    return Decimal(qint64(rows)).ToFixed(0, true);
}

QString KeyText(const LineKey &key)
{
    return QString("%1-%2-%3").arg(key.accNo).arg(key.accSubNo).arg(key.shpSubNo);
}

/// A cell of a table that is only read.
struct ShownCell
{
    QString text;
    bool isNumber = false;
    bool isNew = false; ///< stands out
};

/// Rows whose cells are made when they are looked at: a file may have very many.
class ReadTable : public QAbstractTableModel
{
public:
    using CellOf = std::function<ShownCell(int row, int column)>;

    ReadTable(QStringList headings, size_t rows, CellOf cellOf, QObject *parent)
        : QAbstractTableModel(parent)
        , m_headings(std::move(headings))
        , m_rows(int(rows))
        , m_cellOf(std::move(cellOf))
    {
    }

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : m_rows;
    }
    int columnCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : int(m_headings.size());
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::DisplayRole && role != Qt::TextAlignmentRole && role != Qt::FontRole)
            return {};
        const ShownCell cell = m_cellOf(index.row(), index.column());
        if (role == Qt::DisplayRole)
            return cell.text;
        if (role == Qt::TextAlignmentRole)
            return int((cell.isNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
        QFont font;
        font.setBold(true);
        return cell.isNew ? QVariant(font) : QVariant();
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        return orientation == Qt::Horizontal && role == Qt::DisplayRole
                   ? QVariant(m_headings[section])
                   : QVariant();
    }

private:
    const QStringList m_headings;
    const int m_rows;
    const CellOf m_cellOf;
};

/// A line that changes, or a split that comes below one.
struct TakenRow
{
    int fileLine;
    int row; ///< of the list
    bool isSplit;
    Answer before;
    Answer after;
};

std::vector<TakenRow> TakenRows(const SheetPlan &plan)
{
    std::vector<TakenRow> rows;
    rows.reserve(plan.changes.size() + plan.splits.size());
    for (const SheetPlan::Change &change : plan.changes)
        rows.push_back({change.fileLine, change.row, false, change.before, change.after});
    for (const SheetPlan::Split &split : plan.splits)
        rows.push_back({split.fileLine, split.below, true, Answer(), split.answer});
    std::ranges::sort(rows, {}, &TakenRow::fileLine);
    return rows;
}

ShownCell TakenCell(const TakenRow &taken, const Line &line, int column)
{
    const bool isSplit = taken.isSplit;
    const Answer &before = taken.before;
    switch (column) {
    case 0:
        return {QString::number(taken.fileLine), true};
    case 1:
        return {isSplit ? "分納" : line.IsStored() ? "変更" : "分納の変更"};
    case 2:
        return {KeyText(line.IsStored() ? line.Key() : line.Source())};
    case 3:
        return {line.OrderNo()};
    case 4:
        return {line.Text(LineField::AccHinName)};
    case 5:
        return {isSplit ? QString() : FormatQuantity(before.quantity), true};
    case 6:
        return {FormatQuantity(taken.after.quantity), true,
                isSplit || before.quantity != taken.after.quantity};
    case 7:
        return {isSplit ? QString() : ShownDate(before.date)};
    default:
        return {ShownDate(taken.after.date), false, isSplit || before.date != taken.after.date};
    }
}

ShownCell RefusedCell(const SheetPlan::Refused &refused, int column)
{
    constexpr qsizetype MostShown = 40;
    switch (column) {
    case 0:
        return {QString::number(refused.fileLine), true};
    case 1:
        return {refused.line};
    default:
        return {RefusalText(refused.refusal)
                + (refused.cell.isEmpty() ? "" : "「" + refused.cell.left(MostShown) + "」")};
    }
}

} // namespace

SheetImport::SheetImport(const QString &fileName, const SheetPlan &plan, const LineList &list,
                         QWidget *parent)
    : Form(parent)
    , m_ui(std::make_unique<Ui::SheetImport>())
{
    m_ui->setupUi(this);
    SetEscapeButton(m_ui->cmdExit);
    SetMainButton(m_ui->cmdTake);
    m_ui->lblFile->setText(fileName);
    m_ui->lblWarning->setVisible(plan.isOfAnotherList);
    m_ui->lblWarning->setText("この一覧の明細がありません。ほかの得意先または条件のファイルです");
    m_ui->lblUnchanged->setText("変更のない行　" + Count(size_t(plan.unchanged)));
    ShowTaken(plan, list);
    ShowRefused(plan);
    m_ui->cmdTake->setEnabled(!plan.IsEmpty());
    (plan.IsEmpty() ? m_ui->cmdExit : m_ui->cmdTake)->setFocus();
    connect(m_ui->cmdTake, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_ui->cmdExit, &QPushButton::clicked, this, &QDialog::reject);
}

SheetImport::~SheetImport() = default;

void SheetImport::SetUp(QTableView &grid, QAbstractItemModel *model)
{
    constexpr int RowsMeasured = 200; // of very many
    grid.setModel(model);
    grid.setWordWrap(false);
    grid.verticalHeader()->hide();
    grid.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    grid.verticalHeader()->setDefaultSectionSize(grid.fontMetrics().height() + 6);
    grid.horizontalHeader()->setResizeContentsPrecision(RowsMeasured);
    grid.resizeColumnsToContents();
    // The window shows all columns, as far as the screen has room for it.
    constexpr int Rest = 60; // the scroll bar, and the margins of group and window
    resize(std::max(width(), grid.horizontalHeader()->length() + Rest), height());
    grid.horizontalHeader()->setStretchLastSection(true);
}

void SheetImport::ShowTaken(const SheetPlan &plan, const LineList &list)
{
    const auto rows = std::make_shared<const std::vector<TakenRow>>(TakenRows(plan));
    m_ui->grpTaken->setTitle(QString("取り込む行　変更 %1　分納 %2")
                                 .arg(Count(plan.changes.size()), Count(plan.splits.size())));
    m_ui->grpTaken->setVisible(!plan.IsEmpty());
    SetUp(*m_ui->spdTaken, new ReadTable(
                               {"ファイルの行", "区分", "受注№", SheetHeading::OrderNo, "商品名",
                                "回答数量", "→ 回答数量", "回答納期", "→ 回答納期"},
                               rows->size(),
                               [rows, &list](int row, int column) {
                                   const TakenRow &taken = (*rows)[size_t(row)];
                                   return TakenCell(taken, list.At(taken.row), column);
                               },
                               this));
}

void SheetImport::ShowRefused(const SheetPlan &plan)
{
    m_ui->grpRefused->setTitle("取り込めない行　" + Count(plan.refused.size()));
    m_ui->grpRefused->setVisible(!plan.refused.empty());
    SetUp(*m_ui->spdRefused, new ReadTable(
                                 {"ファイルの行", "受注№", "理由"}, plan.refused.size(),
                                 [&plan](int row, int column) {
                                     return RefusedCell(plan.refused[size_t(row)], column);
                                 },
                                 this));
}
