#include "platform/Files.h"

#include "platform/RuntimeError.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::function<int(FileOp, const QString &)> &Fault()
{
    static std::function<int(FileOp, const QString &)> fault;
    return fault;
}

/// True when the seam makes this operation fail; errno is then set.
bool IsFaulty(FileOp op, const QString &path)
{
    const int error = Fault() ? Fault()(op, path) : 0;
    if (error != 0)
        errno = error;
    return error != 0;
}

int FlagsOf(FileMode mode)
{
    switch (mode) {
    case FileMode::Read:
        return O_RDONLY;
    case FileMode::ReadWrite:
        return O_RDWR;
    case FileMode::Append:
        return O_RDWR | O_APPEND;
    case FileMode::Output: // emptied once the lock is held
    case FileMode::New:
        return O_RDWR;
    }
    return O_RDONLY;
}

} // namespace

void SetFileFault(std::function<int(FileOp, const QString &)> fault)
{
    Fault() = std::move(fault);
}

OpenFile::OpenFile(int descriptor, QString path, QString localPath, bool isNew)
    : m_descriptor(descriptor)
    , m_path(std::move(path))
    , m_localPath(std::move(localPath))
    , m_isNew(isNew)
{
}

OpenFile::~OpenFile()
{
    ::close(m_descriptor);
}

qint64 OpenFile::Size() const
{
    // On a share this asks the server, while the status of the file may be a second old.
    return std::max<qint64>(::lseek(m_descriptor, 0, SEEK_END), 0);
}

