#include "SheetFixture.h"

#include "sheet/SheetFile.h"

#include "platform/RuntimeError.h"

#include <QDir>
#include <QFile>
#include <QProcess>

namespace {

class SheetFileTest : public SheetFixture
{
protected:
    void SetUp() override
    {
        AddOrder(1, "AccHinName = '抵抗器, \"A\" ～ ㈱髙', F019 = '=1+1', EDIKBN = 1");
        AddLine(1, 1, 1, "OdrNo = '0012', CustSecCD = '1-2', IndVal = 1234.5");
        AddOrder(2);
        AddLine(2, 1, 1, "AnsLimDate = '20260520', AnsVal = 7, AnsLimUmu = 3, ShpSts = 3");
        AddLine(2, 1, 2, "AnsLimDate = '2026-xx'");
        Load();
        list.InsertBelow({{1, list.At(1).Split(5)}});
    }

    SavedSheet Save(const QString &name, SheetFormat format) const
    {
        return SaveSheet(list, AllRows(), file.folder.Path(name), format, [] { return true; });
    }

    static QString Python(const QStringList &arguments)
    {
        QProcess python;
        python.start("python3",
                     QStringList(QString(QT_TESTCASE_SOURCEDIR) + "/sheet/spreadsheet.py")
                         + arguments);
        EXPECT_TRUE(python.waitForFinished());
        EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
        return QString::fromUtf8(python.readAllStandardOutput());
    }
};

} // namespace

TEST_F(SheetFileTest, WhatASpreadsheetSavesComesBackUnchanged)
{
    const QString path = file.folder.Path("list.csv");
    const QString saved = file.folder.Path("saved.csv");
    ASSERT_TRUE(Save("list.csv", SheetFormat::CsvUtf8).IsSaved());
    for (const char *encoding : {"utf-8", "utf-8-sig", "cp932", "utf-16"}) {
        for (const char *separator : {",", ";", "\t"}) {
            Python({"csv", path, saved, encoding, separator});
            QString error;
            const auto bytes = SheetBytes(saved, error);
            ASSERT_TRUE(bytes) << error.toStdString();
            EXPECT_EQ(Planned(*bytes), "=4") << encoding << separator;
        }
    }
}

TEST_F(SheetFileTest, AWorkbookToBeFilledIn)
{
    ASSERT_TRUE(Save("list.xlsx", SheetFormat::Xlsx).IsSaved());
    const QStringList lines = Python({"xlsx", file.folder.Path("list.xlsx")}).split('\n');
    EXPECT_EQ(lines.mid(0, 2).join('/'), "frozen 1 3 frozen/protected 1");
    EXPECT_EQ(lines.value(2),
              "受注№|枝番|分納番号|EDI|ﾏｰｸ|注文№|商品ｺｰﾄﾞ|商品名|材質･規格･寸法|注文数|注残数|"
              "納入指示数|出荷数|回答数量|回答納期|納期|納入№|回答|出荷|契約条件区分|部門ｺｰﾄﾞ|"
              "出力時");
    // Dates are days since 1900, what may be filled in has an asterisk.
    EXPECT_EQ(lines.value(3), "#1|#1|#1|*||0012|HIN-1|抵抗器, \"A\" ～ ㈱髙|=1+1|#100|#100|#1234.5|"
                              "#0|*#1234.5|*|#46162|P1|||A 確定注文１型取引|1-2|"
                              "1-1-1 未 0 - 1234.5 -");
    EXPECT_EQ(lines.value(4).left(8), "#1|#1||*");
    EXPECT_TRUE(lines.value(5).contains("|*#7|*#46162|#46162|P1|済|済|"))
        << lines.value(5).toStdString();
    EXPECT_TRUE(lines.value(6).contains("|*#100|*2026-xx|#46162|")) << lines.value(6).toStdString();
}

TEST_F(SheetFileTest, ThereIsAWholeFileOrTheOneBefore)
{
    file.folder.Write("list.csv", "before");
    const auto left = [&] { return QDir(file.folder.Path()).entryList({"list*"}); };
    for (const SheetFormat format :
         {SheetFormat::CsvUtf8, SheetFormat::CsvShiftJis, SheetFormat::Xlsx}) {
        int rows = 0;
        const SavedSheet stopped = SaveSheet(list, AllRows(), file.folder.Path("list.csv"), format,
                                             [&] { return ++rows < 3; });
        EXPECT_TRUE(stopped.isStopped);
        EXPECT_EQ(stopped.error, RuntimeError::None);
        EXPECT_FALSE(stopped.IsSaved());
        QFile kept(file.folder.Path("list.csv"));
        ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
        EXPECT_EQ(kept.readAll(), "before");
        EXPECT_EQ(left(), QStringList("list.csv"));

        const SavedSheet nowhere = Save("none/list.csv", format);
        EXPECT_EQ(nowhere.error, RuntimeError::PathNotFound);
    }
}
