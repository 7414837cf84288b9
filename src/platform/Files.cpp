#include "platform/Files.h"

#include "platform/RuntimeError.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
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
        return O_RDWR | O_CREAT;
    case FileMode::Append:
        return O_RDWR | O_CREAT | O_APPEND;
    case FileMode::Output:
        return O_RDWR | O_CREAT; // emptied once the lock is held
    }
    return O_RDONLY;
}

/// Takes the lock in both of the machine's ways, so that a holder of either kind is seen.
bool TryLock(int descriptor, FileLock lock)
{
    if (::flock(descriptor, (lock == FileLock::Exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB) != 0)
        return false;
    struct flock range = {};
    // A record lock for writing needs a file open for writing; flock alone does for the others.
    const bool isWritable = (::fcntl(descriptor, F_GETFL) & O_ACCMODE) != O_RDONLY;
    range.l_type = lock == FileLock::Exclusive && isWritable ? F_WRLCK : F_RDLCK;
    range.l_whence = SEEK_SET;
    if (::fcntl(descriptor, F_SETLK, &range) == 0)
        return true;
    const int error = errno == EACCES ? EAGAIN : errno;
    ::flock(descriptor, LOCK_UN);
    errno = error;
    return false;
}

/// Takes the lock, if need be after waiting for its holder.
bool TakeLock(int descriptor, FileLock lock, int waitMs)
{
    constexpr int RetryMs = 10;
    const QDeadlineTimer deadline(waitMs);
    while (lock != FileLock::None && !TryLock(descriptor, lock)) {
        if (errno != EWOULDBLOCK || deadline.hasExpired())
            return false;
        QThread::msleep(RetryMs);
    }
    return true;
}

} // namespace

void SetFileFault(std::function<int(FileOp, const QString &)> fault)
{
    Fault() = std::move(fault);
}

OpenFile::OpenFile(int descriptor, QString path)
    : m_descriptor(descriptor)
    , m_path(std::move(path))
{
}

OpenFile::~OpenFile()
{
    ::close(m_descriptor);
}

qint64 OpenFile::Size() const
{
    struct stat status = {};
    return ::fstat(m_descriptor, &status) == 0 ? qint64(status.st_size) : 0;
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

int OpenFile::Append(QByteArrayView bytes)
{
    const qint64 before = Size();
    ::lseek(m_descriptor, 0, SEEK_END);
    const int error = WriteAll(bytes);
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

namespace {

/// Opens the file; a folder, which the machine would open for reading, is refused.
int OpenDescriptor(const QString &localPath, FileMode mode)
{
    const int descriptor = ::open(QFile::encodeName(localPath), FlagsOf(mode) | O_CLOEXEC, 0666);
    struct stat status = {};
    if (descriptor >= 0 && ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        ::close(descriptor);
        errno = EISDIR;
        return -1;
    }
    return descriptor;
}

} // namespace

bool Files::FileExists(const QString &path) const
{
    return QFileInfo(LocalPath(path)).isFile();
}

bool Files::FolderExists(const QString &path) const
{
    return QFileInfo(LocalPath(path)).isDir();
}

int Files::MakeFolder(const QString &path) const
{
    const QString local = LocalPath(path);
    if (local.isEmpty())
        return RuntimeError::PathNotFound;
    if (IsFaulty(FileOp::MakeFolder, path) || ::mkdir(QFile::encodeName(local), 0777) != 0)
        return errno == ENOENT ? RuntimeError::PathNotFound : RuntimeError::FromErrno(errno);
    return RuntimeError::None;
}

int Files::Remove(const QString &path) const
{
    if (IsFaulty(FileOp::Remove, path) || ::unlink(QFile::encodeName(LocalPath(path))) != 0)
        return RuntimeError::FromErrno(errno);
    return RuntimeError::None;
}

std::unique_ptr<OpenFile> Files::Open(const QString &path, FileMode mode, FileLock lock,
                                      int &error) const
{
    error = RuntimeError::None;
    const QString local = LocalPath(path);
    if (local.isEmpty()) {
        error = RuntimeError::PathNotFound;
        return nullptr;
    }
    const int descriptor = IsFaulty(FileOp::Open, path) ? -1 : OpenDescriptor(local, mode);
    if (descriptor < 0) {
        const bool isFolderMissing = errno == ENOENT && !QFileInfo(local).dir().exists();
        error = isFolderMissing ? RuntimeError::PathNotFound : RuntimeError::FromErrno(errno);
        return nullptr;
    }
    auto file = std::make_unique<OpenFile>(descriptor, path);
    if (!TakeLock(descriptor, lock, m_lockWaitMs))
        error = RuntimeError::FromErrno(errno);
    else if (mode == FileMode::Output)
        error = file->Truncate(0);
    return error == RuntimeError::None ? std::move(file) : nullptr;
}