QByteArray OpenFile::ReadAt(qint64 position, qint64 length) const
{
    QByteArray bytes(length, Qt::Uninitialized);
    qint64 done = 0;
    while (done < length) {
        const ssize_t count
            = ::pread(m_descriptor, bytes.data() + done, size_t(length - done), position + done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        done += count;
    }
    bytes.truncate(done);
    return bytes;
}

int OpenFile::WriteAll(QByteArrayView bytes)
{
    if (IsFaulty(FileOp::Write, m_path))
        return errno;
    while (!bytes.isEmpty()) {
        const ssize_t count = ::write(m_descriptor, bytes.data(), size_t(bytes.size()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno;
        bytes = bytes.sliced(count);
    }
    return IsFaulty(FileOp::Sync, m_path) || ::fdatasync(m_descriptor) != 0 ? errno : 0;
}

int OpenFile::SyncFolder() const
{
    if (IsFaulty(FileOp::Sync, m_path))
        return errno;
    const QByteArray folder = QFile::encodeName(QFileInfo(m_localPath).path());
    const int descriptor = ::open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return 0; // a folder that its users may write in, but not read
    const int error = ::fsync(descriptor) == 0 ? 0 : errno;
    ::close(descriptor);
    const bool isUnknown = error == EINVAL || error == EBADF || error == EOPNOTSUPP;
    return isUnknown ? 0 : error; // some shares know of no such thing
}

int OpenFile::Append(QByteArrayView bytes)
{
    const qint64 before = Size();
    ::lseek(m_descriptor, 0, SEEK_END);
    int error = WriteAll(bytes);
    if (error == 0 && before == 0)
        error = SyncFolder();
    if (error != 0 && Truncate(before) != RuntimeError::None)
        return RuntimeError::DeviceIo;
    return RuntimeError::FromErrno(error);
}

int OpenFile::Truncate(qint64 length)
{
    if (IsFaulty(FileOp::Truncate, m_path) || ::ftruncate(m_descriptor, length) != 0)
        return RuntimeError::FromErrno(errno);
    return RuntimeError::None;
}

bool OpenFile::IsInPlace() const
{
    struct stat own = {};
    struct stat named = {};
    return ::fstat(m_descriptor, &own) == 0 && ::lstat(QFile::encodeName(m_localPath), &named) == 0
           && own.st_dev == named.st_dev && own.st_ino == named.st_ino;
}

int OpenFile::Remove()
{
    if (IsFaulty(FileOp::Remove, m_path) || ::unlink(QFile::encodeName(m_localPath)) != 0)
        return RuntimeError::FromErrno(errno);
    return RuntimeError::None;
}

namespace {

/// Opens the file, or makes it when it is missing; only a file in its own place, so that nobody can
/// lead the program to another.
int OpenDescriptor(const QString &localPath, FileMode mode, bool &isNew)
{
    const QByteArray name = QFile::encodeName(localPath);
    const auto open = [&](int more) {
        constexpr int Always = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
        return TEMP_FAILURE_RETRY(::open(name, FlagsOf(mode) | Always | more, 0666));
    };
    isNew = false;
    int descriptor = mode == FileMode::New ? -1 : open(0);
    if (descriptor < 0 && (mode == FileMode::New || (errno == ENOENT && mode != FileMode::Read))) {
        descriptor = open(O_CREAT | O_EXCL);
        isNew = descriptor >= 0;
        const bool isMadeJustNow = descriptor < 0 && errno == EEXIST;
        if (isMadeJustNow && mode != FileMode::New)
            descriptor = open(O_CREAT);
    }
    struct stat status = {};
    if (descriptor >= 0 && (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        ::close(descriptor);
        errno = EACCES;
        return -1;
    }
    if (descriptor < 0 && errno == ENXIO) // a socket
        errno = EACCES;
    return descriptor;
}

} // namespace

bool Files::FileExists(const QString &path) const
{
    QString local;
    return FindLocal(path, local) == RuntimeError::None && QFileInfo(local).isFile();
}

bool Files::FolderExists(const QString &path) const
{
    QString local;
    return FindLocal(path, local) == RuntimeError::None && QFileInfo(local).isDir();
}

int Files::FindLocal(const QString &path, QString &local) const
{
    if (path.contains(QChar(0)))
        return RuntimeError::BadFileName;
    local = LocalPath(path);
    return local.isEmpty() ? RuntimeError::PathNotFound : RuntimeError::None;
}

int Files::MakeFolder(const QString &path) const
{
    QString local;
    if (const int error = FindLocal(path, local); error != RuntimeError::None)
        return error;
    if (!IsFaulty(FileOp::MakeFolder, path) && ::mkdir(QFile::encodeName(local), 0777) == 0)
        return RuntimeError::None;
    const int error = errno;
    if (error == EEXIST && FolderExists(path))
        return RuntimeError::None;
    return error == ENOENT ? RuntimeError::PathNotFound : RuntimeError::FromErrno(error);
}

int Files::MakeDrive(const QString &path) const
{
    const QString folder = m_drives.UserDrive(path);
    return folder.isEmpty() || QDir().mkpath(folder) ? RuntimeError::None
                                                     : RuntimeError::PathFileAccess;
}

int Files::Remove(const QString &path) const
{
    QString local;
    if (const int error = FindLocal(path, local); error != RuntimeError::None)
        return error;
    if (IsFaulty(FileOp::Remove, path) || ::unlink(QFile::encodeName(local)) != 0)
        return RuntimeError::FromErrno(errno);
    return RuntimeError::None;
}

std::unique_ptr<OpenFile> Files::TryOpen(const QString &path, const QString &local, FileMode mode,
                                         FileLock lock, int &error) const
{
    bool isNew = false;
    const int descriptor = IsFaulty(FileOp::Open, path) ? -1 : OpenDescriptor(local, mode, isNew);
    if (descriptor < 0) {
        const bool isFolderMissing = errno == ENOENT && !QFileInfo(local).dir().exists();
        error = isFolderMissing ? RuntimeError::PathNotFound : RuntimeError::FromErrno(errno);
        return nullptr;
    }
    auto file = std::make_unique<OpenFile>(descriptor, path, local, isNew);
    error = RuntimeError::None;
    if (lock != FileLock::None) {
        error = RuntimeError::FromErrno(
            IsFaulty(FileOp::Lock, path) ? errno : TryLockFile(descriptor, lock));
        if (error == RuntimeError::None && !file->IsInPlace())
            error = RuntimeError::PermissionDenied; // its last holder has put it away
    }
    if (error == RuntimeError::None && mode == FileMode::Output)
        error = file->Truncate(0);
    return error == RuntimeError::None ? std::move(file) : nullptr;
}

std::unique_ptr<OpenFile> Files::Open(const QString &path, FileMode mode, FileLock lock,
                                      int &error) const
{
    constexpr int RetryMs = 10;
    QString local;
    error = FindLocal(path, local);
    if (error != RuntimeError::None)
        return nullptr;
    const QDeadlineTimer deadline(m_lockWaitMs);
    auto file = TryOpen(path, local, mode, lock, error);
    while (error == RuntimeError::PermissionDenied && !deadline.hasExpired()) {
        QThread::msleep(RetryMs);
        file = TryOpen(path, local, mode, lock, error);
    }
    return file;
}
