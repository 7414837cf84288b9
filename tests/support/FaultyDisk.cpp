#include "support/FaultyDisk.h"

#include <map>
#include <sqlite3.h>

namespace {

using Op = FaultyDisk::Op;

/// The methods of the real disk's files, with ours in place of some.
struct Methods : sqlite3_io_methods
{
    const sqlite3_io_methods *real;
};

std::function<int(Op)> fault;
std::map<const sqlite3_io_methods *, Methods> methodsOf;
sqlite3_vfs *realVfs = nullptr;
sqlite3_vfs faultyVfs;

/// What the real disk does, unless it is to fail.
template <typename Real>
int Do(Op op, Real real)
{
    const int error = fault ? fault(op) : SQLITE_OK;
    return error != SQLITE_OK ? error : real();
}

const sqlite3_io_methods &RealOf(const sqlite3_file *file)
{
    return *static_cast<const Methods *>(file->pMethods)->real;
}

int Write(sqlite3_file *file, const void *bytes, int count, sqlite3_int64 at)
{
    return Do(Op::Write, [&] { return RealOf(file).xWrite(file, bytes, count, at); });
}

int Sync(sqlite3_file *file, int flags)
{
    return Do(Op::Sync, [&] { return RealOf(file).xSync(file, flags); });
}

int Lock(sqlite3_file *file, int level)
{
    const auto lock = [&] { return RealOf(file).xLock(file, level); };
    return level > SQLITE_LOCK_SHARED ? Do(Op::Lock, lock) : lock(); // a reader changes nothing
}

int Open(sqlite3_vfs *, const char *path, sqlite3_file *file, int flags, int *outFlags)
{
    file->pMethods = nullptr;
    const auto open = [&] { return realVfs->xOpen(realVfs, path, file, flags, outFlags); };
    const int result = flags & SQLITE_OPEN_CREATE ? Do(Op::Create, open) : open();
    if (const sqlite3_io_methods *real = file->pMethods) {
        Methods &methods = methodsOf[real] = {*real, real};
        methods.xWrite = Write;
        methods.xSync = Sync;
        methods.xLock = Lock;
        file->pMethods = &methods;
    }
    return result;
}

int Delete(sqlite3_vfs *, const char *path, int isSynced)
{
    return Do(Op::Delete, [&] { return realVfs->xDelete(realVfs, path, isSynced); });
}

} // namespace

FaultyDisk::FaultyDisk()
{
    realVfs = sqlite3_vfs_find(nullptr);
    faultyVfs = *realVfs;
    faultyVfs.zName = "faulty";
    faultyVfs.xOpen = Open;
    faultyVfs.xDelete = Delete;
    sqlite3_vfs_register(&faultyVfs, 1);
}

FaultyDisk::~FaultyDisk()
{
    fault = {};
    sqlite3_vfs_register(realVfs, 1);
    sqlite3_vfs_unregister(&faultyVfs);
}

void FaultyDisk::SetFault(std::function<int(Op)> newFault)
{
    fault = std::move(newFault);
}

int FaultyDisk::UsualError(Op op)
{
    static constexpr int errors[]
        = {SQLITE_CANTOPEN, SQLITE_BUSY, SQLITE_FULL, SQLITE_IOERR_FSYNC, SQLITE_IOERR_DELETE};
    return errors[int(op)];
}
