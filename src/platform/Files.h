#pragma once

#include "platform/DrivePaths.h"
#include "platform/FileLocks.h"

#include <QByteArray>
#include <QString>
#include <functional>
#include <memory>

enum class FileOp { Open, Lock, Write, Sync, Truncate, MakeFolder, Remove };

/// Test seam: while set, it is asked before each operation on a file (path as the system writes
/// it); a result other than 0 is the errno with which the operation then fails.
void SetFileFault(std::function<int(FileOp, const QString &path)> fault);

enum class FileMode {
    Read,      ///< must exist
    ReadWrite, ///< created when missing
    Append,    ///< created when missing; writes go to the end
    Output,    ///< created or emptied
    New,       ///< created; must not exist
};

/// One open file; closed, and its lock given up, when destroyed.
class OpenFile
{
public:
    OpenFile(int descriptor, QString path, QString localPath, bool isNew);
    ~OpenFile();
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;

    /// True when this opening made the file.
    bool IsNew() const { return m_isNew; }

    qint64 Size() const;

    /// Up to `length` bytes from byte `position` (0 is the first); fewer at the end of the file.
    QByteArray ReadAt(qint64 position, qint64 length) const;

    /// Writes all bytes at the end and sees them safely onto the disk, with the file's name when
    /// they are its first. Returns 0 or the run-time's error number; after an error the file is as
    /// long as it was before.
    int Append(QByteArrayView bytes);

    /// Cuts the file off at this length. Returns 0 or the run-time's error number.
    int Truncate(qint64 length);

    /// True while the file is the one that its name leads to: another program may have moved it
    /// away, or put another in its place.
    bool IsInPlace() const;

    /// Takes the file out of its folder; this opening keeps it. Returns 0 or the run-time's error
    /// number.
    int Remove();

private:
    int WriteAll(QByteArrayView bytes);
    int SyncFolder() const;

    int m_descriptor;
    QString m_path;
    QString m_localPath;
    bool m_isNew;
};

/// The files and folders that the system's paths name. Every result that is an int is 0 or the
/// run-time's error number; a path that the machine would cut at a NUL gives 52, and names nothing.
class Files
{
public:
    Files() = default;
    explicit Files(DrivePaths drives)
        : m_drives(std::move(drives))
    {
    }

    bool FileExists(const QString &path) const;
    bool FolderExists(const QString &path) const;

    /// Makes the folder in a folder that is there. A folder that somebody else has made by now is
    /// no failure.
    int MakeFolder(const QString &path) const;

    /// Makes the folder in which the path's drive lives, when that is one of the user's own.
    int MakeDrive(const QString &path) const;

    int Remove(const QString &path) const;

    /// How long Open waits for another program to give up its lock.
    void SetLockWait(int milliseconds) { m_lockWaitMs = milliseconds; }

    /// Opens a file; nothing, and the number in `error`, when it can't be opened or another program
    /// holds a lock against it for longer than the wait. A link in the file's place is not
    /// followed, and what is no file (a pipe, a device) not waited for: both give error 75.
    std::unique_ptr<OpenFile> Open(const QString &path, FileMode mode, FileLock lock,
                                   int &error) const;

    /// The machine's own path, for libraries that open files themselves.
    QString LocalPath(const QString &path) const { return m_drives.ToLocal(path); }

private:
    int FindLocal(const QString &path, QString &local) const;
    std::unique_ptr<OpenFile> TryOpen(const QString &path, const QString &local, FileMode mode,
                                      FileLock lock, int &error) const;

    DrivePaths m_drives;
    int m_lockWaitMs = 2'000;
};
