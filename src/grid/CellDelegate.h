#pragma once

#include <QCache>
#include <QStaticText>
#include <QStyledItemDelegate>

class SpreadGrid;

/// Paints the cells of a grid, marks the active one, and makes the editors.
class CellDelegate : public QStyledItemDelegate
{
public:
    explicit CellDelegate(SpreadGrid *grid);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *, const QModelIndex &) const override {}
    void setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const override {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

private:
    // The grid itself decides when an edit ends.
    bool eventFilter(QObject *, QEvent *) override { return false; }

    const QStaticText &Prepared(const QString &text, const QFont &font) const;
    void PaintLine(QPainter *painter, const QStyleOptionViewItem &option, const QString &text,
                   const QRect &room, Qt::Alignment alignment) const;

    SpreadGrid *m_grid;

    /// Lines of text made ready to be drawn: most of a picture's stand in it several times, or were
    /// there before.
    mutable QCache<QString, QStaticText> m_lines{2000};
    mutable QFont m_font; ///< of those lines
};
