#pragma once

#include "grid/GlyphTexts.h"

#include <QHeaderView>

/// Headings in plain colours, drawn without the style's gradients; those of selected rows or
/// columns bold where that is asked for.
class PlainHeader : public QHeaderView
{
public:
    PlainHeader(Qt::Orientation orientation, QWidget *parent);

    void setModel(QAbstractItemModel *model) override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void paintSection(QPainter *painter, const QRect &section, int index) const override;
    void changeEvent(QEvent *event) override;

private:
    QSize Measured() const;
    QFont SelectedFont() const;
    bool IsSelected(int index) const; ///< as far as that is to be shown
    void ForgetSize() { m_size = {}; }

    mutable QSize m_size;         ///< invalid: to be measured anew
    mutable GlyphTexts m_numbers; ///< of the rows, gathered for the picture
    mutable GlyphTexts m_selectedNumbers;
};
