#include "forms/StatusPanels.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLabel>
#include <QStatusBar>

namespace {

class StatusPanel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;

    bool IsAlert() const { return !text().isEmpty() && text() == alertText; }

    QString alertText; ///< what an alert was given of last
};

/// What a screen reader knows of a panel: its text, and whether that is an alert.
class PanelInterface : public QAccessibleWidget
{
public:
    explicit PanelInterface(StatusPanel *panel)
        : QAccessibleWidget(panel, QAccessible::StaticText)
        , m_panel(panel)
    {
    }

    QAccessible::Role role() const override
    {
        return m_panel->IsAlert() ? QAccessible::AlertMessage : QAccessible::StaticText;
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? m_panel->text() : QString();
    }

private:
    const StatusPanel *m_panel;
};

QAccessibleInterface *MakeInterface(const QString &, QObject *object)
{
    auto *panel = qobject_cast<StatusPanel *>(object);
    return panel ? new PanelInterface(panel) : nullptr;
}

StatusPanel *Find(const QStatusBar &bar, const QString &key)
{
    return bar.findChild<StatusPanel *>(key);
}

void Tell(QAccessible::Event what, QLabel &panel)
{
    QAccessibleEvent event(&panel, what);
    QAccessible::updateAccessibility(&event);
}

/// True when it is another text than before.
bool Show(StatusPanel &panel, const QString &text, const QPalette &colors)
{
    const bool isOther = panel.text() != text;
    panel.setPalette(colors);
    panel.setAutoFillBackground(colors.isBrushSet(QPalette::Active, QPalette::Window));
    panel.setText(text);
    const bool isCut = panel.sizeHint().width() > panel.width();
    panel.setToolTip(isCut ? text : QString());
    panel.repaint();
    return isOther;
}

} // namespace

void AlertOf(QLabel &panel)
{
    if (auto *own = qobject_cast<StatusPanel *>(&panel))
        own->alertText = panel.text();
    // The bridge to the desktop's screen readers has no alert of its own: there it is an object of
    // that role which comes into view.
    Tell(QAccessible::Alert, panel);
    Tell(QAccessible::ObjectShow, panel);
}

void AddStatusPanels(QStatusBar &bar, const QStringList &keys)
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(MakeInterface);
        return true;
    }();
    Q_UNUSED(isInstalled)
    for (const QString &key : keys) {
        auto *panel = new StatusPanel(&bar);
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
    return Find(bar, key)->text();
}

void SetPanelText(QStatusBar &bar, const QString &key, const QString &text)
{
    StatusPanel *panel = Find(bar, key);
    panel->alertText.clear();
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
        AlertOf(*panel);
}

#include "StatusPanels.moc"
