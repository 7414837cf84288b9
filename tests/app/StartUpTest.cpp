#include "app/Main.h"
#include "support/Machine.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <functional>

namespace {

class StartUpTest : public testing::Test
{
protected:
    StartUpTest() { file.Insert("TLMT0010", {{"CoCD", "CO"}, {"DefCustCD", "C1"}}); }

    /// Starts in the folder of the database.
    bool Start() { return InitApp(state, file.folder.Path()); }

    ScriptedBoxes boxes;
    const Machine machine;
    TestDatabase file;
    ProgramState state;
};

} // namespace

TEST_F(StartUpTest, WhereTheDatabaseIsLookedFor)
{
    const TestFolder other;
    const QString here = file.folder.Path();
    ASSERT_TRUE(QFile::copy(file.LocalPath(), other.Path("TLDB0010.MDB")));
    const QString there = other.Path();
    const QString none = machine.program.Path("none");
    // The program's own settings and those of the Windows directory (null: no such file), whether
    // the database is in the program's folder, and where it is found (empty: the program ends).
    const std::tuple<const char *, QString, QString, bool, QString> cases[] = {
        {"version 4.1 first", "DBPATH_V4.1=" + here + "\nDBPATH=" + there, {}, false, here},
        {"no database there", "DBPATH_V4.1=" + none + "\nDBPATH=" + there, {}, false, there},
        {"trailing backslash", "DBPATH_V4.1=" + here + "\\", {}, false, here},
        {"a drive", "DBPATH=C:\\\n[DRIVES]\nC=" + here, {}, false, "C:"},
        {"Windows directory", {}, "DBPATH=" + there, false, there},
        {"the own file wins", "DBPATH=" + here, "DBPATH=" + there, false, here},
        {"even without the keys", "", "DBPATH=" + there, false, ""},
        {"database in the own folder", "DBPATH_V4.1=" + there, {}, true, "own"},
        {"without settings", {}, {}, true, "own"},
    };
    for (const auto &[what, programIni, windowsIni, isInProgramFolder, dbPath] : cases) {
        SCOPED_TRACE(what);
        for (const auto &[folder, ini] :
             {std::pair(&machine.program, programIni), {&machine.windows, windowsIni}}) {
            QFile::remove(folder->Path("TALVEN.INI"));
            if (!ini.isNull())
                folder->Write("TALVEN.INI", ("[PATH]\n" + ini).toUtf8());
        }
        const QString ownDatabase = machine.program.Path("TLDB0010.MDB");
        QFile::remove(ownDatabase);
        ASSERT_TRUE(!isInProgramFolder || QFile::copy(file.LocalPath(), ownDatabase));
        ProgramState started;
        EXPECT_EQ(InitApp(started, machine.program.Path()), !dbPath.isEmpty());
        EXPECT_EQ(started.db.IsOpen(), !dbPath.isEmpty());
        EXPECT_EQ(started.dbPath, dbPath == "own" ? machine.program.Path() : dbPath);
        EXPECT_EQ(started.iniDir,
                  !programIni.isNull() ? machine.program.Path() : machine.windows.Path());
    }
    EXPECT_TRUE(boxes.Shown().empty()) << "a search that fails does so silently";
}

TEST_F(StartUpTest, ADatabaseThatCannotBeUsed)
{
    const std::tuple<std::function<void()>, QString, const char *> cases[] = {
        {[this] { file.Run("DELETE FROM TLMT0010"); },
         "ｼｽﾃﾑ管理ﾏｽﾀに会社情報が登録されていないため、\r", "初期設定エラー"},
        {[this] { file.Other().SetProperty("AccessVersion", "07.90"); },
         "データベースが以前のバージョンのため\r", "初期設定エラー"},
        {[this] { file.folder.Write("TLDB0010.MDB", QByteArray(4096, 'x')); }, "ｴﾗｰｺｰﾄﾞ：3049\r\n",
         "ﾃﾞｰﾀﾍﾞｰｽｱｸｾｽｴﾗｰ"},
    };
    for (const auto &[arrange, box, title] : cases) {
        arrange();
        EXPECT_FALSE(Start());
        EXPECT_FALSE(state.db.IsOpen());
        ASSERT_EQ(boxes.Shown().size(), 1u) << title;
        EXPECT_EQ(boxes.Shown()[0].title, title);
        EXPECT_TRUE(boxes.TakeTexts()[0].startsWith(box)) << box.toStdString();
    }
}

TEST_F(StartUpTest, SearchBeginsWithTheDefaultCustomer)
{
    const std::tuple<const char *, const char *, const char *> cases[]
        = {{"C'1  ", "C'1", "顧客　一"}, {"C2", "C2", ""}, {"", "", ""}};
    file.Insert("TLMT0040", {{"CustCD", "C'1"}, {"CustName", " 顧客　一 "}});
    file.Insert("TLMT0040", {{"CustCD", "C2"}, {"CustName", "deleted"}, {"DpoFlg", 1}});
    for (const auto &[customer, code, name] : cases) {
        file.Run("UPDATE TLMT0010 SET DefCustCD = '" + SqlText(customer) + "  '");
        ASSERT_TRUE(Start());
        SetSearchDefaults(state);
        EXPECT_EQ(state.company.TEL, QString(12, ' ')) << "each text has its width";
        EXPECT_EQ(state.conditions.customerCode, code);
        EXPECT_EQ(state.conditions.customerName, name);
        EndApp(state);
    }
    EXPECT_TRUE(boxes.Shown().empty());
}
