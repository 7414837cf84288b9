#include "platform/Files.h"

#include "platform/RuntimeError.h"
#include "platform/System.h"
#include "support/QtPrinters.h"
#include "support/TestFolder.h"

#include <QFile>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <memory>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Makes one kind of operation fail while it lives, and notes the path it was asked for.
class FailingOp
{
public:
    FailingOp(FileOp failing, int error)
    {
        SetFileFault([this, failing, error](FileOp op, const QString &path) {
            if (op != failing)
                return 0;
            askedFor = path;
            return error;
        });
    }
    ~FailingOp() { SetFileFault({}); }

    QString askedFor;
};

/// Limits the length that files may have, as a full disk does: a write stops half way.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        TakeFileSizeLimitAsFullDisk();
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit{bytes, m_old.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_old); }

private:
    rlimit m_old = {};
};

enum class LockKind { Whole, OfProcess, OfOpening };

/// Another program that tries for a lock on a file, and has it as long as it lives.
class OtherProgram
{
public:
    OtherProgram(const QString &localPath, LockKind kind, FileLock lock)
    {
        const QByteArray name = QFile::encodeName(localPath);
        int ends[2] = {};
        EXPECT_EQ(::pipe(ends), 0);
        m_child = ::fork();
        if (m_child == 0) {
            const char isHeld = Lock(::open(name, O_RDWR), kind, lock) == 0;
            ::_exit(::write(ends[1], &isHeld, 1) == 1 ? ::pause() : 1);
        }
        char isHeld = false;
        EXPECT_EQ(::read(ends[0], &isHeld, 1), 1);
        m_isHeld = isHeld;
        ::close(ends[0]);
        ::close(ends[1]);
    }
    ~OtherProgram()
    {
        ::kill(m_child, SIGKILL);
        ::waitpid(m_child, nullptr, 0);
    }
    bool HoldsLock() const { return m_isHeld; }

private:
    static int Lock(int file, LockKind kind, FileLock lock)
    {
        const bool isWriter = lock == FileLock::Exclusive;
        if (kind == LockKind::Whole)
            return ::flock(file, (isWriter ? LOCK_EX : LOCK_SH) | LOCK_NB);
        struct flock range = {};
        range.l_type = isWriter ? F_WRLCK : F_RDLCK;
        return ::fcntl(file, kind == LockKind::OfProcess ? F_SETLK : F_OFD_SETLK, &range);
    }

    pid_t m_child;
    bool m_isHeld;
};

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
        const char *path;
        FileMode mode;
        int error;
    } cases[] = {
        {"C:\\NONE.TXT", FileMode::Read, RuntimeError::FileNotFound},
        {"C:\\NONE\\A.TXT", FileMode::Read, RuntimeError::PathNotFound},
        {"C:\\NONE\\A.TXT", FileMode::Append, RuntimeError::PathNotFound},
        {"C:\\A.TXT\\B.TXT", FileMode::Output, RuntimeError::PathNotFound},
        {"C:\\OUT", FileMode::Read, RuntimeError::PathFileAccess},
        {"\\\\nobody\\share\\A.TXT", FileMode::Append, RuntimeError::PathNotFound},
        {"", FileMode::Append, RuntimeError::PathNotFound},
        {"C:\\A.TXT", FileMode::New, RuntimeError::FileExists},
    };
    for (const auto &[path, mode, expected] : cases) {
        EXPECT_FALSE(Open(path, mode)) << path;
        EXPECT_EQ(error, expected) << path << ' ' << int(mode);
    }
    EXPECT_EQ(folder.Read("A.TXT"), "x");
}

