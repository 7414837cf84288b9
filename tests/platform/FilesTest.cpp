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

/// Another process that holds a record lock on a file while this object lives.
class OtherProcessLock
{
public:
    OtherProcessLock(const QString &localPath, short type)
    {
        const QByteArray path = QFile::encodeName(localPath);
        int ready[2] = {};
        EXPECT_EQ(::pipe(ready), 0);
        m_child = ::fork();
        if (m_child == 0) {
            const int file = ::open(path, O_RDWR);
            struct flock range = {};
            range.l_type = type;
            const char result = ::fcntl(file, F_SETLK, &range) == 0 ? 'y' : 'n';
            if (::write(ready[1], &result, 1) == 1)
                ::pause();
            ::_exit(0);
        }
        char result = 0;
        EXPECT_EQ(::read(ready[0], &result, 1), 1);
        EXPECT_EQ(result, 'y');
        ::close(ready[0]);
        ::close(ready[1]);
    }
    ~OtherProcessLock()
    {
        ::kill(m_child, SIGKILL);
        ::waitpid(m_child, nullptr, 0);
    }

private:
    pid_t m_child = -1;
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
    const struct
    {
        FileMode mode;
        QByteArray ofMissing; ///< the file after "new" was appended; null: could not be opened
        QByteArray ofExisting;
    } cases[] = {
        {FileMode::ReadWrite, "new", "old text, new"},
        {FileMode::Append, "new", "old text, new"},
        {FileMode::Output, "new", "new"},
    };
    for (const auto &[mode, ofMissing, ofExisting] : cases) {
        QFile::remove(folder.Path("A.TXT"));
        {
            const auto file = Open("C:\\A.TXT", mode);
            ASSERT_TRUE(file);
            EXPECT_EQ(file->Append("new"), 0);
        }
        EXPECT_EQ(folder.Read("A.TXT"), ofMissing) << int(mode);
        folder.Write("A.TXT", "old text, ");
        {
            const auto file = Open("C:\\A.TXT", mode);
            ASSERT_TRUE(file);
            EXPECT_EQ(error, 0);
            EXPECT_EQ(file->Append("new"), 0);
        }
        EXPECT_EQ(folder.Read("A.TXT"), ofExisting) << int(mode);
    }
}

TEST_F(FilesTest, ReadAtGivesFewerBytesAtTheEnd)
{
    folder.Write("A.TXT", "0123456789");
    const auto file = Open("C:\\A.TXT", FileMode::Read);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->Size(), 10);
    EXPECT_EQ(file->ReadAt(0, 3), "012");
    EXPECT_EQ(file->ReadAt(8, 3), "89");
    EXPECT_EQ(file->ReadAt(10, 3), "");
    EXPECT_EQ(file->ReadAt(2, 2), "23");
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
        {"C:\\NONE\\A.TXT", FileMode::Output, RuntimeError::PathNotFound},
        {"C:\\A.TXT\\B.TXT", FileMode::Output, RuntimeError::PathNotFound},
        {"C:\\OUT", FileMode::Append, RuntimeError::PathFileAccess},
        {"C:\\OUT", FileMode::Output, RuntimeError::PathFileAccess},
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
    constexpr struct
    {
        int error;
        int number;
    } cases[] = {
        {EACCES, 75}, {EPERM, 75},  {EROFS, 75},   {EISDIR, 75}, {EMFILE, 67},
        {ENFILE, 67}, {ENOSPC, 61}, {EDQUOT, 61},  {EIO, 57},    {ENAMETOOLONG, 52},
        {ENXIO, 71},  {EAGAIN, 70}, {ENOTDIR, 76}, {ENOENT, 53}, {ETXTBSY, 70},
    };
    for (const auto &[failure, number] : cases) {
        const FailingOp failing(FileOp::Open, failure);
        EXPECT_FALSE(Open("C:\\Ans.txt", FileMode::Append));
        EXPECT_EQ(error, number) << strerrorname_np(failure);
        EXPECT_EQ(failing.askedFor, "C:\\Ans.txt");
    }
    EXPECT_FALSE(files.FileExists("C:\\Ans.txt"));
}

