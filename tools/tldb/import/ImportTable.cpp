#include "tldb/import/ImportTable.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "tldb/NewDatabase.h"
#include "tldb/check/ValueRules.h"
#include "util/Decimal.h"
#include "util/VbText.h"

#include <algorithm>

namespace {

/// The digits of which a double keeps every one.
constexpr qsizetype DigitsOfDouble = 15;

/// A column of the new table and where its values come from.
struct Target
{
    QString name;
    const ColumnDefinition *definition = nullptr; ///< null: the system does not know it
    int source = -1;                              ///< the old table's column; -1: none
};

/// The type of a column that the system does not know.
QString SqlTypeOf(OldType type)
{
    switch (type) {
    case OldType::Boolean:
    case OldType::Byte:
    case OldType::Short:
    case OldType::Long:
        return "INTEGER";
    case OldType::Single:
    case OldType::Double:
        return "REAL";
    case OldType::Currency:
    case OldType::Decimal:
        return ""; // keeps numbers as numbers, and as texts those with more digits than a double
    case OldType::Binary:
    case OldType::LongBinary:
        return "BLOB";
    default:
        return "TEXT COLLATE NOCASE";
    }
}

QString ColumnSql(const OldColumn &column)
{
    return QuotedName(column.name) + ' ' + SqlTypeOf(column.type);
}

/// The columns of the system's table, then those that it does not know.
std::vector<Target> TargetsOf(const TableDefinition *definition,
                              const std::vector<OldColumn> &columns)
{
    std::vector<Target> targets;
    if (definition)
        for (const ColumnDefinition &column : definition->columns)
            targets.push_back({column.name, &column});
    for (size_t source = 0; source < columns.size(); ++source) {
        const auto target = std::find_if(targets.begin(), targets.end(), [&](const Target &known) {
            return known.name.compare(columns[source].name, Qt::CaseInsensitive) == 0;
        });
        if (target != targets.end())
            target->source = int(source);
        else
            targets.push_back({columns[source].name, nullptr, int(source)});
    }
    return targets;
}

/// Makes the table, or adds to the system's what it does not know.
void MakeColumns(Database &database, const QString &name, const std::vector<Target> &targets,
                 const std::vector<OldColumn> &columns)
{
    QStringList unknown;
    for (const Target &target : targets)
        if (!target.definition)
            unknown += ColumnSql(columns[size_t(target.source)]);
    if (!FindTable(name))
        database.ExecuteNative("CREATE TABLE " + QuotedName(name) + " (" + unknown.join(", ")
                               + ')');
    else
        for (const QString &column : unknown)
            database.ExecuteNative("ALTER TABLE " + QuotedName(name) + " ADD COLUMN " + column);
}

bool IsKeptByDouble(const QString &number)
{
    QString digits = number;
    digits.remove('-').remove('.');
    while (digits.startsWith('0'))
        digits.remove(0, 1);
    while (digits.endsWith('0'))
        digits.chop(1);
    return digits.size() <= DigitsOfDouble;
}

/// Binds the values of one row.
class RowBinder
{
public:
    RowBinder(RowLoader &loader, const std::vector<Target> &targets)
        : m_loader(loader)
        , m_targets(targets)
    {
    }

    /// Returns what is lost of the value; an empty text when nothing is.
    QString Bind(size_t column, const OldValue &value)
    {
        const int index = int(column);
        const ColumnDefinition *definition = m_targets[column].definition;
        const bool isText = definition && definition->IsText();
        if (std::holds_alternative<Unreadable>(value)) {
            m_loader.BindNull(index);
            return "can't be read and is left empty";
        }
        if (std::holds_alternative<std::monostate>(value)) {
            m_loader.BindNull(index);
        } else if (const auto *text = std::get_if<QString>(&value)) {
            // A blank keeps what follows in its place, and is what an answer record has for it.
            const QString kept = QString(*text).replace(QChar(0), ' ');
            m_loader.Bind(index, isText ? RTrim(kept) : kept);
            if (kept != *text)
                return CharacterFault(*text) + ", written as blanks";
        } else if (const auto *number = std::get_if<double>(&value)) {
            if (isText)
                m_loader.Bind(index, Decimal::FromDouble(*number).ToText());
            else
                m_loader.Bind(index, *number);
        } else if (const auto *exact = std::get_if<ExactNumber>(&value)) {
            const bool isKept = isText || IsKeptByDouble(exact->text);
            if (isText || !isKept)
                m_loader.Bind(index, exact->text);
            else
                m_loader.Bind(index, exact->text.toDouble());
            if (definition && !isKept)
                return "has more digits than the column keeps: " + exact->text;
        } else if (const auto *whole = std::get_if<qint64>(&value)) {
            m_loader.Bind(index, *whole);
        } else {
            m_loader.Bind(index, std::get<QByteArray>(value));
        }
        return {};
    }

