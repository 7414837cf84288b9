#include "platform/System.h"

#include "platform/Files.h"
#include "platform/IniFile.h"
#include "platform/RuntimeError.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QScreen>
#include <QStandardPaths>
#include <QSysInfo>
#include <QWidget>
#include <array>
#include <csignal>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

QString GetWindowsDir()
{
    QString dir = qEnvironmentVariable("WINDIR");
    while (dir.size() > 1 && (dir.endsWith('/') || dir.endsWith('\\')))
        dir.chop(1);
    return dir.isEmpty() ? QString("/etc/talven") : dir;
}

namespace {

/// True for a folder that is the user's own and that nobody else may enter.
bool IsOwnFolder(const QString &folder)
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(folder), &status) == 0 && S_ISDIR(status.st_mode)
           && status.st_uid == ::geteuid() && (status.st_mode & 077) == 0;
}

/// Makes the folder as one of the user's own; one that is there stays as it is.
void MakeOwnFolder(const QString &folder)
{
    QDir().mkpath(QFileInfo(folder).path());
    ::mkdir(QFile::encodeName(folder), 0700);
}

} // namespace

PreviousInstance::PreviousInstance(const QString &programName)
{
    Files files;
    files.SetLockWait(0);
    const QStringList folders = Folders();
    for (const QString &folder : folders) {
        if (folder != folders.first()) // which the system makes at log-in
            MakeOwnFolder(folder);
        if (!IsOwnFolder(folder))
            continue;
        // The lock goes with its holder, however that ends. The file stays: one taken away could
        // still be open in a copy that is just starting.
        int error = RuntimeError::None;
        m_lock = files.Open(folder + '/' + programName + ".lock", FileMode::ReadWrite,
                            FileLock::Exclusive, error);
        if (m_lock || error == RuntimeError::PermissionDenied) {
            m_state = m_lock ? First : Second;
            return;
        }
    }
}

QStringList PreviousInstance::Folders()
{
    const QString user = QString::number(::geteuid());
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return {qEnvironmentVariable("XDG_RUNTIME_DIR", "/run/user/" + user),
            data + "/talven/run-" + QSysInfo::machineHostName(), // homes may be shared by machines
            QDir::tempPath() + "/talven-" + user};
}

PreviousInstance::~PreviousInstance() = default;

QString UserName()
{
    std::array<char, 16'384> texts;
    passwd entry = {};
    passwd *found = nullptr;
    ::getpwuid_r(::geteuid(), &entry, texts.data(), texts.size(), &found);
    // Where users are kept elsewhere, the machine may know no more than a number.
    return found ? QString::fromLocal8Bit(found->pw_name)
                 : qEnvironmentVariable("USER", QString::number(::geteuid()));
}

QString MachineName()
{
    return QSysInfo::machineHostName();
}

void TakeFileSizeLimitAsFullDisk()
{
    std::signal(SIGXFSZ, SIG_IGN); // the write then fails
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
