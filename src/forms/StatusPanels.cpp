#include "forms/StatusPanels.h"

#include "forms/StatusPanel.h"

#include <QLayout>
#include <QSizeGrip>
#include <QStatusBar>

namespace {

StatusPanel *Find(const QStatusBar &bar, const QString &key)
{
    return bar.findChild<StatusPanel *>(key);
}

/// True when it is another text than before.
bool Show(StatusPanel &panel, const QString &text, const QPalette &colors)
{
    const bool isOther = panel.text() != text;
    panel.setPalette(colors);
    panel.setAutoFillBackground(colors.isBrushSet(QPalette::Active, QPalette::Window));
    panel.setText(text);
    // Qt's own request for another layout may come too late for a longer text.
    QLayout *panels = panel.parentWidget()->layout();
    panels->invalidate();
    panels->activate();
    const bool isCut = panel.sizeHint().width() > panel.width();
    panel.setToolTip(isCut ? text : QString());
    panel.repaint();
    return isOther;
}

} // namespace

void AddStatusPanels(QStatusBar &bar, const QStringList &keys)
{
    for (const QString &key : keys) {
        auto *panel = new StatusPanel(&bar);
        panel->setObjectName(key);
        panel->setTextFormat(Qt::PlainText);
        const bool isFirst = key == keys.front();
        if (isFirst) // a long text makes no window wider
            panel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        bar.addWidget(panel, isFirst ? 1 : 0);
    }
    if (auto *grip = bar.findChild<QSizeGrip *>())
        grip->setAccessibleName("ウィンドウの大きさ");
}

void SetPanelText(QStatusBar &bar, const QString &key, const QString &text)
{
    StatusPanel *panel = Find(bar, key);
    panel->Calm();
    Show(*panel, text, {});
}

void SetPanelWarning(QStatusBar &bar, const QString &key, const QString &text)
{
    constexpr QRgb Amber = qRgb(0xFF, 0xC8, 0x30);
    QPalette colors;
    colors.setColor(QPalette::Window, QColor(Amber));
    colors.setColor(QPalette::WindowText, Qt::black);
    StatusPanel *panel = Find(bar, key);
    if (Show(*panel, text, colors) || !panel->IsAlert())
        panel->Alert();
}
