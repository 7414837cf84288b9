#include "data/dao/Dialect.h"

#include "data/Tables.h"
#include "data/dao/SqlText.h"

#include <algorithm>

namespace {

/// A constant text at `at`: a literal, or Chr(n). Moves `at` past it.
std::optional<QString> ReadConstant(const Tokens &tokens, qsizetype &at)
{
    if (at >= qsizetype(tokens.size()))
        return std::nullopt;
    if (tokens[at].kind == TokenKind::Literal)
        return tokens[at++].text;
    if (!tokens[at].Is(u"Chr") && !tokens[at].Is(u"Chr$"))
        return std::nullopt;
    const qsizetype open = SkipBlanks(tokens, at + 1);
    const qsizetype number = SkipBlanks(tokens, open + 1);
    const qsizetype close = SkipBlanks(tokens, number + 1);
    if (close >= qsizetype(tokens.size()) || !tokens[open].IsSymbol(u"(")
        || tokens[number].kind != TokenKind::Number || !tokens[close].IsSymbol(u")"))
        return std::nullopt;
    at = close + 1;
    return QString(QChar(ushort(tokens[number].text.toUInt())));
}

/// Joins constants that "&" stands between into one literal.
Tokens JoinConstants(const Tokens &tokens)
{
    Tokens joined;
    joined.reserve(tokens.size());
    for (qsizetype at = 0; at < qsizetype(tokens.size());) {
        auto text = ReadConstant(tokens, at);
        if (!text) {
            joined.push_back(tokens[at++]);
            continue;
        }
        for (;;) {
            const qsizetype ampersand = SkipBlanks(tokens, at);
            if (ampersand >= qsizetype(tokens.size()) || !tokens[ampersand].IsSymbol(u"&"))
                break;
            qsizetype next = SkipBlanks(tokens, ampersand + 1);
            const auto more = ReadConstant(tokens, next);
            if (!more)
                break;
            *text += *more;
            at = next;
        }
        joined.push_back({TokenKind::Literal, *text});
    }
    return joined;
}

/// Where the operand that ends before `end` begins: a name with its qualifiers, a literal or
/// number, or a parenthesis with the function name before it.
qsizetype OperandStart(const Tokens &tokens, qsizetype end)
{
    qsizetype at = end;
    while (at > 0 && tokens[at - 1].kind == TokenKind::Blank)
        --at;
    if (at > 0 && tokens[at - 1].IsSymbol(u")")) {
        int depth = 0;
        do {
            --at;
            depth += tokens[at].IsSymbol(u")") ? 1 : tokens[at].IsSymbol(u"(") ? -1 : 0;
        } while (at > 0 && depth > 0);
        return at > 0 && tokens[at - 1].kind == TokenKind::Word ? at - 1 : at;
    }
    at = std::max<qsizetype>(at - 1, 0);
    while (at >= 2 && tokens[at - 1].IsSymbol(u"."))
        at -= 2;
    return at;
}

Tokens TranslateLike(const Tokens &tokens, const DialectWriter &writer)
{
    Tokens result;
    result.reserve(tokens.size());
    const auto dropBlanks = [&result] {
        while (!result.empty() && result.back().kind == TokenKind::Blank)
            result.pop_back();
    };
    for (qsizetype at = 0; at < qsizetype(tokens.size()); ++at) {
        const qsizetype pattern = SkipBlanks(tokens, at + 1);
        if (!tokens[at].Is(u"LIKE") || pattern >= qsizetype(tokens.size())
            || tokens[pattern].kind != TokenKind::Literal) {
            result.push_back(tokens[at]);
            continue;
        }
        dropBlanks();
        const bool isNegated = !result.empty() && result.back().Is(u"NOT");
        if (isNegated)
            result.pop_back();
        dropBlanks();
        const qsizetype start = OperandStart(result, qsizetype(result.size()));
        const Tokens operand = Slice(result, start, qsizetype(result.size()));
        result.resize(size_t(start));
        Append(result, writer.Like(operand, isNegated, tokens[pattern].text));
        at = pattern;
    }
    return result;
}

void TranslateTop(Tokens &tokens)
{
    const qsizetype select = SkipBlanks(tokens, 0);
    if (select >= qsizetype(tokens.size()) || !tokens[select].Is(u"SELECT"))
        return;
    const qsizetype top = SkipBlanks(tokens, select + 1);
    const qsizetype count = SkipBlanks(tokens, top + 1);
    if (count >= qsizetype(tokens.size()) || !tokens[top].Is(u"TOP")
        || tokens[count].kind != TokenKind::Number)
        return;
    const QString limit = tokens[count].text;
    tokens.erase(tokens.begin() + top, tokens.begin() + SkipBlanks(tokens, count + 1));
    const bool hadSemicolon = TakeSemicolon(tokens);
    AppendSymbol(tokens, " LIMIT " + limit);
    if (hadSemicolon)
        AppendSymbol(tokens, ";");
}

/// Takes the table name off the columns that are assigned to: a word after SET or "," before "=".
Tokens WithoutTargetQualifiers(const Tokens &assignments)
{
    Tokens result;
    int depth = 0;
    bool isTarget = true;
    for (qsizetype at = 0; at < qsizetype(assignments.size()); ++at) {
        const Token &token = assignments[at];
        depth += token.IsSymbol(u"(") ? 1 : token.IsSymbol(u")") ? -1 : 0;
        const bool isQualifier = isTarget && token.kind == TokenKind::Word
                                 && at + 1 < qsizetype(assignments.size())
                                 && assignments[at + 1].IsSymbol(u".");
        if (isQualifier) {
            ++at;
            continue;
        }
        if (depth == 0 && token.IsSymbol(u","))
            isTarget = true;
        else if (token.IsSymbol(u"="))
            isTarget = false;
        result.push_back(token);
    }
    return result;
}

void TranslateUpdateJoin(Tokens &tokens)
{
    const qsizetype update = SkipBlanks(tokens, 0);
    if (update >= qsizetype(tokens.size()) || !tokens[update].Is(u"UPDATE"))
        return;
    const qsizetype end = qsizetype(tokens.size());
    const qsizetype inner = FindWord(tokens, u"INNER", update);
    const qsizetype join = FindWord(tokens, u"JOIN", update);
    const qsizetype on = FindWord(tokens, u"ON", update);
    const qsizetype set = FindWord(tokens, u"SET", update);
    if (!(inner < join && join < on && on < set && set < end)
        || SkipBlanks(tokens, inner + 1) != join)
        return;
    const bool hadSemicolon = TakeSemicolon(tokens);
    const qsizetype where = FindWord(tokens, u"WHERE", set);

    Tokens result = Slice(tokens, update, inner);
    AppendSymbol(result, "SET");
    Append(result, WithoutTargetQualifiers(Slice(tokens, set + 1, where)));
    AppendSymbol(result, " FROM ");
    Append(result, Slice(tokens, join + 1, on));
    AppendSymbol(result, " WHERE (");
    Append(result, Slice(tokens, on + 1, set));
    AppendSymbol(result, ")");
    if (where < qsizetype(tokens.size())) {
        AppendSymbol(result, " AND (");
        Append(result, Slice(tokens, where + 1, qsizetype(tokens.size())));
        AppendSymbol(result, ")");
    }
    if (hadSemicolon)
        AppendSymbol(result, ";");
    tokens = result;
}

/// Whether the list orders by this column, by itself or as a column of this table.
bool IsOrderedBy(const Tokens &tokens, qsizetype from, qsizetype to, const TableDefinition &table,
                 const QString &column)
{
    for (qsizetype at = from; at < to; ++at) {
        const bool isQualified = at >= 2 && tokens[at - 1].IsSymbol(u".");
        if (tokens[at].Is(column) && (!isQualified || tokens[at - 2].Is(QString(table.name))))
            return true;
    }
    return false;
}

/// Rows that ORDER BY leaves equal come by the first table's key, the same on every engine: the
/// order of an answer's lines is the order of its record.
void OrderTies(Tokens &tokens)
{
    const auto end = qsizetype(tokens.size());
    const auto [from, to] = OrderList(tokens);
    const qsizetype distinct = SkipBlanks(tokens, SkipBlanks(tokens, 0) + 1);
    if (from >= to || tokens[distinct].Is(u"DISTINCT") || FindWord(tokens, u"GROUP") < end
        || FindWord(tokens, u"UNION") < end)
        return;
    const TableDefinition *table = FirstTable(tokens);
    if (!table)
        return;
    Tokens more;
    for (const ColumnDefinition &column : table->columns)
        if (column.isKey && !IsOrderedBy(tokens, from, to, *table, column.name))
            Append(more, {{TokenKind::Symbol, ","},
                          {TokenKind::Word, table->name},
                          {TokenKind::Symbol, "."},
                          {TokenKind::Word, column.name}});
    tokens.insert(tokens.begin() + to, more.begin(), more.end());
}

bool IsCall(const Tokens &tokens, qsizetype at)
{
    const qsizetype open = SkipBlanks(tokens, at + 1);
    return tokens[at].kind == TokenKind::Word && open < qsizetype(tokens.size())
           && tokens[open].IsSymbol(u"(");
}

/// The text of the tokens, functions under the engine's names.
QString ToText(const Tokens &tokens, const DialectWriter &writer, qsizetype expectedLength)
{
    QString sql;
    sql.reserve(expectedLength);
    std::vector<std::pair<int, const char *>> open; // depth of a call's parenthesis, what ends it
    int depth = 0;
    for (qsizetype at = 0; at < qsizetype(tokens.size()); ++at) {
        const Token &token = tokens[at];
        if (token.kind == TokenKind::Literal) {
            // Two literals side by side would be one with a quote in it.
            sql += (sql.endsWith('\'') ? " " : "") + SqlQuoted(token.text);
        } else if (const auto *function = IsCall(tokens, at) ? writer.Find(token) : nullptr) {
            sql += function->begin;
            open.emplace_back(depth + 1, function->end);
        } else if (token.IsSymbol(u"(")) {
            ++depth;
            sql += token.text;
        } else if (token.IsSymbol(u")")) {
            sql += token.text;
            if (!open.empty() && open.back().first == depth) {
                sql += open.back().second;
                open.pop_back();
            }
            --depth;
        } else {
            sql += token.IsSymbol(u"&") ? QString("||") : token.text;
        }
    }
    return sql;
}

} // namespace