TEST_F(FilesTest, EveryNumberHasADescriptionOfItsOwn)
{
    const QString general = RuntimeError::Description(-1);
    for (int failure = 1; failure < 134; ++failure)
        EXPECT_NE(RuntimeError::Description(RuntimeError::FromErrno(failure)), general) << failure;
    EXPECT_NE(RuntimeError::Description(RuntimeError::SubscriptOutOfRange), general);
    EXPECT_EQ(RuntimeError::Description(53), "ファイルが見つかりません。");
    EXPECT_EQ(RuntimeError::Description(70), "書き込みできません。");
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
    folder.Write("A.TXT", "old");
    for (const auto &[first, second, isOpened] : cases) {
        const auto holder = Open("C:\\A.TXT", FileMode::Append, first);
        ASSERT_TRUE(holder);
        const auto rival = Open("C:\\A.TXT", FileMode::Append, second);
        EXPECT_EQ(rival != nullptr, isOpened) << int(first) << int(second);
        EXPECT_EQ(error, isOpened ? 0 : 70) << int(first) << int(second);
    }
    EXPECT_TRUE(Open("C:\\A.TXT", FileMode::Append, Exclusive)) << "locks end with their file";
}

TEST_F(FilesTest, AFileOpenedForReadingCanBeLocked)
{
    folder.Write("A.TXT", "old");
    const auto holder = Open("C:\\A.TXT", FileMode::Read, FileLock::Exclusive);
    ASSERT_TRUE(holder) << error;
    EXPECT_FALSE(Open("C:\\A.TXT", FileMode::Read, FileLock::Exclusive));
    EXPECT_EQ(error, 70);
}

TEST_F(FilesTest, RecordLocksOfOtherProgramsCountToo)
{
    folder.Write("A.TXT", "old");
    {
        const OtherProcessLock writer(folder.Path("A.TXT"), F_WRLCK);
        EXPECT_FALSE(Open("C:\\A.TXT", FileMode::Append, FileLock::Exclusive));
        EXPECT_EQ(error, 70);
        EXPECT_FALSE(Open("C:\\A.TXT", FileMode::Output, FileLock::Shared));
        EXPECT_EQ(error, 70);
    }
    const OtherProcessLock reader(folder.Path("A.TXT"), F_RDLCK);
    EXPECT_FALSE(Open("C:\\A.TXT", FileMode::Append, FileLock::Exclusive));
    EXPECT_TRUE(Open("C:\\A.TXT", FileMode::Append, FileLock::Shared));
    EXPECT_EQ(folder.Read("A.TXT"), "old");
}

TEST_F(FilesTest, ALockedFileIsNotEmptied)
{
    folder.Write("A.TXT", "old");
    const auto holder = Open("C:\\A.TXT", FileMode::Append, FileLock::Exclusive);
    EXPECT_FALSE(Open("C:\\A.TXT", FileMode::Output, FileLock::Exclusive));
    EXPECT_EQ(error, 70);
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
        {FileOp::Write, EIO, 57},
        {FileOp::Sync, ENOSPC, 61}, // the bytes are in the file by then
        {FileOp::Sync, EDQUOT, 61},
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
    EXPECT_FALSE(files.FolderExists("C:\\OUT"));
    EXPECT_EQ(files.MakeFolder("C:\\OUT"), 0);
    EXPECT_TRUE(files.FolderExists("C:\\OUT\\"));
    EXPECT_FALSE(files.FileExists("C:\\OUT"));
    EXPECT_NE(files.MakeFolder("C:\\OUT"), 0);
    EXPECT_EQ(files.MakeFolder("C:\\NONE\\OUT"), RuntimeError::PathNotFound);
    EXPECT_EQ(files.MakeFolder("C:\\A.TXT\\OUT"), RuntimeError::PathNotFound);
    EXPECT_EQ(files.MakeFolder("\\\\nobody\\share\\OUT"), RuntimeError::PathNotFound);
    EXPECT_EQ(files.Remove("C:\\a.TXT"), 0);
    EXPECT_FALSE(files.FileExists("C:\\A.TXT"));
    EXPECT_EQ(files.Remove("C:\\A.TXT"), RuntimeError::FileNotFound);
    EXPECT_NE(files.Remove("C:\\OUT"), 0);
    EXPECT_TRUE(files.FolderExists("C:\\OUT"));
}

TEST_F(FilesTest, RefusedFoldersAndRemovals)
{
    folder.Write("A.TXT", "x");
    {
        const FailingOp failing(FileOp::MakeFolder, EACCES);
        EXPECT_EQ(files.MakeFolder("C:\\OUT"), RuntimeError::PathFileAccess);
        EXPECT_FALSE(files.FolderExists("C:\\OUT"));
    }
    const FailingOp failing(FileOp::Remove, EROFS);
    EXPECT_EQ(files.Remove("C:\\A.TXT"), RuntimeError::PathFileAccess);
    EXPECT_TRUE(files.FileExists("C:\\A.TXT"));
}
