#include "platform/IniFile.h"

#include "platform/ShiftJis.h"
#include "support/QtPrinters.h"
#include "support/TestFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

IniFile IniOf(const QByteArray &bytes)
{
    const TestFolder folder;
    folder.Write("TALVEN.INI", bytes);
    return IniFile::Read(folder.Path("TALVEN.INI"));
}

} // namespace

TEST(IniFile, ReadsEveryEncoding)
{
    const QString text = "[PATH]\r\nDBPATH=C:\\資材EDIｼｽﾃﾑ\\表\r\n";
    const QByteArray files[] = {text.toUtf8(), "\xef\xbb\xbf" + text.toUtf8(), ToShiftJis(text)};
    for (const QByteArray &bytes : files)
        EXPECT_EQ(IniOf(bytes).Value("PATH", "DBPATH"), "C:\\資材EDIｼｽﾃﾑ\\表");
    // The last byte alone may tell that this is Shift-JIS.
    EXPECT_EQ(IniOf(ToShiftJis(u"[PATH]\r\nDBPATH=C:\\ﾃ")).Value("PATH", "DBPATH"), "C:\\ﾃ");
}

TEST(IniFile, Values)
{
    const std::pair<QByteArray, QString> cases[] = {
        {"[path]\ndbpath=C:\\EDI\n", "C:\\EDI"},
        {"[PATH]\r\nDBPATH=C:\\EDI", "C:\\EDI"},
        {"[PATH]\rDBPATH=C:\\EDI\r", "C:\\EDI"},
        {"[PATH]\n  DBPATH \t=  C:\\My EDI  \n", "C:\\My EDI"},
        {" [ PATH ] \nDBPATH=C:\\EDI\n", "C:\\EDI"},
        {"[PATH]\nDBPATH=\"C:\\EDI \"\n", "C:\\EDI "},
        {"[PATH]\nDBPATH='C:\\EDI'\n", "C:\\EDI"},
        {"[PATH]\nDBPATH=\"C:\\EDI'\n", "\"C:\\EDI'"},
        {"[PATH]\n;DBPATH=old\nDBPATH=new\n", "new"},
        {"[PATH]\nDBPATH=first\nDBPATH=second\n", "first"},
        {"[PATH]\nDBPATH=\n[OTHER]\nDBPATH=C:\\EDI\n", ""},
        {"DBPATH=X\n", ""},
        {QByteArray("[PATH]\nDBPATH=AB\0CD\n", 20), "AB"},
        {"[PATH]\nDBPATH=" + QByteArray(257, 'x'), QString(255, 'x')},
    };
    for (const auto &[file, value] : cases)
        EXPECT_EQ(IniOf(file).Value("PATH", "DBPATH"), value) << file.toStdString();
}

TEST(IniFile, AFileThatCannotBeReadIsNoMissingOne)
{
    const TestFolder folder;
    folder.MakeFolder("FOLDER.INI");
    ASSERT_EQ(::mkfifo(folder.Path("PIPE.INI").toUtf8(), 0600), 0);
    EXPECT_TRUE(IniFile::Read(folder.Path("FOLDER.INI")).IsUnreadable());
    EXPECT_TRUE(IniFile::Read(folder.Path("PIPE.INI")).IsUnreadable());
    EXPECT_FALSE(IniFile::Read(folder.Path("NONE.INI")).IsUnreadable());
}

TEST(IniFile, SectionKeepsTheOrderOfTheFile)
{
    QString order;
    for (const auto &entry : IniOf("[DRIVES]\nZ=1\nA=2\n[P]\nB=3\n[drives]\nM=4").Section("DRIVES"))
        order += entry.key + entry.value;
    EXPECT_EQ(order, "Z1A2M4");
}
