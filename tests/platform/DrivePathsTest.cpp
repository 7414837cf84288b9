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
        {"C:\\", "/nix/edi"},
        {"C:\\EDI\\\\@@@.txt", "/nix/edi/EDI/@@@.txt"},
        {"D:\\データ\\回答.txt", "/nix/d/データ/回答.txt"},
        {"E:\\A.TXT", data + "/talven/e/A.TXT"}, // an empty entry is none
        {"\\\\server\\share\\ans.txt", "/nix/share/ans.txt"},
        {"\\\\SERVER\\SHARE", "/nix/share"},
        {"\\\\server\\share2\\ans.txt", "/nix/share2/ans.txt"},
        {"\\\\server\\share3\\ans.txt", ""},
        {"ans.txt", "ans.txt"},
    };
    for (const auto &[path, local] : cases)
        EXPECT_EQ(drives.ToLocal(path), local) << path.toStdString();
}

TEST(DrivePaths, FindsExistingNamesInAnotherCase)
{
    const TestFolder folder;
    folder.MakeFolder("Edi/Out");
    folder.Write("Edi/Out/ANS2.TXT", "x");
    folder.Write("Edi/Out/ans2.txt", "x");
    folder.Write("Edi/Out/Ｅｄｉ.txt", "x");
    const DrivePaths drives = DrivesOf("C=" + folder.Path().toUtf8());
    const std::pair<QString, QString> cases[] = {
        {"C:\\edi\\out\\ANS2.TXT", "Edi/Out/ANS2.TXT"}, // the exact name goes before any other
        {"C:\\EDI\\OUT\\ＥＤＩ.TXT", "Edi/Out/Ｅｄｉ.txt"},
    };
    for (const auto &[path, name] : cases)
        EXPECT_EQ(drives.ToLocal(path), folder.Path(name)) << path.toStdString();
}
