#include "tldb/Commands.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "lines/LineList.h"
#include "sheet/SheetFile.h"
#include "sheet/SheetPlan.h"
#include "tldb/NewDatabase.h"
#include "util/bDate.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <algorithm>

namespace {

/// The conditions that stand on the command line; nothing, and what is wrong, for ones that the
/// list can't be searched by.
std::optional<SearchConditions> ConditionsOf(const QCommandLineParser &arguments, QString &wrong)
{
    static constexpr struct
    {
        const char *option;
        QString SearchConditions::*condition;
    } texts[] = {
        {"customer", &SearchConditions::customerCode},
        {"section", &SearchConditions::customerSectionCode},
        {"product", &SearchConditions::productCode},
        {"name", &SearchConditions::productName},
        {"order", &SearchConditions::orderNo},
        {"maker", &SearchConditions::makerNo},
        {"pay-key", &SearchConditions::payKeyNo},
    };
    static constexpr std::pair<const char *, const char *> bases[]
        = {{"ship", "SHPDATE"}, {"specified", "LIMDATE"}, {"order", "ACCDATE"}};
    SearchConditions conditions;
    for (const auto &[option, condition] : texts)
        conditions.*condition = arguments.value(option);
    for (const auto &[option, date] :
         {std::pair{"from", &conditions.fromDate}, std::pair{"to", &conditions.toDate}}) {
        *date = arguments.value(option);
        if (!date->isEmpty() && !IsValidDate(*date)) {
            wrong = QString("--%1 wants a date, YYYYMMDD").arg(option);
            return std::nullopt;
        }
    }
    if (!arguments.isSet("by"))
        return conditions;
    for (const auto &[name, basis] : bases) {
        if (arguments.value("by") == name) {
            conditions.dateBasis = basis;
            return conditions;
        }
    }
    wrong = "--by wants ship, specified or order";
    return std::nullopt;
}

/// Loads the list of the conditions. Throws DaoError.
void LoadList(const QString &folder, const SearchConditions &conditions, LineList &list)
{
    Database database(DatabasePath(folder), true, ConnectText);
    list.Load(database.OpenRecordset(BuildListSql(conditions)), [] { return true; });
}

QString RefusalWords(SheetRefusal refusal)
{
    switch (refusal) {
    case SheetRefusal::Broken:
        return "its quotes are wrong";
    case SheetRefusal::TooLong:
        return "it has more cells than headings";
    case SheetRefusal::NoKey:
        return "its key is no number";
    case SheetRefusal::NoSuchLine:
        return "no such line in the list";
    case SheetRefusal::NoSuchSplit:
        return "the split has been registered or deleted since the file was written";
    case SheetRefusal::OtherOrder:
        return "the line has another order number";
    case SheetRefusal::OtherLine:
        return "what the file was written with is of another line";
    case SheetRefusal::TwoRows:
        return "another row is about the same line";
    case SheetRefusal::Shipped:
        return "shipped";
    case SheetRefusal::AnsweredSince:
        return "answered since the file was written";
    case SheetRefusal::ChangedSince:
        return "its answer was changed since the file was written";
    case SheetRefusal::AnsweredBefore:
        return "answered, and the file does not tell whether it knew";
    case SheetRefusal::NoDate:
        return "no date";
    case SheetRefusal::NoNumber:
        return "no quantity";
    case SheetRefusal::NoQuantity:
        return "a split without a quantity";
    case SheetRefusal::MoreThanOpen:
        return "the answers of its order are more than is open";
    case SheetRefusal::None:
        break;
    }
    return {};
}

QString FaultWords(SheetFault fault)
{
    switch (fault) {
    case SheetFault::IsWorkbook:
        return "a workbook; save it as CSV";
    case SheetFault::IsNoText:
        return "no CSV file";
    case SheetFault::NoKeyColumns:
        return QString("no headings %1, %2 and %3")
            .arg(SheetHeading::AccNo, SheetHeading::AccSubNo, SheetHeading::ShpSubNo);
    case SheetFault::NoAnswerColumn:
        return QString("no heading %1 or %2")
            .arg(SheetHeading::AnswerQuantity, SheetHeading::AnswerDate);
    case SheetFault::HeadingTwice:
        return "a heading stands there twice";
    case SheetFault::None:
        break;
    }
    return {};
}

QString DateWord(const QString &date)
{
    return date.isEmpty() ? "none" : date;
}

QString KeyText(const LineKey &key)
{
    return QString("%1-%2-%3").arg(key.accNo).arg(key.accSubNo).arg(key.shpSubNo);
}

QString ChangeWords(const SheetPlan::Change &change)
{
    QStringList words;
    if (change.before.quantity != change.after.quantity)
        words += "quantity " + change.before.quantity.ToText() + " to "
                 + change.after.quantity.ToText();
    if (change.before.date != change.after.date)
        words += "date " + DateWord(change.before.date) + " to " + DateWord(change.after.date);
    return words.join(", ");
}

/// A text of the file, fit for a terminal.
QString Shown(QString text)
{
    constexpr qsizetype Most = 40;
    std::ranges::replace_if(
        text, [](QChar c) { return c.category() == QChar::Other_Control; }, QChar(u' '));
    return text.size() > Most ? text.left(Most) + "..." : text;
}

/// One line for each row that is not left as it is, in the order of the file.
void Report(const SheetPlan &plan, const LineList &list, const QString &path, QTextStream &out)
{
    std::vector<std::pair<int, QString>> lines;
    for (const SheetPlan::Change &change : plan.changes)
        lines.emplace_back(change.fileLine,
                           KeyText(list.At(change.row).Key()) + ": " + ChangeWords(change));
    for (const SheetPlan::Split &split : plan.splits)
        lines.emplace_back(split.fileLine, KeyText(list.At(split.below).Key())
                                               + ": a split, quantity "
                                               + split.answer.quantity.ToText() + ", date "
                                               + DateWord(split.answer.date));
    for (const SheetPlan::Refused &row : plan.refused)
        lines.emplace_back(row.fileLine,
                           Shown(row.line) + ": refused: " + RefusalWords(row.refusal)
                               + (row.cell.isEmpty() ? "" : " \"" + Shown(row.cell) + '"'));
    std::ranges::sort(lines);
    for (const auto &[fileLine, text] : lines)
        out << path << ':' << fileLine << ": " << text << '\n';
    out << QString("%1: %2 changes, %3 splits, %4 unchanged, %5 refused\n")
               .arg(path)
               .arg(plan.changes.size())
               .arg(plan.splits.size())
               .arg(plan.unchanged)
               .arg(plan.refused.size());
}

} // namespace

