#include "support/FaultyDisk.h"

#include <new>
#include <sqlite3.h>

namespace {

using Op = FaultyDisk::Op;

std::function<int(Op)> fault;
sqlite3_vfs *realVfs = nullptr;

int Ask(Op op)
{
    return fault ? fault(op) : SQLITE_OK;
}

/// An open file; the real one stands behind it in memory.
struct File : sqlite3_file
{
    sqlite3_file *Real() { return reinterpret_cast<sqlite3_file *>(this + 1); }
};

/// Calls the real file's method of this place in its table.
template <auto Method, typename... Arguments>
int Forward(sqlite3_file *file, Arguments... arguments)
{
    sqlite3_file *real = static_cast<File *>(file)->Real();
    return (real->pMethods->*Method)(real, arguments...);
}

template <Op op, auto Method, typename... Arguments>
int ForwardUnlessFaulty(sqlite3_file *file, Arguments... arguments)
{
    const int error = Ask(op);
    return error != SQLITE_OK ? error : Forward<Method>(file, arguments...);
}

int Lock(sqlite3_file *file, int level)
{
    // A reader's lock changes nothing.
    const int error = level > SQLITE_LOCK_SHARED ? Ask(Op::Lock) : SQLITE_OK;
    return error != SQLITE_OK ? error : Forward<&sqlite3_io_methods::xLock>(file, level);
}

using Methods = sqlite3_io_methods;
const Methods fileMethods = {
    1,
    Forward<&Methods::xClose>,
    Forward<&Methods::xRead, void *, int, sqlite3_int64>,
    ForwardUnlessFaulty<Op::Write, &Methods::xWrite, const void *, int, sqlite3_int64>,
    Forward<&Methods::xTruncate, sqlite3_int64>,
    ForwardUnlessFaulty<Op::Sync, &Methods::xSync, int>,
    Forward<&Methods::xFileSize, sqlite3_int64 *>,
    Lock,
    Forward<&Methods::xUnlock, int>,
    Forward<&Methods::xCheckReservedLock, int *>,
    Forward<&Methods::xFileControl, int, void *>,
    Forward<&Methods::xSectorSize>,
    Forward<&Methods::xDeviceCharacteristics>,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
};

int Open(sqlite3_vfs *, const char *path, sqlite3_file *memory, int flags, int *outFlags)
{
    File *file = new (memory) File;
    file->pMethods = nullptr;
    const int error = flags & SQLITE_OPEN_CREATE ? Ask(Op::Create) : SQLITE_OK;
    if (error != SQLITE_OK)
        return error;
    const int result = realVfs->xOpen(realVfs, path, file->Real(), flags, outFlags);
    if (result == SQLITE_OK)
        file->pMethods = &fileMethods;
    return result;
}

int Delete(sqlite3_vfs *, const char *path, int isSynced)
{
    const int error = Ask(Op::Delete);
    return error != SQLITE_OK ? error : realVfs->xDelete(realVfs, path, isSynced);
}

sqlite3_vfs faultyVfs;

} // namespace

FaultyDisk::FaultyDisk()
{
    realVfs = sqlite3_vfs_find(nullptr);
    faultyVfs = *realVfs;
    faultyVfs.zName = "faulty";
    faultyVfs.szOsFile = int(sizeof(File)) + realVfs->szOsFile;
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
    switch (op) {
    case Op::Create:
        return SQLITE_CANTOPEN;
    case Op::Lock:
        return SQLITE_BUSY;
    case Op::Write:
        return SQLITE_FULL;
    case Op::Sync:
        return SQLITE_IOERR_FSYNC;
    case Op::Delete:
        return SQLITE_IOERR_DELETE;
    }
    return SQLITE_IOERR;
}