    /// Binds what a column holds in every row when the old table lacks it.
    void BindBlank(size_t column)
    {
        if (m_targets[column].definition->IsText())
            m_loader.Bind(int(column), QString());
        else
            m_loader.Bind(int(column), qint64(0));
    }

private:
    RowLoader &m_loader;
    const std::vector<Target> &m_targets;
};

/// What is wrong with a text of a column that the check of the new database does not read.
QString UncheckedFault(const OldValue &value, const Target &target)
{
    const auto *text = std::get_if<QString>(&value);
    return text && !target.definition ? CharacterFault(*text) : QString();
}

QString ShownValue(const OldValue &value)
{
    if (const auto *whole = std::get_if<qint64>(&value))
        return QString::number(*whole);
    if (const auto *number = std::get_if<double>(&value))
        return QString::number(*number, 'g', 15);
    if (const auto *exact = std::get_if<ExactNumber>(&value))
        return exact->text;
    const auto *text = std::get_if<QString>(&value);
    return text ? *text : QString("null");
}

/// The key of a row, or its number (1 is the first) in a table without one.
QString KeyText(const std::vector<Target> &targets, const std::vector<OldValue> &row, qint64 number)
{
    QStringList parts;
    for (const Target &target : targets)
        if (target.definition && target.definition->isKey && target.source >= 0)
            parts += target.name + '=' + ShownValue(row[size_t(target.source)]);
    return parts.isEmpty() ? QString("row=%1").arg(number) : parts.join(' ');
}

/// Whether the error concerns but the row.
bool IsOfRow(const DaoError &error)
{
    return error.number == DaoErrors::DuplicateKey || error.number == DaoErrors::NullNotAllowed;
}

} // namespace

ImportCount ImportTable(Database &database, const QString &name, OldTable &table,
                        const FindingSink &found, const FindingSink &noted)
{
    const std::vector<Target> targets = TargetsOf(FindTable(name), table.Columns());
    MakeColumns(database, name, targets, table.Columns());
    QStringList columns;
    for (const Target &target : targets)
        columns += target.name;
    const auto loader = database.Engine().LoadRows(name, columns);
    RowBinder binder(*loader, targets);
    for (size_t column = 0; column < targets.size(); ++column)
        if (targets[column].source < 0) {
            binder.BindBlank(column);
            noted({name, {}, targets[column].name, "the old table lacks the column"});
        }

    ImportCount count;
    std::vector<OldValue> row;
    bool isSound = true;
    const auto ofRow = [&](const QString &column, const QString &what) {
        return Finding{name, KeyText(targets, row, count.read), column, what};
    };
    while (table.Next(row, isSound)) {
        ++count.read;
        if (!isSound)
            found(ofRow({}, "the row's bytes contradict each other, its values may be wrong"));
        for (size_t column = 0; column < targets.size(); ++column) {
            const Target &target = targets[column];
            if (target.source < 0)
                continue;
            const OldValue &value = row[size_t(target.source)];
            if (const QString loss = binder.Bind(column, value); !loss.isEmpty())
                found(ofRow(target.name, loss));
            else if (const QString fault = UncheckedFault(value, target); !fault.isEmpty())
                noted(ofRow(target.name, fault));
        }
        try {
            loader->Insert();
            ++count.written;
        } catch (const DaoError &error) {
            if (!IsOfRow(error))
                throw;
            found(ofRow({}, "the row is not written: " + ErrorText(error)));
        }
    }
    loader->Finish();
    if (count.read != table.RowCount())
        found({name,
               {},
               {},
               QString("%1 of %2 rows could be read").arg(count.read).arg(table.RowCount())});
    return count;
}
