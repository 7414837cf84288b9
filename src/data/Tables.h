#pragma once

#include <QString>
#include <optional>
#include <span>
#include <vector>

class Connection;
class Database;

/// The tables of TLDB0010.MDB: the one definition, for creating and checking a database and for
/// statements that name every column.

enum class ColumnType {
    Text, ///< at most `width` characters, compared without case
    Date, ///< "YYYYMMDD" or blank
    Integer,
    Quantity, ///< up to 9 integer digits and 3 decimals
    Number,   ///< any other number
};

struct ColumnDefinition
{
    const char *name;
    ColumnType type;
    int width = 0;
    bool isKey = false;

    bool IsText() const { return type == ColumnType::Text || type == ColumnType::Date; }
};

struct TableDefinition
{
    const char *name;
    const char *title; ///< the table's Japanese name
    std::span<const ColumnDefinition> columns;
    std::vector<const char *> indexes; ///< the columns of each index besides the key
    bool isOptional = false;           ///< a database may be without it
};

/// What was answered when: a row for each line of each answer, added when the line is answered and
/// never changed. The one table that only this program knows; a database that was made before it is
/// without it until "tldb upgrade".
inline constexpr auto HistoryTable = "TLAH0010";

/// All tables.
std::span<const TableDefinition> Tables();

/// The table of this name (compared without case); null when there is none.
const TableDefinition *FindTable(const QString &name);

/// The table's column of this name (compared without case); null when there is none.
const ColumnDefinition *FindColumn(const TableDefinition &table, const QString &name);

/// The value as a statement gives it to the column: for a text column a quoted literal without
/// trailing blanks; for a number column the number in its shortest form, exactly ("-0.5" of
/// "-00.500", "0" of a blank text), so that no text is ever run as SQL. Nothing when a number
/// column is to take what is no number: digits, up to 18 on either side of a point, with a sign or
/// none.
std::optional<QString> SqlLiteralOf(const ColumnDefinition &column, const QString &value);

/// The version of this definition, kept in the database's property SchemaVersion.
inline constexpr int SchemaVersion = 1;

/// The database format that the program asks for, as property AccessVersion has it.
inline constexpr auto CurrentAccessVersion = "08.50";

/// The oldest format that the program accepts.
inline constexpr double OldestAccessVersion = 8.0;

/// The connect text with the suite's password.
inline constexpr auto ConnectText = ";PWD=velmo";

/// CREATE TABLE of a table with these columns, as the engine has to store them.
QString CreateTableSql(const Connection &engine, const QString &name,
                       std::span<const ColumnDefinition> columns);

/// Makes a table that the database does not have, with its indexes. Throws DaoError.
void CreateTable(Database &database, const TableDefinition &table);

/// Makes every table and index in an empty database and sets its properties. Throws DaoError.
void CreateTables(Database &database);
