#include "output/AnswerFile.h"

#include "output/OutputFiles.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestFolder.h"

#include <QFile>
#include <QThread>
#include <cerrno>
#include <gtest/gtest.h>
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
        {"00041", Short, 41}, // shorter than a record: read from its start
        {Line("00041", Short - 1), Short, 41},
        {Line("00041", Short), Long, 0},
    };
    for (const auto &[content, length, number] : cases) {
        folder.Write("A.TXT", content);
        EXPECT_EQ(NextRecordSeqNo(files, " C:\\A.TXT ", length), number)
            << content.size() << ' ' << content.left(5).constData();
    }
    EXPECT_EQ(NextRecordSeqNo(files, "C:\\NONE.TXT", Short), 0);
    EXPECT_FALSE(files.FileExists("C:\\NONE.TXT"));
    EXPECT_TRUE(boxes.Shown().empty()) << "the read-back complains of nothing";
}

TEST_F(AnswerFileTest, WhatACrashLeftBehindTheLastLineIsMended)
{
    const QByteArray record = QByteArray("000020702").leftJustified(Short, 'x');
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
        {"longer than a record", record + "00003", record + "00003\r\n"},
        {"another kind", "000020603", "000020603\r\n"},
        {"a remark", "see below", "see below\r\n"},
        {"half of its line end", "see below\r", "see below\r\n"},
    };
    for (const auto &[what, end, mended] : cases) {
        for (const QByteArray &before : {first, QByteArray()}) {
            folder.Write("A.TXT", before + end);
            EXPECT_TRUE(MendAnswerFile(files, " C:\\A.TXT ", Short)) << what;
            EXPECT_TRUE(folder.Read("A.TXT") == before + mended) << what;
        }
    }
    EXPECT_TRUE(MendAnswerFile(files, "C:\\NONE.TXT", Short));
    EXPECT_FALSE(files.FileExists("C:\\NONE.TXT"));
    EXPECT_TRUE(boxes.Shown().empty());

    for (const auto &[end, op] :
         {std::pair{"00002", FileOp::Truncate}, {"see below", FileOp::Write}}) {
        folder.Write("A.TXT", first + end);
        SetFileFault([op = op](FileOp asked, const QString &) { return asked == op ? EIO : 0; });
        EXPECT_FALSE(MendAnswerFile(files, "C:\\A.TXT", Short)) << end;
        SetFileFault({});
        EXPECT_EQ(folder.Read("A.TXT"), first + end);
        EXPECT_EQ(boxes.TakeTexts().size(), 1u);
    }
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
    EXPECT_TRUE(AppendAnswerLine(output, "C:\\A.TXT", "first"));
    SetFileFault({});
    EXPECT_EQ(operations, (std::vector{FileOp::Open, FileOp::Write, FileOp::Sync}));
    EXPECT_TRUE(AppendAnswerLine(output, " C:\\A.TXT ", "second"));
    EXPECT_EQ(folder.Read("A.TXT"), "first\r\nsecond\r\n");
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(AnswerFileTest, WhatFailsIsShownAndLeavesTheFileAlone)
{
    const struct
    {
        FileOp op;
        int error;
        const char *path;
        const char *box;
    } cases[] = {
        {FileOp::Write, ENOSPC, "C:\\A.TXT",
         "ｴﾗｰｺｰﾄﾞ：61\r\nｴﾗｰ内容：ディスクの空き容量が不足しています。\r\nﾌｧｲﾙ名：C:\\A.TXT"},
        {FileOp::Sync, ENOSPC, "C:\\A.TXT",
         "ｴﾗｰｺｰﾄﾞ：61\r\nｴﾗｰ内容：ディスクの空き容量が不足しています。\r\nﾌｧｲﾙ名：C:\\A.TXT"},
        {FileOp::Open, EACCES, " C:\\A.TXT ",
         "ｴﾗｰｺｰﾄﾞ：75\r\nｴﾗｰ内容：パス名が無効です。\r\nﾌｧｲﾙ名：C:\\A.TXT"},
        {FileOp::Open, 0, "C:\\NONE\\A.TXT",
         "ｴﾗｰｺｰﾄﾞ：76\r\nｴﾗｰ内容：パスが見つかりません。\r\nﾌｧｲﾙ名：C:\\NONE\\A.TXT"},
    };
    folder.Write("A.TXT", "first\r\n");
    for (const auto &[op, error, path, box] : cases) {
        SetFileFault([op = op, error = error](FileOp asked, const QString &) {
            return asked == op ? error : 0;
        });
        EXPECT_FALSE(AppendAnswerLine(output, path, "second")) << path;
        SetFileFault({});
        ASSERT_EQ(boxes.Shown().size(), 1u);
        EXPECT_EQ(boxes.Shown()[0].title, "ﾌｧｲﾙｵ-ﾌﾟﾝｴﾗｰ");
        EXPECT_EQ(boxes.Shown()[0].style, 16 + 4096);
        EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{box});
        EXPECT_EQ(folder.Read("A.TXT"), "first\r\n");
    }
    EXPECT_TRUE(AppendAnswerLine(output, "C:\\A.TXT", "second")) << "no lock is left behind";
}

TEST_F(AnswerFileTest, AFileThatAnotherProgramHolds)
{
    folder.Write("A.TXT", "first\r\n");
    int error = 0;
    auto holder = files.Open("C:\\A.TXT", FileMode::Append, FileLock::Exclusive, error);
    ASSERT_TRUE(holder);
    EXPECT_FALSE(AppendAnswerLine(output, "C:\\A.TXT", "second"));
    EXPECT_EQ(
        boxes.TakeTexts(),
        std::vector<QString>{"ｴﾗｰｺｰﾄﾞ：70\r\nｴﾗｰ内容：書き込みできません。\r\nﾌｧｲﾙ名：C:\\A.TXT"});
    EXPECT_EQ(folder.Read("A.TXT"), "first\r\n");
    files.SetLockWait(10'000);
    std::thread release([&] {
        QThread::msleep(50);
        holder.reset();
    });
    EXPECT_TRUE(AppendAnswerLine(output, "C:\\A.TXT", "second")) << "a short lock is waited out";
    release.join();
    EXPECT_EQ(folder.Read("A.TXT"), "first\r\nsecond\r\n");
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
