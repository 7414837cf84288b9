#include "output/OutputFolders.h"

#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"
#include "support/Variable.h"

#include <QDir>
#include <QFile>
#include <cerrno>
#include <gtest/gtest.h>
#include <thread>

namespace {

constexpr auto NoFolder = "ファイルを出力するフォルダが存在しません。\r\n"
                          "出力フォルダの設定、属性を確認してください。";
constexpr auto NotWritable = "ファイルの書き込みが出来ません。\r\n"
                             "出力フォルダの設定、属性を確認してください。";

class OutputFoldersTest : public testing::Test
{
protected:
    void TearDown() override { SetFileFault({}); }

    void AddCustomer(const QString &code, const QString &path, int isOn = 1)
    {
        file.Insert("TLMT0040", {{"CustCD", code}, {"NokiInfPath", path}, {"NokiInfKBN", isOn}});
        file.Run("UPDATE TLMT0040 SET CustName = '顧客' || CustCD");
    }

    /// The entries of a folder of drive C.
    QStringList Entries(const QString &name = {}) const
    {
        QStringList names
            = QDir(file.folder.Path(name)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        names.removeAll("TLDB0010.MDB");
        return names;
    }

    ScriptedBoxes boxes;
    TestDatabase file;
    Files files{DrivesOf("C=" + file.folder.Path().toUtf8()
                         + "\n\\\\server\\share=" + file.folder.Path("SHARE").toUtf8())};
    bDAO db;
    QString message;
};

} // namespace

TEST_F(OutputFoldersTest, FoldersAreMadeAndTested)
{
    file.folder.MakeFolder("EDI");
    file.folder.Write("@@@@@Writable@@@@@.txt", "left by a crash");
    file.folder.Write("ANS.TXT", "records");
    const TestFolder home;
    const Variable data("XDG_DATA_HOME", home.Path("data"));
    const struct
    {
        QString path;
        QString folder; ///< that must be there afterwards, nothing left in it
    } cases[] = {
        {"  C:\\EDI\\\\OUT\\A\\ANS.TXT ", file.folder.Path("EDI/OUT/A")},
        {"C:\\edi\\out\\ANS.TXT", file.folder.Path("EDI/OUT")},
        {"C:\\ANS.TXT", file.folder.Path()},
        {"\\\\server\\share\\sub\\ans.txt", file.folder.Path("SHARE/sub")},
        {"\\\\server\\share\\ans.txt", file.folder.Path("SHARE")},
        {file.folder.Path("own/deep/ans.txt"), file.folder.Path("own/deep")},
        {"D:\\ANS.TXT", home.Path("data/talven/d")}, // no entry: under the user's data
    };
    for (const auto &[path, folder] : cases) {
        EXPECT_TRUE(CheckOutputFolder(files, path, message)) << path.toStdString();
        EXPECT_EQ(message, "");
        EXPECT_TRUE(QFile::exists(folder)) << path.toStdString();
        EXPECT_FALSE(QFile::exists(folder + "/@@@@@Writable@@@@@.txt")) << path.toStdString();
    }
    EXPECT_EQ(file.folder.Read("ANS.TXT"), "records");
    EXPECT_EQ(Entries("EDI"), QStringList{"OUT"}) << "a folder is found whatever its case";
}

TEST_F(OutputFoldersTest, TheTestFileIsNeverWrittenThroughALink)
{
    file.folder.Write("WORTH.TXT", "keeping");
    for (const char *target : {"WORTH.TXT", "NONE.TXT"}) {
        ASSERT_TRUE(
            QFile::link(file.folder.Path(target), file.folder.Path("@@@@@Writable@@@@@.txt")));
        EXPECT_TRUE(CheckOutputFolder(files, "C:\\ANS.TXT", message));
        EXPECT_EQ(Entries(), QStringList{"WORTH.TXT"});
    }
    EXPECT_EQ(file.folder.Read("WORTH.TXT"), "keeping");
}

TEST_F(OutputFoldersTest, ProgramsThatStartForTheFirstTimeAtOnce)
{
    for (int round = 0; round < 50 && !HasFailure(); ++round) {
        const QString path = QString("C:\\%1\\A\\B\\C\\ANS.TXT").arg(round);
        const auto start = [&] {
            QString told;
            EXPECT_TRUE(CheckOutputFolder(files, path, told)) << told.toStdString();
        };
        std::thread second(start);
        start();
        second.join();
    }
}

TEST_F(OutputFoldersTest, WhatIsWrongWithAFolder)
{
    file.folder.MakeFolder("EDI");
    file.folder.Write("FILE", "x");
    const struct
    {
        const char *path;
        const char *message;
        FileOp failing = FileOp::Open;
        int error = 0;
    } cases[] = {
        {"  ", "出力パスが設定されていません。"},
        {"C:\\EDI\\OUT\\ANS.TXT", NoFolder, FileOp::MakeFolder, EACCES},
        {"C:\\FILE\\ANS.TXT", NoFolder},
        {"\\\\nobody\\share\\ANS.TXT", NoFolder},
        {"C:ANS.TXT", NoFolder},
        {"\\\\a.txt", NoFolder},
        {"C:\\EDI\\ANS.TXT", NotWritable, FileOp::Open, EACCES}, // a read-only folder
        {"C:\\EDI\\ANS.TXT", NotWritable, FileOp::Open, EEXIST}, // planted again and again
        {"C:\\EDI\\ANS.TXT", NotWritable, FileOp::Remove, EACCES},
        {"\\\\server\\ANS.TXT", NotWritable}, // no share, no folder
    };
    for (const auto &[path, expected, failing, error] : cases) {
        SetFileFault([failing = failing, error = error](FileOp op, const QString &) {
            return op == failing ? error : 0;
        });
        EXPECT_FALSE(CheckOutputFolder(files, path, message)) << path;
        EXPECT_EQ(message, expected) << path;
        EXPECT_EQ(Entries("EDI"), QStringList());
    }
}

TEST_F(OutputFoldersTest, AFailingPathIsNamedWithItsFirstCustomer)
{
    file.folder.Write("FILE", "x");
    AddCustomer("C3", "C:\\FILE\\O'NEIL.TXT");
    AddCustomer("C2", "C:\\FILE\\O'NEIL.TXT");
    AddCustomer("C1", "C:\\FILE\\O'NEIL.TXT", 0);
    AddCustomer("C4", "C:\\OUT\\ANS.TXT");
    AddCustomer("C5", "");
    AddCustomer("C6", "C:\\NONE\\ANS.TXT", 0);
    file.Open(db);
    EXPECT_FALSE(CheckAnswerOutputPaths(db, files));
    EXPECT_EQ(boxes.TakeTexts(),
              std::vector{NoFolder
                          + QString("\r\n\r\n得意先コード：C2\r\n得意先名　　：顧客C2\r\n"
                                    "情報種名　　：納期回答情報\r\n"
                                    "出力パス　　：C:\\FILE\\O'NEIL.TXT")});
    file.Run("DELETE FROM TLMT0040 WHERE NokiInfPath LIKE '%FILE%'");
    EXPECT_TRUE(CheckAnswerOutputPaths(db, files));
    EXPECT_EQ(Entries(), (QStringList{"FILE", "OUT"})) << "what is switched off is not made";
    EXPECT_TRUE(boxes.Shown().empty());

    file.Run("DROP TABLE TLMT0040");
    EXPECT_FALSE(CheckAnswerOutputPaths(db, files));
    EXPECT_EQ(boxes.Shown().size(), 1u) << "the database's error";
}
