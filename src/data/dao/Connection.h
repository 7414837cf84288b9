#pragma once

#include "data/dao/Rows.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

struct ColumnDefinition;

/// A column as the database has it.
struct StoredColumn
{
    QString name;
    QString type;      ///< as the engine names it, upper case
    QString collation; ///< of a text, where the type does not settle it
    bool isNotNull = false;
    bool isKey = false;
};

/// Puts many rows into one table. A bound value stays until the column is bound anew. Every routine
/// throws DaoError; an engine may tell of a row's error as late as in Finish.
class RowLoader
{
public:
    virtual ~RowLoader() = default;

    // The value of a column, 0 is the first.
    virtual void Bind(int column, qint64 value) = 0;
    virtual void Bind(int column, double value) = 0;
    virtual void Bind(int column, const QString &value) = 0;
    virtual void Bind(int column, const QByteArray &value) = 0; ///< as bytes
    virtual void BindNull(int column) = 0;

    virtual void Insert() = 0;

    /// To be called after the last row.
    virtual void Finish() = 0;
};

/// An open connection to a database of one kind of engine. Statements are the engine's own, one at
/// a time; what turns the system's dialect into them is Translated. Every routine throws DaoError.
class Connection
{
public:
    virtual ~Connection() = default;

    /// The statement of the system's dialect as the engine's own.
    virtual QString Translated(const QString &statement) const = 0;

    /// Runs a statement and hands its rows over as they come.
    virtual void Read(const QString &sql, RowReceiver &rows) = 0;

    /// Runs a statement that changes something. Returns the number of rows that it inserted,
    /// changed or deleted.
    virtual int Execute(const QString &sql) = 0;

    /// Runs several statements.
    virtual void ExecuteScript(const QString &sql) = 0;

    /// Begins a transaction: what it reads stays as it is, and nobody else writes, until it ends.
    /// Others' locks are waited for, then reported, here or by its first statement. An exclusive
    /// one is sure of its commit, whoever reads.
    virtual void Begin(bool isExclusive) = 0;
    virtual void Commit() = 0; ///< an error means that nothing was written
    virtual void Rollback() = 0;

    /// Whether a transaction has begun and not ended, by Commit, by Rollback or by an error.
    virtual bool IsInTransaction() const = 0;

    /// Called again and again while a statement runs: False cancels it. An empty one ends that.
    virtual void SetProgress(std::function<bool()> goOn) = 0;

    /// Gives up a connection over which nothing comes for so long, where somebody waits who has no
    /// other way out; without it a statement may take any time.
    virtual void LimitSilence(int milliseconds) { Q_UNUSED(milliseconds) }

    // The structure of the database. Names of tables and columns are compared without case.

    virtual QStringList TableNames() = 0; ///< without the engine's own, in their order

    /// The columns of a table; none when there is no such table.
    virtual std::vector<StoredColumn> Columns(const QString &table) = 0;

    /// The columns that an index over all rows of the table begins with.
    virtual QStringList IndexedColumns(const QString &table) = 0;

    /// A column of the system as this engine has to store it.
    virtual StoredColumn Wanted(const ColumnDefinition &column) const = 0;

    /// What stands for a row's number in a SELECT on a table without a key.
    virtual QString RowNumber() const = 0;

    /// Loads rows into these columns of a table.
    virtual std::unique_ptr<RowLoader> LoadRows(const QString &table, const QStringList &columns)
        = 0;

    /// Gives whoever has rights to one table the same rights to another, where the database has
    /// rights of its own.
    virtual void CopyRights(const QString &fromTable, const QString &toTable) = 0;

    /// Copies the whole database to a new file, onto the disk. False where that is for the
    /// database's own administrator to do.
    virtual bool CopyTo(const QString &localPath) = 0;

    // Damage that the engine itself can find, in its own words.

    virtual QStringList FindDamage() = 0;

    /// In one table; nothing when it was given up because `isToGiveWay` has said so or somebody has
    /// begun to write. It is called in a thread of its own.
    virtual std::optional<QStringList> FindDamage(const QString &table,
                                                  const std::function<bool()> &isToGiveWay)
        = 0;

protected:
    /// The texts of a statement's first column.
    QStringList FirstColumn(const QString &sql);
};

/// A name as SQL takes it, whatever characters it has.
QString QuotedName(QString name);
