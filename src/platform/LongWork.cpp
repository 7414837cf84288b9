#include "platform/LongWork.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLocale>

LongWork::LongWork(ShowStatusText showStatus, const QString &text, qint64 total, Pieces pieces,
                   Stop stop)
    : m_showStatus(std::move(showStatus))
    , m_text(text)
    , m_total(total)
    , m_stepsToLook(pieces == Pieces::Long ? 1 : 16)
    , m_stop(stop)
{
    ++running;
    m_sinceLook.start();
    m_sinceStart.start();
}

LongWork::~LongWork()
{
    if (m_isStopped)
        Look();
    if (m_hasShown)
        m_showStatus(m_text);
    --running;
}

QString LongWork::Progress() const
{
    constexpr int MsPerSecond = 1000;
    const QLocale locale(QLocale::Japanese);
    if (m_total == 0)
        return QString("（%1 秒）").arg(m_sinceStart.elapsed() / MsPerSecond);
    return QString("（%1 / %2 件）").arg(locale.toString(m_done), locale.toString(m_total));
}

void LongWork::Look()
{
    m_hasShown = m_showStatus != nullptr;
    if (m_hasShown)
        m_showStatus(m_text + Progress() + (m_stop == Stop::ByEsc ? "　Esc で中断" : ""));
    qApp->installEventFilter(this);
    QCoreApplication::processEvents();
    qApp->removeEventFilter(this);
    m_sinceLook.restart();
}

bool LongWork::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape && m_stop == Stop::ByEsc)
            m_isStopped = true;
        return true;
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
        return true;
    case QEvent::Close:
        event->ignore();
        return true;
    default:
        return false;
    }
}
