#include "search/Picker.h"

#include "grid/SpreadGrid.h"
#include "messages/bMessage.h"
#include "platform/System.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>

Picker::Picker(ProgramState &state, PickedCode &picked, QWidget *parent)
    : Form(parent)
    , m_state(state)
    , m_picked(picked)
{
}

void Picker::Bind(SpreadGrid *grid, QAbstractButton *confirm, QAbstractButton *close,
                  const std::vector<Column> &columns)
{
    SetEscapeButton(close);
    SetThemeIcon(*confirm, {"dialog-ok", "emblem-default"});
    SetThemeIcon(*close, {"window-close"});
    m_columns = columns;
    grid->SetColumnCount(int(columns.size()));
    QStringList headings;
    for (const Column &column : columns)
        headings += column.heading;
    grid->SetRowMode();
    grid->installEventFilter(this);
    m_grid.Create(grid);
    m_grid.InitRowLayout(headings.join('\t'));
    LayOutColumns();
    connect(confirm, &QAbstractButton::clicked, this, &Picker::Confirm);
    connect(close, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(grid, &SpreadGrid::CellDoubleClicked, this, &Picker::Confirm);
}

/// Each column shows the longest text of its field, in whatever font, and the window all of them.
void Picker::LayOutColumns()
{
    constexpr int CellMargins = 18;
    SpreadGrid *grid = m_grid.Client();
    int number = 0;
    int sum = 0;
    for (const Column &column : m_columns) {
        const int width
            = std::max(grid->fontMetrics().horizontalAdvance(QString(column.halfWidths, '0')),
                       grid->fontMetrics().horizontalAdvance(column.heading))
              + CellMargins;
        grid->SetColumnLook(++number, width, Qt::AlignLeft | Qt::AlignVCenter);
        sum += width;
    }
    KeepColumns(*grid);
    constexpr int Rest = 90; // row numbers, scroll bar and margins
    resize(std::max(width(), sum + Rest), height());
}

void Picker::changeEvent(QEvent *event)
{
    Form::changeEvent(event);
    const bool isLook = event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
    if (isLook && m_grid.Client())
        LayOutColumns();
}

bool Picker::Pick()
{
    int row = 0;
    {
        const Hourglass hourglass;
        m_grid.Client()->SetRedraw(false);
        row = Fill(m_state.db, m_picked, m_grid);
        m_grid.Client()->SetRedraw(true);
    }
    if (row == 0)
        ShowMessage(Message::NoData);
    if (row <= 0)
        return false;
    m_grid.ActiveCell(row, 1);
    return exec() == Accepted;
}

void Picker::Confirm()
{
    const int row = m_grid.Client()->ActiveRow();
    m_picked = {};
    m_grid.GetValue(1, row, m_picked.code);
    m_grid.GetValue(2, row, m_picked.name);
    accept();
}

bool Picker::eventFilter(QObject *object, QEvent *event)
{
    if (object == m_grid.Client() && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool isCommand = key->modifiers() & (Qt::ControlModifier | Qt::AltModifier);
        if (!isCommand && !key->text().isEmpty() && key->text()[0].isPrint()) {
            JumpTo(key->text());
            return true;
        }
    }
    return Form::eventFilter(object, event);
}

void Picker::JumpTo(const QString &typed)
{
    if (m_sinceKey.isValid() && m_sinceKey.elapsed() >= QApplication::keyboardInputInterval())
        m_typed.clear();
    m_sinceKey.start();
    m_typed += typed;
    const SpreadGrid *grid = m_grid.Client();
    const int column = grid->ActiveColumn();
    for (int row = 1; row <= m_grid.ItemCount(); ++row) {
        if (grid->Model().Text(column, row).startsWith(m_typed, Qt::CaseInsensitive)) {
            m_grid.ActiveCell(row, column);
            return;
        }
    }
}
