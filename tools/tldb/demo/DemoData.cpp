#include "tldb/demo/DemoData.h"

#include "data/Tables.h"
#include "platform/ShiftJis.h"
#include "tldb/demo/DemoMasters.h"
#include "tldb/demo/DemoOrders.h"

#include <QDir>
#include <QFile>
#include <QStringList>

namespace {

/// Drops every index that a CREATE INDEX made and returns those statements: a table fills faster
/// without them.
QStringList TakeIndexes(Database &database)
{
    QStringList statements;
    QStringList names;
    const auto rows = database.OpenRecordset(
        "SELECT name, sql FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL");
    for (; !rows->IsEof(); rows->MoveNext()) {
        names += rows->Text(0);
        statements += rows->Text(1);
    }
    for (const QString &name : names)
        database.ExecuteNative("DROP INDEX " + name);
    return statements;
}

/// Every line whose answer is out was answered once, by a user of the demonstration; there is no
/// record of it in the answer files, as there are none yet.
void WriteDemoHistory(Database &database)
{
    database.ExecuteNative(
        QString("INSERT INTO %1 (AccNo, AccSubNo, ShpSubNo, AnsNo, CustCD, OdrNo, PayNo, LimDate,"
                " AnsLimDate, AnsVal, AnsMark, AnsKBN, RecNo, RecPath, UserName, MachineName,"
                " DpoFlg, UpdPGName, UpdDate, UpdTime) SELECT AccNo, AccSubNo, ShpSubNo, 1, CustCD,"
                " OdrNo, PayNo, LimDate, AnsLimDate, AnsVal, AnsMark, '1', '', '', 'demo', 'demo',"
                " 0, UpdPGName, UpdDate, UpdTime FROM TLSP0010 WHERE AnsLimUmu = 3")
            .arg(HistoryTable));
}

} // namespace

void FillWithDemoData(Database &database, const DemoOptions &options)
{
    // Nothing is lost if this run breaks off: the file is made anew then.
    database.ExecuteNative("PRAGMA synchronous=OFF; PRAGMA journal_mode=MEMORY;"
                           "PRAGMA cache_size=-65536; BEGIN");
    const QStringList indexes = TakeIndexes(database);
    const RowStamp stamp{"TLDB", options.day.toString("yyyyMMdd"), "090000"};
    DemoRandom random(options.seed);
    const DemoMasters masters = MakeDemoMasters(options.lineCount, random);
    WriteDemoMasters(database, masters, stamp);
    WriteDemoOrders(database, masters, options.lineCount, options.day, random, stamp);
    WriteDemoHistory(database);
    for (const QString &index : indexes)
        database.ExecuteNative(index);
    database.ExecuteNative("COMMIT");
}

bool WriteDemoSettings(const QString &folder)
{
    struct Drive
    {
        const char *name;
        const char *folder;
    };
    static constexpr Drive drives[] = {{"C", "drives/c"}, {"\\\\edisv\\out", "drives/edisv_out"}};

    const QDir dir(QDir(folder).absolutePath());
    QStringList lines = {"[PATH]", "DBPATH=" + dir.path(), "[DRIVES]"};
    for (const Drive &drive : drives) {
        if (!dir.mkpath(drive.folder))
            return false;
        lines += QString(drive.name) + '=' + dir.filePath(drive.folder);
    }
    const QString text = lines.join("\r\n") + "\r\n";
    QFile file(dir.filePath("TALVEN.INI"));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // A folder whose name the code page does not have can only be named in UTF-8.
    file.write(IsShiftJisText(text) ? ToShiftJis(text) : text.toUtf8());
    return file.flush();
}
