#include "sheet/CsvReader.h"

#include "platform/ShiftJis.h"
#include "support/QtPrinters.h"

#include <QStringEncoder>
#include <QStringList>
#include <gtest/gtest.h>
#include <random>

namespace {

/// "line:cell|cell" of each record, "!" behind a broken one.
QString Records(const QString &text, QChar separator = ',')
{
    QStringList records;
    ReadCsv(text, separator, [&](const CsvRecord &record) {
        QStringList cells;
        for (const QStringView cell : record.cells)
            cells += cell.toString();
        records
            += QString::number(record.line) + ':' + cells.join('|') + (record.isBroken ? "!" : "");
        return true;
    });
    return records.join(' ');
}

} // namespace

TEST(CsvReader, RecordsAndTheirLines)
{
    const struct
    {
        const char *text;
        const char *records;
    } cases[] = {
        {"", ""},
        {"\r\n\r\n", "1: 2:"},
        {"a,b\r\nc,d\r\n", "1:a|b 2:c|d"},
        {"a,b\nc,d", "1:a|b 2:c|d"},
        {"a\rb\r\n\nc", "1:a 2:b 3: 4:c"},
        {",\r\n", "1:|"},
        {"a,\r\n,b", "1:a| 2:|b"},
        {"\"a,b\",\"\",c", "1:a,b||c"},
        {"\"a\nb\r\nc\rd\",e\nf", "1:a\nb\r\nc\rd|e 5:f"},
        {"\"say \"\"2\"\"\",\"\"\"\"", "1:say \"2\"|\""},
        {"5\"x3\",b", "1:5\"x3\"|b"},
        {"\"a\"b,c\nd", "1:a! 2:d"},
        {"\"a\nb\"c\nd", "1:a\nb! 2:b\"c 3:d"},
        {"a\n\"b,c\nd", "1:a 2:b,c\nd! 3:d"},
        {"\"", "1:!"},
        {"\"a\"\"", "1:a\"!"},
        {"\"\"\"", "1:\"!"},
        {"\"a\"", "1:a"},
        {"a,\"b\"", "1:a|b"},
        {"\"a\"\n\"b\"\n", "1:a 2:b"},
    };
    for (const auto &[text, records] : cases)
        EXPECT_EQ(Records(text), records) << text;
    EXPECT_EQ(Records("a;\"b;c\"", ';'), "1:a|b;c");
    EXPECT_EQ(Records(QString::fromLatin1("a,b\0c", 5)), QString::fromLatin1("1:a|b\0c", 7));
}

TEST(CsvReader, AnyTextComesBackFromItsQuotes)
{
    std::mt19937 random(20261125);
    const QString letters = "ab\",\r\n;";
    for (int round = 0; round < 2000; ++round) {
        QStringList cells;
        QString file;
        for (unsigned cell = 0; cell <= random() % 4; ++cell) {
            QString text;
            for (unsigned at = 0; at < random() % 6; ++at)
                text += letters[int(random() % unsigned(letters.size()))];
            cells += text;
            file += (cell > 0 ? ",\"" : "\"") + QString(text).replace('"', "\"\"") + '"';
        }
        ASSERT_EQ(Records(file + "\r\n"), "1:" + cells.join('|')) << file.toStdString();
    }
}

TEST(CsvReader, FilesOfEveryEncoding)
{
    const QString text = "受注№,髙橋～㈱\r\n";
    QStringEncoder utf16(QStringEncoder::Utf16LE, QStringEncoder::Flag::WriteBom);
    EXPECT_EQ(CsvText(text.toUtf8()), text);
    EXPECT_EQ(CsvText("\xef\xbb\xbf" + text.toUtf8()), text);
    EXPECT_EQ(CsvText(ToShiftJis(text)), text);
    EXPECT_EQ(CsvText(QByteArray(utf16.encode(text))), text);
    EXPECT_EQ(CsvText("\xff\xfd\x80"), FromShiftJis("\xff\xfd\x80")) << "neither of them";
}