int RunExportAnswers(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err)
{
    const QString folder = arguments.positionalArguments().at(0);
    const QString path = arguments.positionalArguments().at(1);
    QString wrong;
    const auto conditions = ConditionsOf(arguments, wrong);
    if (!conditions)
        return Complain(err, wrong, ExitCode::WrongUse);
    LineList list;
    try {
        LoadList(folder, *conditions, list);
    } catch (const DaoError &error) {
        return Complain(err, DatabasePath(folder) + ": " + ErrorText(error));
    }
    const bool isWorkbook = QFileInfo(path).suffix().compare("xlsx", Qt::CaseInsensitive) == 0;
    const SheetFormat format = isWorkbook                     ? SheetFormat::Xlsx
                               : arguments.isSet("shift-jis") ? SheetFormat::CsvShiftJis
                                                              : SheetFormat::CsvUtf8;
    const RowSelection rows
        = list.Count() == 0 ? RowSelection() : RowSelection({{1, list.Count()}});
    const SavedSheet saved = SaveSheet(list, rows, path, format, [] { return true; });
    if (saved.hasTooManyLines)
        return Complain(
            err,
            QString("%1: %2 lines are more than a workbook can hold").arg(path).arg(list.Count()));
    if (!saved.IsSaved())
        return Complain(err, path + ": " + saved.systemError);
    out << path << ": " << list.Count() << " lines\n";
    if (saved.hasLostCharacters)
        return Complain(err, path + ": a \"?\" stands for characters outside of Shift-JIS");
    return ExitCode::Ok;
}

int RunCheckSheet(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err)
{
    const QString folder = arguments.positionalArguments().at(0);
    const QString path = arguments.positionalArguments().at(1);
    QString wrong;
    const auto conditions = ConditionsOf(arguments, wrong);
    if (!conditions)
        return Complain(err, wrong, ExitCode::WrongUse);
    const auto bytes = SheetBytes(path, wrong);
    if (!bytes)
        return Complain(err, path + ": " + wrong);
    const Sheet sheet = ReadSheet(*bytes);
    if (sheet.fault != SheetFault::None)
        return Complain(err, path + ": " + FaultWords(sheet.fault));
    LineList list;
    try {
        LoadList(folder, *conditions, list);
    } catch (const DaoError &error) {
        return Complain(err, DatabasePath(folder) + ": " + ErrorText(error));
    }
    const SheetPlan plan = PlanSheet(sheet, list);
    Report(plan, list, path, out);
    return plan.refused.empty() ? ExitCode::Ok : ExitCode::Found;
}
