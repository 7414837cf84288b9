#pragma once

#include "data/dao/SqlTokens.h"

#include <QString>
#include <optional>
#include <span>

/// A LIKE pattern that is plain text with at most one "*" at its end. "[x]" with one character is
/// that character.
struct PlainPattern
{
    QString text;
    bool isPrefix = false; ///< what the text begins, not what it is

    /// Nothing for any other pattern.
    static std::optional<PlainPattern> Of(const QString &pattern);
};

struct TableDefinition;

/// The table that a SELECT reads first; null when it is none of the system's.
const TableDefinition *FirstTable(const Tokens &tokens);

/// How one engine writes what the engines write each in its own way.
class DialectWriter
{
public:
    /// A function of the dialect: what stands for its name, and behind its call's parenthesis.
    struct Function
    {
        QStringView name;
        const char *begin;
        const char *end;
    };

    explicit DialectWriter(std::span<const Function> functions)
        : m_functions(functions)
    {
    }
    virtual ~DialectWriter() = default;

    /// "operand LIKE pattern", or NOT LIKE.
    virtual Tokens Like(const Tokens &operand, bool isNegated, const QString &pattern) const = 0;

    /// The last word on a statement of which only the names of functions are still the dialect's.
    virtual void Finish(Tokens &) const {}

    const Function *Find(const Token &token) const;

private:
    std::span<const Function> m_functions;
};

/// Turns a statement of the system's SQL dialect into an engine's, token by token; nothing inside a
/// literal is touched except the pattern after LIKE.
///
///   'A' & Chr(124) & 'B'                constant text joined into one literal; other & become ||
///   "text"                              a literal
///   SELECT TOP n ...                    ... LIMIT n
///   UPDATE t INNER JOIN u ON c SET ..   UPDATE t SET .. FROM u WHERE (c) AND (..)
///   SELECT .. FROM t .. ORDER BY x      ... ORDER BY x, and the key columns of t
///   Chr(n), Chr$(n), Left$(t, n), LIKE  as the writer has it
///
/// A statement that is not of the dialect is passed on as it is, for the engine to refuse.
QString Translate(const QString &statement, const DialectWriter &writer);

/// For SQLite.
///
///   Chr(n), Chr$(n), Left$(t, n)        char(n), left_text(t, n)
///   x LIKE 'ab*', 'a[#]b*', 'ab'        a native LIKE, which an index can serve
///   x LIKE other pattern                like_pattern(pattern, x), a function of ours
QString ToSqlite(const QString &statement);

/// For PostgreSQL. A text with more than one statement throws DaoError.
///
///   Chr(n), Chr$(n)                     chr(n)
///   Left$(t, n)                         a citext, as its columns are: compared without case
///   x LIKE 'ab*', 'a[#]b*', 'ab'        a range or an equality, which an index can serve
///   x LIKE other pattern                a regular expression for the text in small letters
///   ORDER BY x, y DESC                  nulls come before all else, as in SQLite
///   SELECT DISTINCT ..                  in the order of the first row of each
///   x'00ff', [Name]                     a bytea, "name"
QString ToPostgres(const QString &statement);
