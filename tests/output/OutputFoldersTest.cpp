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

    void AddCustomer(const char *code, const char *path, int isOn = 1)
    {
        file.Insert("TLMT0040", {{"CustCD", code},
                                 {"CustName", QString("顧客") + code},
                                 {"NokiInfPath", path},
                                 {"NokiInfKBN", isOn}});
    }

    bool Check(const QString &kind = "0702")
    {
        message = "before";
        return CheckInfoOutputPaths(db, files, kind, message);
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
    const QString own = file.folder.Path("own");
    const struct
    {
        QString path;
        QString folder; ///< that must be there afterwards, nothing left in it
    } cases[] = {
        {"C:\\EDI\\OUT\\ANS.TXT", "EDI/OUT"},
        {"  C:\\NEW\\A\\B\\ANS.TXT ", "NEW/A/B"},
        {"C:\\EDI\\\\OUT2\\ANS.TXT", "EDI/OUT2"},
        {"C:\\ANS.TXT", ""},
        {"\\\\server\\share\\sub\\ans.txt", "SHARE/sub"}, // the server alone is no folder
        {"\\\\server\\share\\ans.txt", "SHARE"},
        {own + "/deep/ans.txt", "own/deep"},
        {"C:\\edi\\out\\ANS.TXT", "EDI/OUT"},
    };
    for (const auto &[path, folder] : cases) {
        EXPECT_TRUE(CheckOutputFolder(files, path, message)) << path.toStdString();
        EXPECT_EQ(message, "");
        EXPECT_TRUE(QFile::exists(file.folder.Path(folder))) << path.toStdString();
        EXPECT_FALSE(Entries(folder).contains("@@@@@Writable@@@@@.txt")) << path.toStdString();
    }
    EXPECT_EQ(file.folder.Read("ANS.TXT"), "records");
    EXPECT_FALSE(Entries("EDI").contains("out")) << "an existing folder is found whatever its case";
}

TEST_F(OutputFoldersTest, ABareFileNameStandsInTheCurrentFolder)
{
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(file.folder.Path()));
    QStringList opened;
    SetFileFault([&](FileOp op, const QString &path) {
        if (op == FileOp::Open)
            opened += QDir::cleanPath(files.LocalPath(path));
        return 0;
    });
    EXPECT_TRUE(CheckOutputFolder(files, "ANS.TXT", message));
    QDir::setCurrent(before);
    EXPECT_EQ(opened, QStringList{"@@@@@Writable@@@@@.txt"});
    EXPECT_EQ(Entries(), QStringList());
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

TEST_F(OutputFoldersTest, ADriveWithoutAnEntryIsMadeUnderTheUsersData)
{
    const TestFolder home;
    const Variable data("XDG_DATA_HOME", home.Path("data"));
    for (const auto &[path, folder] : {std::pair{"D:\\ANS.TXT", "data/talven/d"},
                                       {"E:\\EDI\\OUT\\ANS.TXT", "data/talven/e/EDI/OUT"}}) {
        EXPECT_TRUE(CheckOutputFolder(files, path, message)) << message.toStdString();
        EXPECT_TRUE(files.FolderExists(home.Path(folder))) << folder;
    }
    QDir(home.Path("data")).removeRecursively();
    home.Write("data", "");
    EXPECT_FALSE(CheckOutputFolder(files, "D:\\ANS.TXT", message));
    EXPECT_EQ(message, NoFolder);
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
    int made = 0; // by the other one, between the removal and the making
    SetFileFault(
        [&](FileOp op, const QString &) { return op == FileOp::Open && ++made <= 2 ? EEXIST : 0; });
    EXPECT_TRUE(CheckOutputFolder(files, "C:\\ANS.TXT", message));
    EXPECT_EQ(made, 3);
}

