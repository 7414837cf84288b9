#include "platform/Files.h"

#include "platform/FileLocks.h"
#include "platform/RuntimeError.h"
#include "platform/System.h"
#include "support/QtPrinters.h"
#include "support/TestFolder.h"

#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <memory>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

enum class LockKind { Ours, Whole, Record };

/// A try for a lock as another program makes it, by its own opening of the file. Returns 0 or
/// errno.
int TryLock(int file, LockKind kind, FileLock lock)
{
    if (lock == FileLock::None || kind == LockKind::Ours)
        return TryLockFile(file, lock);
    const bool isWriter = lock == FileLock::Exclusive;
    struct flock range = {};
    range.l_type = isWriter ? F_WRLCK : F_RDLCK;
    const int result = kind == LockKind::Whole
                           ? ::flock(file, (isWriter ? LOCK_EX : LOCK_SH) | LOCK_NB)
                           : ::fcntl(file, F_OFD_SETLK, &range);
    return result == 0 ? 0 : errno;
}

class FilesTest : public testing::Test
{
protected:
    std::unique_ptr<OpenFile> Open(const QString &path, FileMode mode,
                                   FileLock lock = FileLock::None)
    {
        return files.Open(path, mode, lock, error);
    }

    const TestFolder folder;
    const Files files = folder.OnDriveC();
    int error = -1;
};

} // namespace

TEST_F(FilesTest, ModesCreateEmptyAndAppend)
{
    const std::pair<FileMode, QByteArray> cases[] = {
        {FileMode::ReadWrite, "old new"}, {FileMode::Append, "old new"}, {FileMode::Output, "new"}};
    for (const auto &[mode, ofExisting] : cases) {
        QFile::remove(folder.Path("A.TXT"));
        for (const QByteArray &expected : {QByteArray("new"), ofExisting}) {
            {
                const auto file = Open("C:\\A.TXT", mode);
                ASSERT_TRUE(file);
                EXPECT_EQ(error, 0);
                EXPECT_EQ(file->Append("new"), 0);
            }
            EXPECT_EQ(folder.Read("A.TXT"), expected) << int(mode);
            folder.Write("A.TXT", "old ");
        }
    }
}

TEST_F(FilesTest, WhatCannotBeOpened)
{
    folder.MakeFolder("OUT");
    folder.Write("A.TXT", "x");
    const struct
    {
        QString path;
        FileMode mode;
        int error;
    } cases[] = {
        {"C:\\NONE.TXT", FileMode::Read, RuntimeError::FileNotFound},
        {"C:\\NONE\\A.TXT", FileMode::Append, RuntimeError::PathNotFound},
        {"C:\\A.TXT\\B.TXT", FileMode::Output, RuntimeError::PathNotFound},
        {"C:\\OUT", FileMode::Read, RuntimeError::PathFileAccess},
        {"\\\\nobody\\share\\A.TXT", FileMode::Append, RuntimeError::PathNotFound},
        {"", FileMode::Append, RuntimeError::PathNotFound},
        {"C:\\A.TXT", FileMode::New, RuntimeError::FileExists},
        {QString("C:\\A.TXT") + QChar(0), FileMode::Output, RuntimeError::BadFileName},
    };
    for (const auto &[path, mode, expected] : cases) {
        EXPECT_FALSE(Open(path, mode)) << path.toStdString();
        EXPECT_EQ(error, expected) << path.toStdString() << ' ' << int(mode);
    }
    EXPECT_EQ(folder.Read("A.TXT"), "x");
    SetFileFault([](FileOp op, const QString &) { return op == FileOp::Lock ? ENOLCK : 0; });
    EXPECT_FALSE(Open("C:\\A.TXT", FileMode::Append, FileLock::Exclusive));
    SetFileFault({});
    EXPECT_EQ(error, RuntimeError::DeviceIo) << "a share without locks is not waited for";
}

TEST_F(FilesTest, LocksHoldOffOtherOpenersWhateverTheirKind)
{
    using enum FileLock;
    const struct
    {
        FileLock first;
        FileLock second;
        bool isOpened;
    } cases[]
        = {{Exclusive, Exclusive, false}, {Exclusive, Shared, false}, {Shared, Exclusive, false},
           {Shared, Shared, true},        {Exclusive, None, true},    {None, Exclusive, true}};
    for (const auto &[first, second, isOpened] : cases) {
        for (const FileMode mode : {FileMode::Append, FileMode::Read, FileMode::Output}) {
            SCOPED_TRACE(testing::Message() << int(first) << int(second) << int(mode));
            folder.Write("A.TXT", "old");
            for (const LockKind kind : {LockKind::Ours, LockKind::Whole, LockKind::Record}) {
                if (kind == LockKind::Record && mode == FileMode::Read)
                    continue; // a record lock for writing needs a file that is open for writing
                const int other = ::open(folder.Path("A.TXT").toUtf8(), O_RDWR | O_CLOEXEC);
                EXPECT_EQ(TryLock(other, kind, first), 0);
                EXPECT_EQ(Open("C:\\A.TXT", mode, second) != nullptr, isOpened) << int(kind);
                EXPECT_EQ(error, isOpened ? 0 : 70) << int(kind);
                ::close(other);
            }
            EXPECT_EQ(folder.Read("A.TXT"), isOpened && mode == FileMode::Output ? "" : "old");
            const auto holder = Open("C:\\A.TXT", FileMode::Append, first);
            ASSERT_TRUE(holder) << "locks end with their file";
            for (const LockKind kind : {LockKind::Ours, LockKind::Whole, LockKind::Record}) {
                const int other = ::open(folder.Path("A.TXT").toUtf8(), O_RDWR | O_CLOEXEC);
                EXPECT_EQ(TryLock(other, kind, second) == 0, isOpened) << int(kind);
                ::close(other);
            }
        }
    }
}

TEST_F(FilesTest, AWriteCutShortByAFullDiskIsTakenBack)
{
    TakeFileSizeLimitAsFullDisk();
    rlimit before = {};
    ::getrlimit(RLIMIT_FSIZE, &before);
    for (const FileMode mode : {FileMode::Append, FileMode::Output, FileMode::ReadWrite}) {
        folder.Write("A.TXT", "");
        const auto file = Open("C:\\A.TXT", mode);
        ASSERT_TRUE(file);
        ASSERT_EQ(file->Append("0123456789"), 0);
        const rlimit limit{25, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit); // also holds for what a failed test would print
        const int result = file->Append(QByteArray(100, 'x'));
        ::setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(result, 61);
        EXPECT_EQ(file->Append("AB"), 0);
        EXPECT_EQ(folder.Read("A.TXT"), "0123456789AB") << int(mode);
    }
}

TEST_F(FilesTest, FoldersAndRemovedFiles)
{
    folder.Write("A.TXT", "x");
    for (int turn = 0; turn < 2; ++turn)
        EXPECT_EQ(files.MakeFolder("C:\\OUT"), 0) << "one that is there by now is no failure";
    EXPECT_EQ(files.MakeFolder("C:\\A.TXT"), RuntimeError::FileExists);
    EXPECT_EQ(files.MakeFolder("C:\\NONE\\OUT"), RuntimeError::PathNotFound);
    EXPECT_TRUE(files.FolderExists("C:\\out\\") && !files.FolderExists("C:\\A.TXT"));
    EXPECT_TRUE(files.FileExists("C:\\a.txt") && !files.FileExists("C:\\OUT"));
    EXPECT_EQ(files.Remove("C:\\a.TXT"), 0);
    EXPECT_EQ(files.Remove("C:\\A.TXT"), RuntimeError::FileNotFound);
}
