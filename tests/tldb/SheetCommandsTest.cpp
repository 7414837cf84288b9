#include "ToolRun.h"
#include "lines/LinesFixture.h"

#include <QFile>

namespace {

class SheetCommands : public ListDatabase
{
protected:
    QString Read(const QString &path) const
    {
        QFile opened(path);
        EXPECT_TRUE(opened.open(QIODevice::ReadOnly));
        return QString::fromUtf8(opened.readAll());
    }

    const QString dir = file.folder.Path();
    const QString csv = file.folder.Path("list.csv");
};

} // namespace

TEST_F(SheetCommands, OutAndBackFromAShell)
{
    AddOrder(1);
    AddLine(1, 1, 1);
    AddLine(1, 1, 2, "AnsLimDate = '20260520', AnsVal = 5");
    AddOrder(2, "AccHinName = '배송'");
    AddLine(2, 1, 1, "OdrNo = 'X-1'");
    const ToolRun all({"answers", "export", dir, csv});
    EXPECT_EQ(all.out, csv + ": 3 lines\n") << all.err.toStdString();
    EXPECT_EQ(ToolRun({"answers", "check", dir, csv}).out,
              csv + ": 0 changes, 0 splits, 3 unchanged, 0 refused\n");

    QString text = Read(csv);
    text.replace("100,,2026/05/20", "50,2026/12/8,2026/05/20");
    text.replace("5,2026/05/20", "5,12月8日");
    text += "1,1,,,,,,,,,,,,20,261208\r\n77,1,1,,,,,,,,,,,1\r\n";
    file.folder.Write("list.csv", text.toUtf8());
    const QString before = Stored("*");
    const ToolRun check({"answers", "check", dir, csv});
    EXPECT_EQ(check.exitCode, ExitCode::Found);
    EXPECT_EQ(QString(check.out).remove(csv + ':'),
              "2: 1-1-1: quantity 100 to 50, date none to 20261208\n"
              "3: 1-1-2: refused: no date \"12月8日\"\n"
              "4: 2-1-1: quantity 100 to 50, date none to 20261208\n"
              "5: 1-1-2: a split, quantity 20, date 20261208\n"
              "6: 77-1-1: refused: no such line in the list\n"
              " 2 changes, 1 splits, 0 unchanged, 2 refused\n");
    EXPECT_EQ(Stored("*"), before);

    const ToolRun one({"answers", "export", "--order", "X-", "--by", "specified", "--from",
                       "20260520", "--shift-jis", dir, csv});
    EXPECT_EQ(one.out, csv + ": 1 lines\n");
    EXPECT_TRUE(one.err.contains("outside of Shift-JIS")) << one.err.toStdString();
    EXPECT_EQ(ToolRun({"answers", "check", dir, csv}).exitCode, ExitCode::Ok);
    const QString book = file.folder.Path("list.XLSX");
    EXPECT_EQ(ToolRun({"answers", "export", dir, book}).exitCode, ExitCode::Ok);
    const ToolRun checkBook({"answers", "check", dir, book});
    EXPECT_EQ(checkBook.exitCode, ExitCode::Found);
    EXPECT_TRUE(checkBook.err.contains("a workbook")) << checkBook.err.toStdString();
}

TEST_F(SheetCommands, WhatCanNotBeDone)
{
    const QString nowhere = file.folder.Path("none/list.csv");
    const std::pair<QStringList, int> cases[] = {
        {{"answers", "export", dir, nowhere}, ExitCode::Found},
        {{"answers", "export", file.folder.Path("none"), csv}, ExitCode::Found},
        {{"answers", "check", dir, nowhere}, ExitCode::Found},
        {{"answers", "export", dir, csv, "--from", "20260230"}, ExitCode::WrongUse},
        {{"answers", "export", dir, csv, "--by", "moon"}, ExitCode::WrongUse},
        {{"answers", "export", dir}, ExitCode::WrongUse},
        {{"answers"}, ExitCode::WrongUse},
    };
    for (const auto &[arguments, exitCode] : cases) {
        const ToolRun run(arguments);
        EXPECT_EQ(run.exitCode, exitCode) << arguments.join(' ').toStdString();
        EXPECT_EQ(run.err.count('\n'), 1) << run.err.toStdString();
        EXPECT_FALSE(QFile::exists(csv));
    }
}
