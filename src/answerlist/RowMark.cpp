#include "answerlist/RowMark.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QStyle>
#include <map>

RowMark MarkOf(const Line &line)
{
    if (line.Error() != LineError::None)
        return RowMark::Wrong;
    if (!line.IsStored())
        return RowMark::Copied;
    if (line.IsChanged())
        return RowMark::Changed;
    return line.IsRegisteredHere() ? RowMark::Registered : RowMark::None;
}

QString MarkText(const Line &line)
{
    switch (MarkOf(line)) {
    case RowMark::Wrong:
        return ErrorText(line.Error());
    case RowMark::Copied:
        return "複写（未登録）";
    case RowMark::Changed:
        return "変更あり（未登録）";
    case RowMark::Registered:
        return line.WasSentHere() ? "登録・回答作成済" : "登録済";
    case RowMark::None:
        break;
    }
    return {};
}

namespace {

constexpr int Side = 16;

/// A pencil, a plus sign, a tick, or nothing.
void DrawMark(QPainter &painter, RowMark mark)
{
    QPainterPath path;
    switch (mark) {
    case RowMark::None:
        return;
    case RowMark::Changed:
        path.addPolygon(QPolygonF{{3, 13}, {3, 10}, {10, 3}, {13, 6}, {6, 13}, {3, 13}});
        break;
    case RowMark::Copied:
        path.addRect(7, 3, 2, 10);
        path.addRect(3, 7, 10, 2);
        path.setFillRule(Qt::WindingFill);
        break;
    default:
        path.addPolygon(QPolygonF{{2, 8}, {4, 6}, {7, 9}, {13, 3}, {14, 5}, {7, 13}, {2, 8}});
    }
    painter.fillPath(path, QApplication::palette().color(QPalette::ButtonText));
}

} // namespace

QIcon MarkIcon(RowMark mark)
{
    if (mark == RowMark::Wrong)
        return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
    static std::map<std::pair<RowMark, QRgb>, QIcon> icons;
    QIcon &icon = icons[{mark, QApplication::palette().color(QPalette::ButtonText).rgba()}];
    if (!icon.isNull())
        return icon;
    for (const int scale : {1, 2, 3}) {
        QPixmap pixmap(Side * scale, Side * scale);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(scale, scale);
        DrawMark(painter, mark);
        icon.addPixmap(pixmap);
    }
    return icon;
}
