#include "tldb/Commands.h"

#include "data/dao/DaoError.h"
#include "platform/Clock.h"
#include "tldb/NewDatabase.h"
#include "tldb/demo/DemoData.h"
#include "util/bDate.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <algorithm>

namespace {

constexpr qint64 MostLines = 10'000'000;

/// The days around it have to be dates that two digits of a year stand for.
const QDate FirstDay(1952, 1, 1);
const QDate LastDay(2049, 12, 31);

bool IsDigits(const QString &text)
{
    return !text.isEmpty()
           && std::all_of(text.begin(), text.end(), [](QChar c) { return c >= '0' && c <= '9'; });
}

/// Takes the options; returns what is wrong with them, an empty text when nothing is.
QString ReadOptions(const QCommandLineParser &arguments, DemoOptions &options)
{
    bool isNumber = true;
    if (arguments.isSet("lines")) {
        const QString lines = arguments.value("lines");
        options.lineCount = lines.toLongLong(&isNumber);
        if (!isNumber || !IsDigits(lines) || options.lineCount < 1 || options.lineCount > MostLines)
            return QString("--lines wants a number from 1 to %1").arg(MostLines);
    }
    if (arguments.isSet("seed")) {
        const QString seed = arguments.value("seed");
        options.seed = seed.toULongLong(&isNumber);
        if (!isNumber || !IsDigits(seed))
            return "--seed wants a whole number, 0 or more";
    }
    options.day = Now().date();
    if (arguments.isSet("date")) {
        const QString date = arguments.value("date");
        options.day = QDate::fromString(date, "yyyyMMdd");
        if (!IsDigits(date) || !IsValidDate(date) || options.day < FirstDay
            || options.day > LastDay)
            return "--date wants a date YYYYMMDD from 1952 to 2049";
    }
    return {};
}

} // namespace

int RunDemo(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err)
{
    DemoOptions options;
    const QString mistake = ReadOptions(arguments, options);
    if (!mistake.isEmpty())
        return Complain(err, "demo: " + mistake + "; see tldb demo --help", ExitCode::WrongUse);
    const QString folder = arguments.positionalArguments().first();
    const QString settings = QDir(folder).filePath("TALVEN.INI");
    if (QFile::exists(settings))
        return Complain(err, settings + ": the settings file exists already");
    try {
        NewDatabase database(folder, arguments.value("server"));
        FillWithDemoData(database.Content(), options);
        if (!WriteDemoSettings(folder))
            return Complain(err, settings + ": the settings can't be written");
        database.Finish();
    } catch (const DaoError &error) {
        return Complain(err, DatabasePath(folder) + ": " + ErrorText(error));
    }
    out << DatabasePath(folder) << ": created with " << options.lineCount << " delivery lines\n";
    return ExitCode::Ok;
}
