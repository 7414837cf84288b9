#include "output/AnswerFile.h"

#include "output/OutputFiles.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestFolder.h"

#include <QFile>
#include <QThread>
#include <cerrno>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

namespace {

constexpr int Short = 1236;
constexpr int Long = 1350;

QByteArray Line(const QByteArray &number, int length)
{
    return number.leftJustified(length, 'x') + "\r\n";
}

class AnswerFileTest : public testing::Test
{
protected:
    void TearDown() override { SetFileFault({}); }

    const TestFolder folder;
    Files files = folder.OnDriveC();
    OutputFiles output{files};
    ScriptedBoxes boxes;
};

} // namespace

TEST_F(AnswerFileTest, NumberOfTheLastRecord)
{
    const struct
    {
        QByteArray content;
        int length;
        int number;
    } cases[] = {
        {"", Short, 0},
        {Line("00040", Short) + Line("00041", Short), Short, 41},
        {Line("12 45", Short), Short, 12}, // leading digits
        {"00041\r\n", Short, 41},          // shorter than a record: read from its start
        {Line("00041", Short), Long, 0},
    };
    for (const auto &[content, length, number] : cases) {
        folder.Write("A.TXT", content);
        AnswerFile file(output, " C:\\A.TXT ");
        ASSERT_TRUE(file.Open());
        EXPECT_EQ(file.LastRecordNumber(length), number) << content.left(5).constData();
    }
}

TEST_F(AnswerFileTest, WhatACrashLeftBehindTheLastLineIsMended)
{
    const QByteArray record = QByteArray("000020702").leftJustified(Short, 'x');
    const QByteArray longRecord = record.leftJustified(Long, 'y');
    const QByteArray first = Line("000010702", Short);
    const std::pair<QByteArray, QByteArray> cases[] = {
        {"", ""},
        {record.left(7), ""}, // half a kind
        {record.chopped(1), ""},
        {QByteArray(300, '\0'), ""}, // zeros that were never written
        {record.left(100) + QByteArray(300, '\0'), ""},
        {record, record + "\r\n"},
        {record + '\r', record + "\r\n"},
        {longRecord.left(1300), longRecord.left(1300) + "\r\n"}, // between the two layouts
        {longRecord + '\r', longRecord + "\r\n"},
        {"000020603", "000020603\r\n"}, // another kind
    };
    for (const auto &[end, mended] : cases) {
        for (const QByteArray &before : {first, Line("000010702", Long), QByteArray()}) {
            folder.Write("A.TXT", before + end);
            AnswerFile file(output, "C:\\A.TXT");
            ASSERT_TRUE(file.Open());
            EXPECT_EQ(file.Mend(), 0);
            EXPECT_TRUE(folder.Read("A.TXT") == before + mended) << end.size() << ' ' << end.data();
        }
    }
    for (const auto &[end, op] :
         {std::pair{"00002", FileOp::Truncate}, {"a remark", FileOp::Write}}) {
        folder.Write("A.TXT", first + end);
        AnswerFile file(output, "C:\\A.TXT");
        ASSERT_TRUE(file.Open());
        SetFileFault([op = op](FileOp asked, const QString &) { return asked == op ? EIO : 0; });
        EXPECT_EQ(file.Mend(), 57) << end;
        EXPECT_EQ(folder.Read("A.TXT"), first + end);
    }
}

TEST_F(AnswerFileTest, LineBreaksBecomeBlanks)
{
    EXPECT_EQ(BlankLineBreaks("A\r\nB\rC\tD\n", ""), "A  B C\tD ");
    EXPECT_EQ(BlankLineBreaks("A\r\nB", "*+"), "A**B");
    EXPECT_EQ(BlankLineBreaks("\x8d\n\x8e\x91", ""), "\x8d \x8e\x91") << "half a character";
}

TEST_F(AnswerFileTest, LinesAreAddedToTheEndAndReachTheDisk)
{
    std::vector<FileOp> operations;
    SetFileFault([&](FileOp op, const QString &) {
        operations.push_back(op);
        return 0;
    });
    using enum FileOp;
    for (const auto &[line, expected] :
         {std::pair{"first", std::vector{Open, Lock, Write, Sync, Sync}},
          {"second", std::vector{Open, Lock, Write, Sync}}}) {
        AnswerFile file(output, " C:\\A.TXT ");
        EXPECT_TRUE(file.Open());
        EXPECT_EQ(file.AppendLine(line), 0);
        EXPECT_EQ(operations, expected) << "a new file's folder reaches the disk, too";
        operations.clear();
    }
    EXPECT_EQ(folder.Read("A.TXT"), "first\r\nsecond\r\n");
}

