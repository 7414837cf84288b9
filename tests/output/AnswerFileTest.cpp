#include "output/AnswerFile.h"

#include "output/OutputFiles.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestFolder.h"

#include <QFile>
#include <QThread>
#include <cerrno>
#include <functional>
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
        {Line("00001", Short), Short, 1},
        {Line("00040", Short) + Line("00041", Short), Short, 41},
        {Line("99998", Short) + Line("99999", Short), Short, 99999},
        {Line("00000", Short), Short, 0},
        {Line("12 45", Short), Short, 12}, // leading digits
        {Line("x0041", Short), Short, 0},
        {"00041\r\n", Short, 41}, // shorter than a record: read from its start
        {Line("00041", Short), Long, 0},
    };
    for (const auto &[content, length, number] : cases) {
        folder.Write("A.TXT", content);
        AnswerFile file(output, " C:\\A.TXT ");
        ASSERT_TRUE(file.Open());
        EXPECT_EQ(file.LastRecordNumber(length), number)
            << content.size() << ' ' << content.left(5).constData();
    }
}

TEST_F(AnswerFileTest, WhatACrashLeftBehindTheLastLineIsMended)
{
    const QByteArray record = QByteArray("000020702").leftJustified(Short, 'x');
    const QByteArray longRecord = record.leftJustified(Long, 'y');
    const QByteArray first = Line("000010702", Short);
    const struct
    {
        const char *what;
        QByteArray end; ///< behind the first record
        QByteArray mended;
    } cases[] = {
        {"nothing", "", ""},
        {"first byte", record.left(1), ""},
        {"half a kind", record.left(7), ""},
        {"all but a byte", record.chopped(1), ""},
        {"zeros that were never written", QByteArray(300, '\0'), ""},
        {"the rest zeros", record.left(100) + QByteArray(300, '\0'), ""},
        {"half the line end", record + '\r', record + "\r\n"},
        {"no line end", record, record + "\r\n"},
        {"the long layout's", longRecord, longRecord + "\r\n"},
        {"half of the long layout's line end", longRecord + '\r', longRecord + "\r\n"},
        {"between the two layouts", longRecord.left(1300), longRecord.left(1300) + "\r\n"},
        {"another kind", "000020603", "000020603\r\n"},
        {"a remark", "see below", "see below\r\n"},
        {"half of its line end", "see below\r", "see below\r\n"},
    };
    for (const auto &[what, end, mended] : cases) {
        for (const QByteArray &before : {first, Line("000010702", Long), QByteArray()}) {
            folder.Write("A.TXT", before + end);
            AnswerFile file(output, " C:\\A.TXT ");
            ASSERT_TRUE(file.Open());
            EXPECT_EQ(file.Mend(), 0) << what;
            EXPECT_TRUE(folder.Read("A.TXT") == before + mended) << what;
        }
    }
    for (const auto &[end, op] :
         {std::pair{"00002", FileOp::Truncate}, {"see below", FileOp::Write}}) {
        folder.Write("A.TXT", first + end);
        AnswerFile file(output, "C:\\A.TXT");
        ASSERT_TRUE(file.Open());
        SetFileFault([op = op](FileOp asked, const QString &) { return asked == op ? EIO : 0; });
        EXPECT_EQ(file.Mend(), 57) << end;
        SetFileFault({});
        EXPECT_EQ(folder.Read("A.TXT"), first + end);
    }
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(AnswerFileTest, LineBreaksBecomeBlanks)
{
    const struct
    {
        QByteArray line;
        QByteArray replacement;
        QByteArray result;
    } cases[] = {
        {"A\r\nB\rC\nD", "", "A  B C D"},
        {"A\r\nB", "   ", "A  B"},
        {"A\r\nB", "*+", "A**B"},
        {"A\r\nB", " +", "A  B"}, // the first byte is a blank
        {"A\nB", "\t", "A\tB"},   // a tab is no blank
        {"A\tB", "*", "A\tB"},
        {"\x8d\n\x8e\x91", "", "\x8d \x8e\x91"}, // half a character, then a line break
        {"", "", ""},
    };
    for (const auto &[line, replacement, result] : cases)
        EXPECT_EQ(BlankLineBreaks(line, replacement), result) << line.constData();
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
    SetFileFault({});
    EXPECT_EQ(folder.Read("A.TXT"), "first\r\nsecond\r\n");
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(AnswerFileTest, ALineThatCannotBeWrittenLeavesTheFileAsItWas)
{
    for (const bool isThere : {true, false}) {
        for (const FileOp op : {FileOp::Write, FileOp::Sync}) {
            QFile::remove(folder.Path("A.TXT"));
            if (isThere)
                folder.Write("A.TXT", "first\r\n");
            {
                AnswerFile file(output, "C:\\A.TXT");
                ASSERT_TRUE(file.Open());
                SetFileFault(
                    [op](FileOp asked, const QString &) { return asked == op ? ENOSPC : 0; });
                EXPECT_EQ(file.AppendLine("second"), 61);
                SetFileFault({});
            }
            EXPECT_EQ(QFile::exists(folder.Path("A.TXT")), isThere) << "no empty file is left";
            EXPECT_TRUE(!isThere || folder.Read("A.TXT") == "first\r\n");
        }
    }
    EXPECT_TRUE(boxes.Shown().empty()) << "a transaction may be open";
}

TEST_F(AnswerFileTest, AnOpeningThatWroteNothingTakesOnlyItsOwnFileAway)
{
    const auto openAndClose = [&](const std::function<void()> &meanwhile) {
        AnswerFile file(output, "C:\\A.TXT");
        EXPECT_TRUE(file.Open());
        EXPECT_TRUE(QFile::exists(folder.Path("A.TXT")));
        meanwhile();
    };
    openAndClose([] {});
    EXPECT_FALSE(QFile::exists(folder.Path("A.TXT")));
    openAndClose([&] {
        QFile::rename(folder.Path("A.TXT"), folder.Path("B.TXT"));
        folder.Write("A.TXT", "another's");
    });
    EXPECT_EQ(folder.Read("A.TXT"), "another's");
    folder.Write("A.TXT", "");
    openAndClose([] {});
    EXPECT_TRUE(QFile::exists(folder.Path("A.TXT"))) << "it was there before";
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
    SetFileFault({});
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
    const auto invalid = "75\r\nｴﾗｰ内容：パス名が無効です。";
    const struct
    {
        int error;
        QString path;
        QString box;
    } cases[] = {
        {EACCES, " C:\\A.TXT ", invalid},
        {0, "C:\\LINK.TXT", invalid},
        {0, "C:\\DANGLING.TXT", invalid},
        {0, "C:\\PIPE.TXT", invalid},
        {0, "C:\\NONE\\A.TXT", "76\r\nｴﾗｰ内容：パスが見つかりません。"},
    };
    for (const auto &[error, path, box] : cases) {
        SetFileFault([error = error](FileOp, const QString &) { return error; });
        EXPECT_FALSE(AnswerFile(output, path).Open()) << path.toStdString();
        SetFileFault({});
        ASSERT_EQ(boxes.Shown().size(), 1u);
        EXPECT_EQ(boxes.Shown()[0].title, "ﾌｧｲﾙｵ-ﾌﾟﾝｴﾗｰ");
        EXPECT_EQ(boxes.Shown()[0].style, 16 + 4096);
        EXPECT_EQ(boxes.TakeTexts()[0], "ｴﾗｰｺｰﾄﾞ：" + box + "\r\nﾌｧｲﾙ名：" + path.trimmed());
    }
    EXPECT_EQ(folder.Read("REAL.TXT"), "kept");
    EXPECT_FALSE(QFile::exists(folder.Path("NONE.TXT")));
}

TEST_F(AnswerFileTest, AFileThatAnotherProgramHolds)
{
    folder.Write("A.TXT", "first\r\n");
    int error = 0;
    auto holder = files.Open("C:\\A.TXT", FileMode::Append, FileLock::Exclusive, error);
    ASSERT_TRUE(holder);
    EXPECT_FALSE(AnswerFile(output, "C:\\A.TXT").Open());
    EXPECT_EQ(
        boxes.TakeTexts(),
        std::vector<QString>{"ｴﾗｰｺｰﾄﾞ：70\r\nｴﾗｰ内容：書き込みできません。\r\nﾌｧｲﾙ名：C:\\A.TXT"});
    EXPECT_EQ(folder.Read("A.TXT"), "first\r\n");
    files.SetLockWait(10'000);
    std::thread release([&] {
        QThread::msleep(50);
        holder.reset();
    });
    EXPECT_TRUE(AnswerFile(output, "C:\\A.TXT").Open()) << "a short lock is waited out";
    release.join();
}

TEST_F(AnswerFileTest, ModesAndAccessesOfNumberedFiles)
{
    const struct
    {
        int mode;
        int access;
        bool makesMissing;
        QByteArray content; ///< of a file "old" after "new" was appended; null: not opened
    } cases[] = {
        {OutputFiles::Append, 0, true, "oldnew"}, {OutputFiles::Binary, 0, false, "old"},
        {OutputFiles::Binary, 1, true, "oldnew"}, {OutputFiles::Binary, 2, true, "oldnew"},
        {OutputFiles::Binary, 3, false, {}},      {OutputFiles::Input, 1, false, "old"},
        {OutputFiles::Output, 0, true, "new"},    {OutputFiles::Random, 0, false, "old"},
        {OutputFiles::Random, 1, true, "oldnew"}, {OutputFiles::Random, -1, false, {}},
    };
    for (const auto &[mode, access, makesMissing, content] : cases) {
        SCOPED_TRACE(testing::Message() << "mode " << mode << " access " << access);
        QFile::remove(folder.Path("A.TXT"));
        output.CloseFileNo(output.OpenFileNo("C:\\A.TXT", mode, access, false));
        EXPECT_EQ(QFile::exists(folder.Path("A.TXT")), makesMissing);
        boxes.TakeTexts();

        folder.Write("A.TXT", "old");
        const int fileNo = output.OpenFileNo("C:\\A.TXT", mode, access, true);
        EXPECT_EQ(fileNo, content.isNull() ? 0 : 1);
        if (OpenFile *file = output.File(fileNo)) {
            file->Append("new");
            EXPECT_EQ(folder.Read("A.TXT"), content);
            // What the lock is for: whoever wants to do the same has to wait.
            EXPECT_EQ(output.OpenFileNo("C:\\A.TXT", mode, access, true), 0);
            EXPECT_EQ(boxes.TakeTexts().size(), 1u);
        }
        EXPECT_TRUE(output.CloseFileNo(fileNo));
        EXPECT_TRUE(boxes.Shown().empty());
    }
}

TEST_F(AnswerFileTest, NumbersOfOpenFiles)
{
    const auto open = [&](const QString &name) {
        return output.OpenFileNo("C:\\" + name, OutputFiles::Output, 0, false);
    };
    EXPECT_EQ(open("A.TXT"), 1);
    EXPECT_EQ(open("B.TXT"), 2);
    EXPECT_TRUE(output.CloseFileNo(2));
    EXPECT_EQ(output.File(2), nullptr);
    for (const int unknownMode : {-1, 5})
        EXPECT_EQ(output.OpenFileNo("C:\\D.TXT", unknownMode, 0, false), 2);
    EXPECT_FALSE(files.FileExists("C:\\D.TXT"));
    EXPECT_EQ(open("D.TXT"), 2) << "the lowest free number";
    EXPECT_EQ(open("E.TXT"), 3);
    EXPECT_TRUE(output.CloseFileNo(5)) << "not open";
    EXPECT_NE(output.File(1), nullptr);
}