TEST_F(FilesTest, APathIsNeverCutAtANul)
{
    folder.Write("A.TXT", "x");
    const QString path = QString("C:\\A.TXT") + QChar(0) + ".TXT";
    for (const FileMode mode : {FileMode::Read, FileMode::Append, FileMode::Output}) {
        EXPECT_FALSE(Open(path, mode));
        EXPECT_EQ(error, RuntimeError::BadFileName);
    }
    EXPECT_EQ(files.Remove(path), RuntimeError::BadFileName);
    EXPECT_EQ(files.MakeFolder(QString("C:\\OUT") + QChar(0) + "2"), RuntimeError::BadFileName);
    EXPECT_FALSE(files.FolderExists("C:\\OUT"));
    EXPECT_FALSE(files.FileExists(path));
    EXPECT_EQ(folder.Read("A.TXT"), "x");
}

TEST_F(FilesTest, FailuresOfTheSystemHaveTheRunTimesNumbers)
{
    constexpr std::pair<int, int> cases[] = {
        {EACCES, 75}, {EPERM, 75},  {EROFS, 75},   {EISDIR, 75}, {EMFILE, 67},
        {ENFILE, 67}, {ENOSPC, 61}, {EDQUOT, 61},  {EIO, 57},    {ENAMETOOLONG, 52},
        {ENXIO, 71},  {EAGAIN, 70}, {ENOTDIR, 76}, {ENOENT, 53}, {ETXTBSY, 70},
    };
    for (const auto &[failure, number] : cases) {
        const FailingOp failing(FileOp::Open, failure);
        EXPECT_FALSE(Open("C:\\Ans.txt", FileMode::Append));
        EXPECT_EQ(error, number) << strerrorname_np(failure);
        EXPECT_NE(RuntimeError::Description(number), RuntimeError::Description(-1)) << number;
        EXPECT_EQ(failing.askedFor, "C:\\Ans.txt");
    }
    EXPECT_FALSE(files.FileExists("C:\\Ans.txt"));
}

TEST_F(FilesTest, LocksHoldOffOtherOpeners)
{
    using enum FileLock;
    constexpr struct
    {
        FileLock first;
        FileLock second;
        bool isOpened;
    } cases[] = {
        {Exclusive, Exclusive, false}, {Exclusive, Shared, false}, {Shared, Exclusive, false},
        {Shared, Shared, true},        {Exclusive, None, true},    {None, Exclusive, true},
    };
    for (const auto &[first, second, isOpened] : cases) {
        for (const FileMode mode : {FileMode::Append, FileMode::Read, FileMode::Output}) {
            folder.Write("A.TXT", "old");
            const auto holder = Open("C:\\A.TXT", FileMode::Append, first);
            ASSERT_TRUE(holder);
            const auto rival = Open("C:\\A.TXT", mode, second);
            EXPECT_EQ(rival != nullptr, isOpened) << int(first) << int(second) << int(mode);
            EXPECT_EQ(error, isOpened ? 0 : 70) << int(first) << int(second) << int(mode);
            EXPECT_EQ(holder->ReadAt(1, 9), isOpened && mode == FileMode::Output ? "" : "ld");
        }
    }
    EXPECT_TRUE(Open("C:\\A.TXT", FileMode::Append, Exclusive)) << "locks end with their file";
}

TEST_F(FilesTest, LocksOfOtherProgramsCountWhateverTheirKind)
{
    using enum FileLock;
    folder.Write("A.TXT", "old");
    for (const LockKind kind : {LockKind::Whole, LockKind::OfProcess, LockKind::OfOpening}) {
        for (const FileLock theirs : {Exclusive, Shared}) {
            for (const FileLock ours : {Exclusive, Shared}) {
                SCOPED_TRACE(testing::Message() << int(kind) << int(theirs) << int(ours));
                const bool isShared = theirs == Shared && ours == Shared;
                {
                    const OtherProgram first(folder.Path("A.TXT"), kind, theirs);
                    ASSERT_TRUE(first.HoldsLock());
                    EXPECT_EQ(Open("C:\\A.TXT", FileMode::Output, ours) != nullptr, isShared);
                    EXPECT_EQ(error, isShared ? 0 : 70);
                    EXPECT_EQ(folder.Read("A.TXT"), isShared ? "" : "old");
                }
                const auto file = Open("C:\\A.TXT", FileMode::Append, ours);
                ASSERT_TRUE(file) << "a lock ends with its holder";
                const OtherProgram second(folder.Path("A.TXT"), kind, theirs);
                EXPECT_EQ(second.HoldsLock(), isShared);
                folder.Write("A.TXT", "old");
            }
        }
    }
}

