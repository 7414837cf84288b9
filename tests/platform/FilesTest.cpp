#include "platform/Files.h"

#include "platform/RuntimeError.h"
#include "support/QtPrinters.h"
#include "support/TestFolder.h"

#include <QFile>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <memory>
#include <sys/resource.h>
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
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit{bytes, m_old.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }

private:
    rlimit m_old = {};
    void (*m_oldHandler)(int) = nullptr;
};

/// A record lock as another program would hold it, on a file of its own opening.
class OtherProgramsLock
{
public:
    OtherProgramsLock(const QString &localPath, short type)
        : m_file(::open(QFile::encodeName(localPath), O_RDWR))
    {
        struct flock range = {};
        range.l_type = type;
        EXPECT_EQ(::fcntl(m_file, F_OFD_SETLK, &range), 0);
    }
    ~OtherProgramsLock() { ::close(m_file); }

private:
    int m_file;
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
    };
    for (const auto &[path, mode, expected] : cases) {
        EXPECT_FALSE(Open(path, mode)) << path;
        EXPECT_EQ(error, expected) << path << ' ' << int(mode);
    }
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

TEST_F(FilesTest, RecordLocksOfOtherProgramsCountToo)
{
    folder.Write("A.TXT", "old");
    {
        const OtherProgramsLock writer(folder.Path("A.TXT"), F_WRLCK);
        EXPECT_FALSE(Open("C:\\A.TXT", FileMode::Append, FileLock::Exclusive));
        EXPECT_EQ(error, 70);
        EXPECT_FALSE(Open("C:\\A.TXT", FileMode::Output, FileLock::Shared));
        EXPECT_EQ(error, 70);
    }
    const OtherProgramsLock reader(folder.Path("A.TXT"), F_RDLCK);
    EXPECT_FALSE(Open("C:\\A.TXT", FileMode::Append, FileLock::Exclusive));
    EXPECT_TRUE(Open("C:\\A.TXT", FileMode::Append, FileLock::Shared));
    EXPECT_EQ(folder.Read("A.TXT"), "old");
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
    EXPECT_EQ(files.MakeFolder("C:\\OUT"), 0);
    EXPECT_TRUE(files.FolderExists("C:\\OUT\\"));
    EXPECT_FALSE(files.FileExists("C:\\OUT"));
    for (const char *path : {"C:\\NONE\\OUT", "C:\\A.TXT\\OUT", "\\\\nobody\\share\\OUT"})
        EXPECT_EQ(files.MakeFolder(path), RuntimeError::PathNotFound) << path;
    EXPECT_EQ(files.Remove("C:\\a.TXT"), 0);
    EXPECT_FALSE(files.FileExists("C:\\A.TXT"));
    EXPECT_EQ(files.Remove("C:\\A.TXT"), RuntimeError::FileNotFound);
}