const TableDefinition *FirstTable(const Tokens &tokens)
{
    qsizetype at = FindWord(tokens, u"FROM") + 1;
    while (at < qsizetype(tokens.size())
           && (tokens[at].kind == TokenKind::Blank || tokens[at].IsSymbol(u"(")))
        ++at;
    return at < qsizetype(tokens.size()) ? FindTable(tokens[at].text) : nullptr;
}

std::optional<PlainPattern> PlainPattern::Of(const QString &pattern)
{
    PlainPattern plain;
    for (qsizetype at = 0; at < pattern.size(); ++at) {
        QChar c = pattern[at];
        if (c == '*' && at == pattern.size() - 1) {
            plain.isPrefix = true;
            break;
        }
        if (c == '[' && at + 2 < pattern.size() && pattern[at + 2] == ']' && pattern[at + 1] != '!'
            && pattern[at + 1] != ']') {
            c = pattern[at + 1];
            at += 2;
        } else if (c == '*' || c == '?' || c == '#' || c == '[') {
            return std::nullopt;
        }
        plain.text += c;
    }
    return plain;
}

const DialectWriter::Function *DialectWriter::Find(const Token &token) const
{
    for (const Function &function : m_functions)
        if (token.Is(function.name))
            return &function;
    return nullptr;
}

QString Translate(const QString &statement, const DialectWriter &writer)
{
    Tokens tokens = Tokenize(statement);
    if (!tokens.empty() && IsUnclosed(tokens.back()))
        return statement;
    tokens = TranslateLike(JoinConstants(tokens), writer);
    OrderTies(tokens);
    writer.Finish(tokens);
    TranslateTop(tokens);
    TranslateUpdateJoin(tokens);
    return ToText(tokens, writer, 2 * statement.size());
}
