#pragma once

#include "tldb/import/OldValue.h"

#include <QString>
#include <QStringList>
#include <memory>
#include <optional>
#include <vector>

/// Why a file in the original engine's format can't be read, in one English line.
struct OldDatabaseError
{
    QString what;
};

struct OldColumn
{
    QString name;
    OldType type;
};

/// The rows of one table, from the first to the last; one row is in memory at a time.
class OldTable
{
public:
    ~OldTable();
    OldTable(const OldTable &) = delete;
    OldTable &operator=(const OldTable &) = delete;

    const std::vector<OldColumn> &Columns() const { return m_columns; }

    /// Rows that the table says it has. In a damaged file fewer, or more, can be read.
    qint64 RowCount() const;

    /// Reads the next row that is not deleted, its values in the order of the columns. `isSound` is
    /// false when its bytes contradict each other or the table's definition: some of the values
    /// are not what was written. Returns false, and leaves both as they are, when there is none.
    bool Next(std::vector<OldValue> &row, bool &isSound);

private:
    friend class OldDatabase;
    struct Handle;
    explicit OldTable(std::unique_ptr<Handle> handle);

    std::unique_ptr<Handle> m_handle;
    std::vector<OldColumn> m_columns;
};

/// A database file in the original engine's format 4, opened for reading only. The database
/// password is not asked for. Environment variables and locale do not matter.
class OldDatabase
{
public:
    /// Throws OldDatabaseError for a file that is missing, can't be opened, is in another format,
    /// or so damaged that reading it through would crash or never end: a process of its own tries
    /// that first.
    explicit OldDatabase(const QString &path);
    ~OldDatabase();
    OldDatabase(const OldDatabase &) = delete;
    OldDatabase &operator=(const OldDatabase &) = delete;

    /// The tables without the engine's own, in the order of the file.
    QStringList TableNames() const;

    /// The property AccessVersion; nothing when the file has none.
    std::optional<QString> AccessVersion() const;

    /// A table to be read. One at a time; the database has to outlive it. Throws OldDatabaseError
    /// when its definition can't be read.
    std::unique_ptr<OldTable> OpenTable(const QString &name);

private:
    struct Handle;
    explicit OldDatabase(std::unique_ptr<Handle> handle);

    /// Reads the file through in a process of its own. Throws OldDatabaseError when that ends
    /// before its time or takes too long: the library does not guard against damage.
    static void TryReading(const QString &path);
    void ReadThrough();

    std::unique_ptr<Handle> m_handle;
};
