#include "forms/StatusPanel.h"

#include <QAccessibleWidget>

namespace {

/// What readers speak of their own accord: they leave an alert that is no window in silence.
class Notification : public QAccessibleInterface
{
public:
    explicit Notification(QAccessibleInterface &panel)
        : m_panel(panel)
    {
    }

    bool isValid() const override { return m_panel.isValid(); }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return m_panel.window(); }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QAccessibleInterface *parent() const override { return &m_panel; }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? m_panel.text(kind) : QString();
    }
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override { return m_panel.rect(); }
    QAccessible::Role role() const override { return QAccessible::Notification; }
    QAccessible::State state() const override { return m_panel.state(); }

private:
    QAccessibleInterface &m_panel;
};

class PanelAccessible : public QAccessibleWidget
{
public:
    explicit PanelAccessible(StatusPanel *panel)
        : QAccessibleWidget(panel)
    {
    }
    ~PanelAccessible() override
    {
        if (m_notification != 0)
            QAccessible::deleteAccessibleInterface(m_notification);
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? Panel()->text() : QAccessibleWidget::text(kind);
    }
    QAccessible::Role role() const override
    {
        return Panel()->IsAlert() ? QAccessible::AlertMessage : QAccessible::StaticText;
    }
    int childCount() const override { return Panel()->IsAlert() ? 1 : 0; }
    QAccessibleInterface *child(int index) const override
    {
        if (index != 0 || !Panel()->IsAlert())
            return nullptr;
        if (m_notification == 0)
            m_notification = QAccessible::registerAccessibleInterface(
                new Notification(*const_cast<PanelAccessible *>(this)));
        return QAccessible::accessibleInterface(m_notification);
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return childCount() > 0 && child == this->child(0) ? 0 : -1;
    }

private:
    const StatusPanel *Panel() const { return static_cast<const StatusPanel *>(object()); }

    mutable QAccessible::Id m_notification = 0;
};

QAccessibleInterface *MakeAccessible(const QString &className, QObject *object)
{
    auto *panel = className == "StatusPanel" ? qobject_cast<StatusPanel *>(object) : nullptr;
    return panel ? new PanelAccessible(panel) : nullptr;
}

void Tell(QAccessibleEvent event)
{
    QAccessible::updateAccessibility(&event);
}

} // namespace

StatusPanel::StatusPanel(QWidget *parent)
    : QLabel(parent)
{
    [[maybe_unused]] static const bool isInstalled
        = (QAccessible::installFactory(MakeAccessible), true);
}

void StatusPanel::Alert()
{
    m_alert = text();
    if (!QAccessible::isActive())
        return;
    // A reader does not ask again what an object that it knows is: the alert is a new one.
    Tell({this, QAccessible::ObjectDestroyed});
    QAccessible::deleteAccessibleInterface(
        QAccessible::uniqueId(QAccessible::queryAccessibleInterface(this)));
    QAccessibleInterface *alert = QAccessible::queryAccessibleInterface(this);
    Tell({this, QAccessible::ObjectCreated});
    Tell({this, QAccessible::ObjectShow});
    Tell({this, QAccessible::Alert});
    Tell({alert->child(0), QAccessible::ObjectShow});
}
