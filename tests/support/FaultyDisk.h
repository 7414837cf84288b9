#pragma once

#include <QtGlobal>
#include <functional>

/// The disk under every database that is opened while it lives. It asks before each operation that
/// changes something; an answer other than 0 is the SQLite error with which the operation fails.
class FaultyDisk
{
public:
    enum class Op { Create, Lock, Write, Sync, Delete };

    FaultyDisk();
    ~FaultyDisk();
    Q_DISABLE_COPY(FaultyDisk)

    /// An empty fault ends the faults.
    void SetFault(std::function<int(Op)> fault);

    /// The error that each operation fails with on a real disk, the full one among them.
    static int UsualError(Op op);
};
