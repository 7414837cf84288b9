#include "platform/System.h"

#include "platform/Files.h"
#include "platform/IniFile.h"
#include "platform/RuntimeError.h"

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
{
    // The lock goes with its holder, however that ends. The file stays: one taken away could still
    // be open in a copy that is just starting.
    Files files;
    files.SetLockWait(0);
    int error = RuntimeError::None;
    m_lock = files.Open(LockFolder() + '/' + programName + ".lock", FileMode::ReadWrite,
                        FileLock::Exclusive, error);
    // A folder in which no lock can be made must not keep the operator out.
    m_isFirst = error != RuntimeError::PermissionDenied;
}

PreviousInstance::~PreviousInstance() = default;

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
