#pragma once

enum class FileLock { None, Shared, Exclusive };

/// Locks a whole open file against other programs that lock it, until it is closed. Does not wait.
/// Returns 0 or an errno: EAGAIN when another program holds a lock against this one. A file open
/// only for reading is kept from writers, on a local disk also from other readers that want it for
/// themselves.
int TryLockFile(int descriptor, FileLock lock);
