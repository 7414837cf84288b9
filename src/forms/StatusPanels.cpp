#include "forms/StatusPanels.h"

#include <QAccessible>
#include <QLabel>
#include <QStatusBar>

void AlertOf(QLabel &panel)
{
    QAccessibleEvent alert(&panel, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void AddStatusPanels(QStatusBar &bar, const QStringList &keys)
{
    for (const QString &key : keys) {
        auto *panel = new QLabel(&bar);
        panel->setObjectName(key);
        panel->setTextFormat(Qt::PlainText);
        const bool isFirst = key == keys.front();
        if (isFirst) // a long text makes no window wider
            panel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        bar.addWidget(panel, isFirst ? 1 : 0);
    }
}

QString PanelText(const QStatusBar &bar, const QString &key)
{
    return bar.findChild<QLabel *>(key)->text();
}

namespace {

void Show(QLabel *panel, const QString &text, const QPalette &colors)
{
    panel->setPalette(colors);
    panel->setAutoFillBackground(colors.isBrushSet(QPalette::Active, QPalette::Window));
    panel->setText(text);
    panel->setToolTip(text); // there may be no room for all of it
    panel->repaint();
}

} // namespace

void SetPanelText(QStatusBar &bar, const QString &key, const QString &text)
{
    Show(bar.findChild<QLabel *>(key), text, {});
}

void SetPanelWarning(QStatusBar &bar, const QString &key, const QString &text)
{
    constexpr QRgb Amber = qRgb(0xFF, 0xC8, 0x30);
    auto *panel = bar.findChild<QLabel *>(key);
    const bool isNew = panel->text() != text;
    QPalette colors;
    colors.setColor(QPalette::Window, QColor(Amber));
    colors.setColor(QPalette::WindowText, Qt::black);
    Show(panel, text, colors);
    if (isNew)
        AlertOf(*panel);
}
