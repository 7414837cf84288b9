#include "app/Main.h"

#include "platform/System.h"
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

    void Run()
    {
        Main(file.folder.Path());
        // Nobody holds the database any more.
        SetLockTimeout(file.Other(), 0);
        EXPECT_NO_THROW(file.Run("BEGIN EXCLUSIVE; ROLLBACK"));
    }

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
    Run(); // without a window
    ASSERT_EQ(boxes.Shown().size(), 1u);
    EXPECT_TRUE(boxes.Shown()[0].text.startsWith("ファイルの書き込みが出来ません。\r\n"));
}

TEST_F(MainTest, ASecondCopyEndsAtOnce)
{
    const PreviousInstance running("TL030101");
    ASSERT_EQ(running.Is(), PreviousInstance::First);
    Run();
    EXPECT_TRUE(boxes.Shown().empty());
    EXPECT_FALSE(QFile::exists(file.folder.Path("OUT"))) << "it does not even look around";
}

TEST_F(MainTest, WhatKeepsTheProgramFromStartingIsTold)
{
    const auto toldAtStart = [this] {
        Run();
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
