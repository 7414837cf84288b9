#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <memory>
#include <variant>
#include <vector>

/// A value of the original engine's file. Nothing: null. A number with a fixed number of decimals
/// is its text, a date "YYYY-MM-DD HH:MM:SS".
using OldValue = std::variant<std::monostate, qint64, double, QString, QByteArray>;

struct OldColumn
{
    QString name;
    const char *sqlType; ///< the type that keeps its values as they are
};

/// A database file in the original engine's format 4, for reading alone.
class OldDatabase
{
public:
    /// Throws DaoError: FileNotFound, or UnrecognizedFormat for a file of another kind.
    explicit OldDatabase(const QString &path);
    ~OldDatabase();

    QStringList TableNames() const; ///< the engine's own tables left out

    /// The database's format property; a null text when it has none.
    QString AccessVersion() const;

private:
    friend class OldTable;
    struct Handles;

    std::unique_ptr<Handles> m_handles;
};

/// The rows of one table, in the file's order, deleted ones left out.
class OldTable
{
public:
    /// Throws DaoError: ItemNotFound when the table can't be read.
    OldTable(OldDatabase &database, const QString &name);
    ~OldTable();
    OldTable(const OldTable &) = delete;
    OldTable &operator=(const OldTable &) = delete;

    const std::vector<OldColumn> &Columns() const { return m_columns; }

    /// The number of rows that the file says there are.
    qint64 DeclaredRows() const;

    bool Next(); ///< to the first row, then the next; False behind the last

    /// Values of the current row; columns count from 0.
    OldValue Value(int column);

private:
    struct State;

    std::vector<OldColumn> m_columns;
    std::unique_ptr<State> m_state;
};
