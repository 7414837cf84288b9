#include "app/Main.h"

#include "platform/System.h"
#include "support/LogLines.h"
#include "support/Machine.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <cerrno>

namespace {

class MainTest : public testing::Test
{
protected:
    MainTest()
    {
        file.folder.Write("TALVEN.INI", "[DRIVES]\r\nC=" + file.folder.Path().toUtf8() + "\r\n");
        file.Insert("TLMT0010", {{"CoCD", "CO"}, {"DefCustCD", "C1"}});
        file.Insert("TLMT0040", {{"CustCD", "C1"}, {"CustName", "顧客一"}, {"NokiInfKBN", 1}});
        file.Run("UPDATE TLMT0040 SET NokiInfPath = 'C:\\OUT\\C1.TXT'");
    }
    ~MainTest() override { SetFileFault({}); }

    /// A start that fails; gives what the log says last of why.
    QString Run()
    {
        EXPECT_FALSE(Main(file.folder.Path()));
        // Nobody holds the database any more.
        SetLockTimeout(file.Other(), 0);
        EXPECT_NO_THROW(file.Lock(); file.Unlock());
        const QStringList reasons = log.Lines().filter("error talven.start: ");
        return reasons.isEmpty() ? QString() : reasons.last();
    }

    const LogLines log;
    ScriptedBoxes boxes;
    const Machine machine;
    TestDatabase file;
};

} // namespace

TEST_F(MainTest, AFolderThatCannotBeWrittenEndsTheProgram)
{
    SetFileFault([](FileOp op, const QString &path) {
        return op == FileOp::Open && path.contains("Writable") ? EACCES : 0;
    });
    // Without a window.
    EXPECT_EQ(Run(), "error talven.start: 回答ファイルを出力できないため、開始できません");
    ASSERT_EQ(boxes.Shown().size(), 1u);
    EXPECT_TRUE(boxes.Shown()[0].text.startsWith("ファイルの書き込みが出来ません。\r\n"));
}

TEST_F(MainTest, ASecondCopyEndsAtOnce)
{
    const PreviousInstance running("TL030101");
    ASSERT_EQ(running.Is(), PreviousInstance::First);
    EXPECT_TRUE(Run().contains("既に起動しています"));
    EXPECT_TRUE(boxes.Shown().empty());
    EXPECT_FALSE(QFile::exists(file.folder.Path("OUT"))) << "it does not even look around";
}

TEST_F(MainTest, WithoutADatabaseNothingIsShownButLogged)
{
    file.folder.Write("TALVEN.INI", "[PATH]\nDBPATH_V4.1=/nix/v4\nDBPATH=/nix\n");
    ASSERT_TRUE(QFile::rename(file.LocalPath(), file.folder.Path("elsewhere.mdb")));
    const QString reason = Run();
    for (const QString &place : {file.LocalPath(), QString("/nix/v4/"), QString("/nix/TLDB")})
        EXPECT_TRUE(reason.contains(place)) << reason.toStdString();
    EXPECT_TRUE(boxes.Shown().empty());
    QFile::rename(file.folder.Path("elsewhere.mdb"), file.LocalPath());
}

TEST_F(MainTest, WhatKeepsTheProgramFromStartingIsTold)
{
    const auto toldAtStart = [this] {
        EXPECT_FALSE(Run().isEmpty());
        const auto texts = boxes.TakeTexts();
        return texts.size() == 1 ? texts[0] : QString();
    };
    QFile::remove(file.folder.Path("TALVEN.INI"));
    machine.windows.MakeFolder("TALVEN.INI");
    EXPECT_TRUE(toldAtStart().endsWith('\r' + machine.windows.Path("TALVEN.INI")));

    const Variable runtime("XDG_RUNTIME_DIR", file.folder.Path("NONE"));
    const Variable data("XDG_DATA_HOME", file.folder.Path("TLDB0010.MDB"));
    const Variable temp("TMPDIR", file.folder.Path("TLDB0010.MDB"));
    EXPECT_TRUE(toldAtStart().startsWith("二重起動を確認できないため、\r"));
}