TEST_F(OutputFoldersTest, WhatIsWrongWithAFolder)
{
    file.folder.MakeFolder("EDI");
    file.folder.Write("FILE", "x");
    const struct
    {
        const char *path;
        FileOp failing;
        int error;
        const char *message;
    } cases[] = {
        {"", FileOp::Open, 0, "出力パスが設定されていません。"},
        {"C:\\EDI\\OUT\\ANS.TXT", FileOp::MakeFolder, EACCES, NoFolder},
        {"C:\\FILE\\ANS.TXT", FileOp::Open, 0, NoFolder},
        {"\\\\nobody\\share\\ANS.TXT", FileOp::Open, 0, NoFolder},
        {"C:ANS.TXT", FileOp::Open, 0, NoFolder},
        {"D:ANS.TXT", FileOp::Open, 0, NoFolder},
        {"\\\\a.txt", FileOp::Open, 0, NoFolder},
        {"C:\\EDI\\ANS.TXT", FileOp::Open, EACCES, NotWritable}, // a read-only folder
        {"C:\\EDI\\ANS.TXT", FileOp::Open, ENOSPC, NotWritable},
        {"C:\\EDI\\ANS.TXT", FileOp::Open, EEXIST, NotWritable}, // planted again and again
        {"C:\\EDI\\ANS.TXT", FileOp::Remove, EACCES, NotWritable},
        {"\\\\server\\ANS.TXT", FileOp::Open, 0, NotWritable}, // no share, no folder
    };
    for (const auto &[path, failing, error, expected] : cases) {
        SetFileFault([failing = failing, error = error](FileOp op, const QString &) {
            return op == failing ? error : 0;
        });
        EXPECT_FALSE(CheckOutputFolder(files, path, message)) << path;
        EXPECT_EQ(message, expected) << path;
        EXPECT_EQ(Entries("EDI"), QStringList());
    }
}

TEST_F(OutputFoldersTest, AKindHasItsOwnColumns)
{
    constexpr struct
    {
        const char *kind;
        const char *path;
        const char *isOn;
        const char *name;
    } kinds[] = {
        {"0702", "NokiInfPath", "NokiInfKBN", "納期回答情報"},
        {"1004", "RsvPath2", "RsvInfKBN2", "返品受諾情報"},
    };
    file.Insert("TLMT0040", {{"CustCD", "C1"}, {"CustName", "顧客"}});
    file.Open(db);
    file.folder.Write("FILE", "x");
    for (const auto &[kind, path, isOn, name] : kinds) {
        EXPECT_TRUE(Check(kind)) << "switched off: " << kind;
        file.Run(QString("UPDATE TLMT0040 SET %1 = 2").arg(isOn));
        EXPECT_TRUE(Check(kind)) << "no path: " << kind;
        file.Run(QString("UPDATE TLMT0040 SET %1 = 'C:\\FILE\\%2.TXT'").arg(path, kind));
        EXPECT_FALSE(Check(kind)) << kind;
        EXPECT_EQ(message, QString("%1\r\n\r\n得意先コード：C1\r\n得意先名　　：顧客\r\n"
                                   "情報種名　　：%2\r\n出力パス　　：C:\\FILE\\%3.TXT")
                               .arg(NoFolder, name, kind));
    }
    EXPECT_FALSE(Check("702"));
    EXPECT_EQ(message, "");
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
    file.Insert("TLMT0040", {{"CustCD", "C7"}, {"NokiInfPath", QVariant()}, {"NokiInfKBN", 1}});
    file.Open(db);
    EXPECT_FALSE(Check());
    EXPECT_EQ(message, NoFolder
                           + QString("\r\n\r\n得意先コード：C2\r\n得意先名　　：顧客C2\r\n"
                                     "情報種名　　：納期回答情報\r\n"
                                     "出力パス　　：C:\\FILE\\O'NEIL.TXT"));
    EXPECT_FALSE(CheckAnswerOutputPaths(db, files));
    EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{message});

    file.Run("DELETE FROM TLMT0040 WHERE NokiInfPath LIKE '%FILE%'");
    EXPECT_TRUE(Check());
    EXPECT_TRUE(CheckAnswerOutputPaths(db, files));
    EXPECT_EQ(Entries(), (QStringList{"FILE", "OUT"})) << "what is switched off is not made";
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(OutputFoldersTest, APathOfBlanksIsNone)
{
    AddCustomer("C1", "   ");
    file.Open(db);
    EXPECT_FALSE(CheckAnswerOutputPaths(db, files));
    EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"出力パスが設定されていません。"});
}

TEST_F(OutputFoldersTest, ADatabaseErrorIsShownOnce)
{
    file.Open(db);
    file.Run("DROP TABLE TLMT0040");
    EXPECT_FALSE(CheckAnswerOutputPaths(db, files));
    const auto texts = boxes.TakeTexts();
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_TRUE(texts[0].startsWith("ｴﾗｰｺｰﾄﾞ："));
}
