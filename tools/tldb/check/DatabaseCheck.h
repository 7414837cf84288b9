#pragma once

#include "data/dao/Database.h"

#include <QString>
#include <QStringList>
#include <QTextStream>
#include <functional>
#include <optional>

struct TableDefinition;

/// Something wrong in a database. `table` is empty for what concerns the file as a whole, `key` for
/// what concerns no single row, `column` for what concerns a row or table as a whole.
struct Finding
{
    QString table;
    QString key; ///< "AccNo=1 AccSubNo=2"
    QString column;
    QString what;
};

/// The finding in one line; line breaks and the like in a text are shown as escapes.
QString ToLine(const Finding &finding);

using FindingSink = std::function<void(const Finding &)>;

/// Writes findings and notes to a stream, one line each, and counts them.
class FindingReport
{
public:
    explicit FindingReport(QTextStream &out);
    FindingReport(const FindingReport &) = delete;
    FindingReport &operator=(const FindingReport &) = delete;

    FindingSink found;
    FindingSink noted; ///< for what is worth knowing but breaks no rule
    qint64 findings = 0;
    qint64 notes = 0;
};

/// How much was read.
struct CheckedAmount
{
    int tables = 0;
    qint64 rows = 0;
};

/// Runs every check below; a part that can't be read further is a finding, and the next check has
/// its turn.
CheckedAmount CheckDatabase(Database &database, const FindingSink &found, const FindingSink &noted);

// The checks of a database. Each only reads, hands every finding to `found`, and throws DaoError
// when the file can't be read further.

/// The engine's own check of the file.
void CheckIntegrity(Database &database, const FindingSink &found);

/// The properties that tell the format.
void CheckProperties(Database &database, const FindingSink &found);

/// Tables (an optional one may be missing), columns, keys and indexes. What the definition does not
/// know is handed to `noted`.
void CheckSchema(Database &database, const FindingSink &found, const FindingSink &noted);

/// The values of every row of a table. Returns the number of rows; nothing when there is no such
/// table. Columns that are missing are passed over.
std::optional<qint64> CheckValues(Database &database, const TableDefinition &table,
                                  const FindingSink &found);

/// Equal keys, rows without the row that they belong to, and the number of company rows. Tables and
/// columns that are missing are passed over.
void CheckRelations(Database &database, const FindingSink &found);

/// The columns of a table of the file; empty when there is no such table.
QStringList ColumnsInFile(Database &database, const QString &table);