TEST_F(AnswerFileTest, ALineThatCannotBeWrittenLeavesTheFileAsItWas)
{
    for (const FileOp op : {FileOp::Write, FileOp::Sync}) {
        for (const QByteArray before : {"", "first\r\n"}) {
            if (!before.isEmpty())
                folder.Write("A.TXT", before);
            {
                AnswerFile file(output, "C:\\A.TXT");
                ASSERT_TRUE(file.Open());
                SetFileFault(
                    [op](FileOp asked, const QString &) { return asked == op ? ENOSPC : 0; });
                EXPECT_EQ(file.AppendLine("second"), 61);
                SetFileFault({});
            }
            EXPECT_EQ(files.FileExists("C:\\A.TXT"), !before.isEmpty()) << "no empty file is left";
            EXPECT_TRUE(before.isEmpty() || folder.Read("A.TXT") == before);
        }
        QFile::remove(folder.Path("A.TXT"));
    }
    EXPECT_TRUE(boxes.Shown().empty()) << "a transaction may be open";
}

TEST_F(AnswerFileTest, AnOpeningThatWroteNothingTakesOnlyItsOwnFileAway)
{
    {
        AnswerFile file(output, "C:\\A.TXT");
        EXPECT_TRUE(file.Open());
        QFile::rename(folder.Path("A.TXT"), folder.Path("B.TXT"));
        folder.Write("A.TXT", "another's");
    }
    EXPECT_EQ(folder.Read("A.TXT"), "another's");
    folder.Write("A.TXT", "");
    EXPECT_TRUE(AnswerFile(output, "C:\\A.TXT").Open());
    EXPECT_TRUE(files.FileExists("C:\\A.TXT")) << "it was there before";
}

TEST_F(AnswerFileTest, NobodyWritesIntoAFileThatWasTakenAwayBeforeItsLock)
{
    files.SetLockWait(10'000);
    int taken = 0;
    SetFileFault([&](FileOp op, const QString &) {
        if (op == FileOp::Lock && ++taken <= 2)
            QFile::remove(folder.Path("A.TXT"));
        return 0;
    });
    AnswerFile file(output, "C:\\A.TXT");
    EXPECT_TRUE(file.Open());
    EXPECT_EQ(taken, 3);
    EXPECT_EQ(file.AppendLine("line"), 0);
    EXPECT_EQ(folder.Read("A.TXT"), "line\r\n");
}

TEST_F(AnswerFileTest, WhatCannotBeOpenedIsShown)
{
    folder.Write("REAL.TXT", "kept");
    ASSERT_TRUE(QFile::link(folder.Path("REAL.TXT"), folder.Path("LINK.TXT")));
    ASSERT_TRUE(QFile::link(folder.Path("NONE.TXT"), folder.Path("DANGLING.TXT")));
    ASSERT_EQ(::mkfifo(folder.Path("PIPE.TXT").toUtf8(), 0600), 0);
    folder.Write("HELD.TXT", "kept");
    int error = 0;
    auto holder = files.Open("C:\\HELD.TXT", FileMode::Append, FileLock::Exclusive, error);
    const std::pair<const char *, const char *> cases[] = {
        {"C:\\LINK.TXT", "75\r\nｴﾗｰ内容：パス名が無効です。"},
        {"C:\\DANGLING.TXT", "75\r\nｴﾗｰ内容：パス名が無効です。"},
        {"C:\\PIPE.TXT", "75\r\nｴﾗｰ内容：パス名が無効です。"},
        {"C:\\NONE\\A.TXT", "76\r\nｴﾗｰ内容：パスが見つかりません。"},
        {"C:\\HELD.TXT", "70\r\nｴﾗｰ内容：書き込みできません。"},
    };
    for (const auto &[path, told] : cases) {
        EXPECT_FALSE(AnswerFile(output, QString(" %1 ").arg(path)).Open()) << path;
        ASSERT_EQ(boxes.Shown().size(), 1u) << path;
        EXPECT_EQ(boxes.Shown()[0].title, "ﾌｧｲﾙｵ-ﾌﾟﾝｴﾗｰ");
        EXPECT_EQ(boxes.TakeTexts()[0], QString("ｴﾗｰｺｰﾄﾞ：%1\r\nﾌｧｲﾙ名：%2").arg(told, path));
    }
    EXPECT_EQ(folder.Read("REAL.TXT") + folder.Read("HELD.TXT"), "keptkept");
    EXPECT_FALSE(files.FileExists("C:\\NONE.TXT"));

    files.SetLockWait(10'000);
    std::thread release([&] {
        QThread::msleep(50);
        holder.reset();
    });
    EXPECT_TRUE(AnswerFile(output, "C:\\HELD.TXT").Open()) << "a short lock is waited out";
    release.join();
}

TEST_F(AnswerFileTest, NumbersOfOpenFiles)
{
    for (const int expected : {1, 2, 3})
        EXPECT_EQ(output.OpenFileNo("C:\\A.TXT", OutputFiles::Append, 0, false), expected);
    EXPECT_TRUE(output.CloseFileNo(2));
    EXPECT_EQ(output.File(2), nullptr);
    EXPECT_EQ(output.OpenFileNo("C:\\B.TXT", OutputFiles::Output, 0, true), 2) << "the lowest";
    EXPECT_NE(output.File(1), nullptr);
}