TEST_F(FilesTest, AShareWithoutLocksIsToldAndNotWaitedFor)
{
    const FailingOp failing(FileOp::Lock, ENOLCK);
    EXPECT_FALSE(Open("C:\\A.TXT", FileMode::Append, FileLock::Exclusive));
    EXPECT_EQ(error, RuntimeError::DeviceIo);
}

TEST_F(FilesTest, AFailedAppendLeavesTheFileAsItWas)
{
    folder.Write("A.TXT", "first record\r\n");
    const auto file = Open("C:\\A.TXT", FileMode::Append);
    ASSERT_TRUE(file);
    constexpr struct
    {
        FileOp op;
        int error;
        int number;
    } cases[] = {
        {FileOp::Write, ENOSPC, 61},
        {FileOp::Sync, ENOSPC, 61}, // the bytes are in the file by then
    };
    for (const auto &[op, failure, number] : cases) {
        const FailingOp failing(op, failure);
        EXPECT_EQ(file->Append("second record\r\n"), number);
        EXPECT_EQ(folder.Read("A.TXT"), "first record\r\n");
        EXPECT_EQ(failing.askedFor, "C:\\A.TXT");
    }
    EXPECT_EQ(file->Append("third record\r\n"), 0);
    EXPECT_EQ(folder.Read("A.TXT"), "first record\r\nthird record\r\n");
}

TEST_F(FilesTest, AWriteCutShortByAFullDiskIsTakenBack)
{
    for (const FileMode mode : {FileMode::Append, FileMode::Output, FileMode::ReadWrite}) {
        folder.Write("A.TXT", "");
        const auto file = Open("C:\\A.TXT", mode);
        ASSERT_TRUE(file);
        ASSERT_EQ(file->Append("0123456789"), 0);
        int result = 0;
        {
            const FileSizeLimit limit(25); // also holds for what a failed test would print
            result = file->Append(QByteArray(100, 'x'));
        }
        EXPECT_EQ(result, 61);
        EXPECT_EQ(folder.Read("A.TXT"), "0123456789");
        EXPECT_EQ(file->Append("AB"), 0);
        EXPECT_EQ(folder.Read("A.TXT"), "0123456789AB") << int(mode);
    }
}

TEST_F(FilesTest, FoldersAndRemovedFiles)
{
    folder.Write("A.TXT", "x");
    EXPECT_TRUE(files.FileExists("C:\\a.txt"));
    EXPECT_FALSE(files.FolderExists("C:\\A.TXT"));
    for (int turn = 0; turn < 2; ++turn)
        EXPECT_EQ(files.MakeFolder("C:\\OUT"), 0) << "one that is there by now is no failure";
    EXPECT_EQ(files.MakeFolder("C:\\A.TXT"), RuntimeError::FileExists);
    EXPECT_TRUE(files.FolderExists("C:\\OUT\\"));
    EXPECT_FALSE(files.FileExists("C:\\OUT"));
    for (const char *path : {"C:\\NONE\\OUT", "C:\\A.TXT\\OUT", "\\\\nobody\\share\\OUT"})
        EXPECT_EQ(files.MakeFolder(path), RuntimeError::PathNotFound) << path;
    EXPECT_EQ(files.Remove("C:\\a.TXT"), 0);
    EXPECT_FALSE(files.FileExists("C:\\A.TXT"));
    EXPECT_EQ(files.Remove("C:\\A.TXT"), RuntimeError::FileNotFound);
}
