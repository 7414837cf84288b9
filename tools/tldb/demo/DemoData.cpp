#include "tldb/demo/DemoData.h"

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
