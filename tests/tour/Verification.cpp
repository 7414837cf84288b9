#include "Verification.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "data/dao/Database.h"
#include "tldb/AnswerFile.h"
#include "tldb/NewDatabase.h"
#include "util/Decimal.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

namespace {

QByteArray ReadAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString Literal(QString text)
{
    return '\'' + text.replace("'", "''") + '\'';
}

/// The answered lines of the record's order, as the record should list them.
std::unique_ptr<Recordset> LinesOf(Database &database, const DecodedAnswer &answer)
{
    const QString orderNo = Literal(answer.Value("orderNumber"));
    return database.OpenRecordset(
        "SELECT L.LimDate, L.PayNo, L.AnsLimDate, L.AnsVal, L.AnsMark, L.AnsLimUmu"
        " FROM TLSP0010 L, TLMT0040 C WHERE L.CustCD = C.CustCD AND L.ShpSts < 3"
        " AND ((C.CustKBN = 2 AND L.AccNo IN (SELECT AccNo FROM TLSP0010 WHERE PayKeyNo = "
        + orderNo + ")) OR (C.CustKBN <> 2 AND L.OdrNo = " + orderNo
        + ")) AND L.AnsVal <> 0 AND (C.LinKBN = 1 OR L.AnsLimDate <> '')"
          " ORDER BY L.AccSubNo, L.IndVal DESC, L.AnsLimDate");
}

QString Compare(Database &database, const DecodedAnswer &answer)
{
    const auto lines = LinesOf(database, answer);
    if (lines->RecordCount() != int(answer.deliveries.size()))
        return QString("order %1: %2 slots for %3 lines")
            .arg(answer.Value("orderNumber"))
            .arg(answer.deliveries.size())
            .arg(lines->RecordCount());
    for (const AnsweredDelivery &delivery : answer.deliveries) {
        const QString stored = QStringList{lines->Text(0), lines->Text(1),
                                           lines->Text(2).isEmpty() ? "99999999" : lines->Text(2),
                                           lines->Text(3), lines->Text(4)}
                                   .join('|');
        QStringList values;
        for (const AnswerValue &value : delivery.values)
            values += value.text;
        if (values.join('|') != stored)
            return "order " + answer.Value("orderNumber") + ": slot " + values.join('|') + ", line "
                   + stored;
        if (lines->Number(5) != 3)
            return "order " + answer.Value("orderNumber") + ": a line is not marked";
        lines->MoveNext();
    }
    return {};
}

} // namespace

QStringList FindAnswerFiles(const QString &folder)
{
    QStringList files;
    QDirIterator entries(folder + "/drives", QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext())
        files += QDir(folder).relativeFilePath(entries.next());
    files.sort();
    return files;
}

QString WriteDecodedAnswers(const QString &folder, const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return "can't write " + fileName;
    for (const QString &name : FindAnswerFiles(folder)) {
        const auto answers = DecodeAnswers(ReadAll(folder + '/' + name));
        if (HasFaults(answers))
            return name + " has a malformed record";
        file.write(
            ("== " + name + "\n\n" + DescribeAnswers(answers, AnswerFormat::Plain)).toUtf8());
    }
    return {};
}

QString CompareAnswersWithDatabase(const QString &folder)
{
    try {
        Database database(DatabasePath(folder), true, ConnectText);
        int records = 0;
        for (const QString &name : FindAnswerFiles(folder)) {
            for (const DecodedAnswer &answer : DecodeAnswers(ReadAll(folder + '/' + name))) {
                ++records;
                const QString difference = Compare(database, answer);
                if (!difference.isEmpty())
                    return name + ": " + difference;
            }
        }
        return records > 0 ? QString() : QString("no record was written");
    } catch (const DaoError &error) {
        return ErrorText(error);
    }
}
