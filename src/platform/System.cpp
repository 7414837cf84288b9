#include "platform/System.h"

#include "platform/IniFile.h"

#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QStandardPaths>
#include <QWidget>

QString GetWindowsDir()
{
    QString dir = qEnvironmentVariable("WINDIR");
    while (dir.size() > 1 && (dir.endsWith('/') || dir.endsWith('\\')))
        dir.chop(1);
    return dir.isEmpty() ? QString("/etc/talven") : dir;
}

namespace {

QString LockFolder()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return runtime.isEmpty() ? QDir::tempPath() : runtime;
}

} // namespace

PreviousInstance::PreviousInstance(const QString &programName)
    : m_lock(LockFolder() + '/' + programName + ".lock")
{
    m_lock.setStaleLockTime(0); // only a dead owner makes the lock stale, not its age
    // A folder in which no lock can be made must not keep the operator out.
    m_isFirst = m_lock.tryLock(0) || m_lock.error() != QLockFile::LockFailedError;
}

bool RegReadText(const QString &root, const QString &key, const QString &valueName, QString &text)
{
    text.clear();
    const IniFile registry = IniFile::Read(GetWindowsDir() + "/REGISTRY.INI");
    const QString value = registry.Value(root + '\\' + key, valueName);
    if (value.startsWith("dword:", Qt::CaseInsensitive)) {
        bool isNumber = false;
        const uint number = value.mid(6).toUInt(&isNumber, 16);
        if (isNumber)
            text = QString::number(number);
    } else {
        text = value;
    }
    return !text.isEmpty();
}

QRect WorkArea()
{
    const QScreen *screen = QApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
}

void CenterForm(QWidget &form)
{
    const QRect area = WorkArea();
    if (area.isEmpty()) {
        form.move(0, 0);
        return;
    }
    const QSize size = form.size().boundedTo(area.size());
    form.move(area.left() + (area.width() - size.width()) / 2,
              area.top() + (area.height() - size.height()) / 2);
}

Hourglass::Hourglass()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

Hourglass::~Hourglass()
{
    QApplication::restoreOverrideCursor();
}
