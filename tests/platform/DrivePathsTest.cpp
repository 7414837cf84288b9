#include "platform/DrivePaths.h"

#include "support/QtPrinters.h"
#include "support/TestFolder.h"

#include <QStandardPaths>
#include <gtest/gtest.h>

TEST(DrivePaths, MapsDrivesAndShares)
{
    const DrivePaths drives = DrivesOf("c:\\=/nix/edi/\n"
                                       "D=/nix/d\n"
                                       "E=\n"
                                       "\\\\Server\\Share=/nix/share\n"
                                       "\\\\server\\share2\\=/nix/share2\n");
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const std::pair<QString, QString> cases[] = {
        {"C:\\EDI\\OUT\\ANS.TXT", "/nix/edi/EDI/OUT/ANS.TXT"},
        {"c:\\ans.txt", "/nix/edi/ans.txt"},
        {"C:\\", "/nix/edi"},
        {"C:\\EDI\\\\@@@.txt", "/nix/edi/EDI/@@@.txt"},
        {"D:\\データ\\回答.txt", "/nix/d/データ/回答.txt"},
        {"E:\\A.TXT", data + "/talven/e/A.TXT"}, // an empty entry is none
        {"X:\\A.TXT", data + "/talven/x/A.TXT"},
        {"\\\\server\\share\\ans.txt", "/nix/share/ans.txt"},
        {"\\\\SERVER\\SHARE", "/nix/share"},
        {"\\\\server\\share2\\ans.txt", "/nix/share2/ans.txt"},
        {"\\\\server\\share3\\ans.txt", ""},
        {"/srv/edi\\TALVEN.INI", "/srv/edi/TALVEN.INI"},
        {"ans.txt", "ans.txt"},
    };
    for (const auto &[path, local] : cases)
        EXPECT_EQ(drives.ToLocal(path), local) << path.toStdString();
}

TEST(DrivePaths, FindsExistingNamesInAnotherCase)
{
    const TestFolder folder;
    folder.MakeFolder("Edi/Out");
    folder.Write("Edi/Out/Ans.txt", "x");
    folder.Write("Edi/Out/ANS2.TXT", "x");
    folder.Write("Edi/Out/ans2.txt", "x");
    folder.Write("Edi/Out/Ｅｄｉ.txt", "x");
    const DrivePaths drives = DrivesOf("C=" + folder.Path().toUtf8());
    const std::pair<QString, QString> cases[] = {
        {"C:\\EDI\\OUT\\ANS.TXT", "Edi/Out/Ans.txt"},
        {"C:\\edi\\out\\ans2.txt", "Edi/Out/ans2.txt"}, // the exact name goes before any other
        {"C:\\edi\\out\\ANS2.TXT", "Edi/Out/ANS2.TXT"},
        {"C:\\EDI\\Sub\\New.txt", "Edi/Sub/New.txt"},
        {"C:\\EDI\\OUT\\ＥＤＩ.TXT", "Edi/Out/Ｅｄｉ.txt"},
    };
    for (const auto &[path, name] : cases)
        EXPECT_EQ(drives.ToLocal(path), folder.Path(name)) << path.toStdString();
}

TEST(DrivePaths, SeparatorFollowsTheKindOfPath)
{
    EXPECT_EQ(PathSeparator("\\\\server\\share\\ans.txt"), '\\');
    EXPECT_EQ(PathSeparator("/srv/edi/ans.txt"), '/');
    EXPECT_EQ(PathSeparator("C:\\EDI/OUT\\ANS.TXT"), '\\');
}
