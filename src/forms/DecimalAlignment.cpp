#include "forms/DecimalAlignment.h"

#include "util/bValue.h"

#include <QEvent>
#include <QLineEdit>
#include <algorithm>

DecimalAlignment::DecimalAlignment(QLineEdit &box, const QString &spec)
    : QObject(&box)
    , m_box(box)
    , m_decimals(ParseDigitSpec(spec).value_or(DigitCounts()).decimals)
{
    box.setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    connect(&box, &QLineEdit::textChanged, this, &DecimalAlignment::Align);
    box.installEventFilter(this);
    Align();
}

bool DecimalAlignment::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        Align();
    return false;
}

void DecimalAlignment::Align()
{
    const QString text = m_box.text();
    const qsizetype point = text.indexOf('.');
    // Numbers without decimals may be padded with blanks all the same.
    qsizetype end = point >= 0 ? point : text.size();
    while (point < 0 && end > 0 && text[end - 1] == ' ')
        --end;
    const QFontMetrics metrics = m_box.fontMetrics();
    const int room = metrics.horizontalAdvance('.' + QString(m_decimals, '0'));
    const int margin = std::max(0, room - metrics.horizontalAdvance(text.mid(end)));
    if (m_box.textMargins().right() != margin)
        m_box.setTextMargins(0, 0, margin, 0);
}
