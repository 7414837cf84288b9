#include "forms/Arrangement.h"

#include "forms/WindowMemory.h"
#include "platform/ScrollPane.h"
#include "platform/System.h"

#include <QHeaderView>
#include <QStatusBar>
#include <QStyle>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

namespace {

/// What a window may fill of the work area: its frame has to be there, too.
QSize Room()
{
    constexpr QSize Frame(20, 50);
    const QRect area = WorkArea();
    return area.isEmpty() ? QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX) : area.size() - Frame;
}

bool IsWithin(const QSize &size, const QSize &room)
{
    return size.boundedTo(room) == size;
}

} // namespace

void Arrangement::Place()
{
    const QSize room = Room();
    MakeFit();
    m_ownSize = m_window.size().boundedTo(room);
    const WindowMemory memory(m_window);
    const QSize kept = memory.Size();
    m_window.resize(kept.isEmpty() ? m_ownSize : kept.boundedTo(room));
    CenterForm(m_window);
    if (memory.IsMaximized())
        m_window.setWindowState(m_window.windowState() | Qt::WindowMaximized);
}

void Arrangement::MakeFit()
{
    const QSize room = Room();
    auto *inner = qobject_cast<QVBoxLayout *>(m_window.layout());
    const QSize needed = inner ? inner->totalMinimumSize() : QSize();
    if (m_isScrolling || !inner || IsWithin(needed, room))
        return;
    m_isScrolling = true;
    auto *bar = m_window.findChild<QStatusBar *>();
    auto *buttons = inner->findChild<QHBoxLayout *>("buttonLayout", Qt::FindDirectChildrenOnly);
    if (bar)
        inner->removeWidget(bar);
    if (buttons
        && buttons->minimumSize().width() + inner->contentsMargins().left() * 2 > room.width())
        buttons = nullptr;
    if (buttons) {
        buttons->setContentsMargins(inner->contentsMargins());
        buttons->setSpacing(inner->spacing());
        inner->removeItem(buttons);
        buttons->setParent(nullptr);
    }
    // Of the window from the start: what changes windows loses its place in the tab order.
    auto *content = new QWidget(&m_window);
    content->setLayout(inner); // takes its controls along
    auto *pane = new ScrollPane(&m_window);
    pane->setWidget(content);
    auto *outer = new QVBoxLayout(&m_window);
    outer->setContentsMargins({});
    outer->setSpacing(0);
    outer->addWidget(pane, 1);
    if (buttons)
        outer->addLayout(buttons);
    if (bar)
        outer->addWidget(bar);
    m_window.setMinimumSize(0, 0); // which the old layout has set
    outer->activate();
    const int extent = m_window.style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    m_window.resize(m_window.size().expandedTo(needed + QSize(extent, extent)).boundedTo(room));
}

void Arrangement::KeepColumns(QTableView &grid)
{
    const QHeaderView *header = grid.horizontalHeader();
    std::vector<int> &own = m_ownWidths[&grid];
    own.clear();
    for (int column = 0; column < header->count(); ++column)
        own.push_back(header->sectionSize(column)); // 0: hidden
    const std::vector<int> kept = WindowMemory(m_window).Widths(grid.objectName());
    for (size_t column = 0; column < std::min(own.size(), kept.size()); ++column)
        if (own[column] > 0 && kept[column] > 0)
            grid.setColumnWidth(int(column), kept[column]);
}

void Arrangement::Keep() const
{
    WindowMemory memory(m_window);
    const bool isMaximized = m_window.isMaximized();
    const QSize size = isMaximized ? m_window.normalGeometry().size() : m_window.size();
    memory.SetSize(size == m_ownSize.expandedTo(m_window.minimumSize()) ? QSize() : size);
    memory.SetMaximized(isMaximized);
    for (const auto &[grid, own] : m_ownWidths) {
        const QHeaderView *header = grid->horizontalHeader();
        std::vector<int> widths(own.size());
        for (size_t column = 0; column < own.size(); ++column)
            if (const int width = header->sectionSize(int(column)); width != own[column])
                widths[column] = width;
        if (header->stretchLastSection() && !widths.empty())
            widths.back() = 0; // it is as wide as the grid leaves it
        memory.SetWidths(grid->objectName(), widths);
    }
}

void Arrangement::TakeOwn()
{
    m_window.setWindowState(m_window.windowState() & ~Qt::WindowMaximized);
    m_window.resize(m_ownSize);
    CenterForm(m_window);
    for (const auto &[grid, own] : m_ownWidths)
        for (size_t column = 0; column < own.size(); ++column)
            if (own[column] > 0)
                grid->setColumnWidth(int(column), own[column]);
}
