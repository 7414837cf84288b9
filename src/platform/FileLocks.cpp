#include "platform/FileLocks.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace {

long FileSystemOf(int descriptor)
{
    struct statfs system = {};
    return ::fstatfs(descriptor, &system) == 0 ? long(system.f_type) : 0;
}

/// True when nobody else's machine has a part in the file's locks.
bool IsOnLocalDisk(int descriptor)
{
    constexpr long ZfsMagic = 0x2fc12fc1;
    constexpr long WithoutDevice[]
        = {BTRFS_SUPER_MAGIC, OVERLAYFS_SUPER_MAGIC, RAMFS_MAGIC, TMPFS_MAGIC, ZfsMagic};
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return false;
    const bool hasDevice = major(status.st_dev) != 0; // a share has a number, but no device
    return hasDevice || std::ranges::count(WithoutDevice, FileSystemOf(descriptor)) != 0;
}

/// An SMB server refuses to read and write what is locked, also to its holder when the machine
/// sends his bytes through another opening of the file. So one byte where no file ever reaches
/// stands for all of them; it meets whoever locks the whole file just the same.
bool RefusesLockedBytes(int descriptor)
{
    const long system = FileSystemOf(descriptor);
    return system == long(CIFS_SUPER_MAGIC) || system == long(SMB2_SUPER_MAGIC);
}

/// The lock that shares keep at their server. It belongs to this opening of the file, so that
/// another one in the same program neither passes it nor drops it.
int TryRecordLock(int descriptor, FileLock lock)
{
    // A lock for writing needs a file that is open for writing.
    const bool isWritable = (::fcntl(descriptor, F_GETFL) & O_ACCMODE) != O_RDONLY;
    struct flock range = {};
    range.l_type = lock == FileLock::Exclusive && isWritable ? F_WRLCK : F_RDLCK;
    range.l_whence = SEEK_SET;
    if (RefusesLockedBytes(descriptor)) {
        range.l_start = off_t(1) << 62;
        range.l_len = 1;
    }
    if (TEMP_FAILURE_RETRY(::fcntl(descriptor, F_OFD_SETLK, &range)) == 0)
        return 0;
    return errno == EACCES ? EAGAIN : errno; // some servers' word for "held"
}

void DropRecordLock(int descriptor)
{
    struct flock range = {};
    range.l_type = F_UNLCK;
    range.l_whence = SEEK_SET;
    ::fcntl(descriptor, F_OFD_SETLK, &range);
}

/// The lock that a share may turn into a record lock of its server, which would then meet the one
/// above; on a local disk the two do not know of each other.
int TryWholeLock(int descriptor, FileLock lock)
{
    const int operation = (lock == FileLock::Exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB;
    return TEMP_FAILURE_RETRY(::flock(descriptor, operation)) == 0 ? 0 : errno;
}

bool IsUnknownLock(int error)
{
    return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
}

} // namespace

int TryLockFile(int descriptor, FileLock lock)
{
    if (lock == FileLock::None)
        return 0;
    const int error = TryRecordLock(descriptor, lock);
    if (IsUnknownLock(error))
        return TryWholeLock(descriptor, lock);
    if (error != 0 || !IsOnLocalDisk(descriptor))
        return error;
    const int wholeError = TryWholeLock(descriptor, lock);
    if (wholeError != 0)
        DropRecordLock(descriptor);
    return wholeError;
}
