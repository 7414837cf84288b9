#include "data/dao/Dialect.h"

#include "data/dao/SqlText.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace {

enum class Kind { Blank, Word, Number, Literal, Unclosed, Symbol };

/// One token. A literal's text is its content without quotes. Texts that stand in the statement as
/// they are point into it.
struct Token
{
    Kind kind;
    QString text;

    bool Is(QStringView word) const
    {
        return kind == Kind::Word && text.compare(word, Qt::CaseInsensitive) == 0;
    }
    bool IsSymbol(QStringView symbol) const { return kind == Kind::Symbol && text == symbol; }
};

using Tokens = std::vector<Token>;

bool IsWordStart(QChar c)
{
    return c.isLetter() || c == '_';
}

bool IsWordPart(QChar c)
{
    return c.isLetterOrNumber() || c == '_' || c == '$';
}

QString PieceOf(QStringView sql, qsizetype start, qsizetype end)
{
    return QString::fromRawData(sql.data() + start, end - start);
}

/// Reads the literal that begins at `at` with its quote; doubled quotes stand for one.
Token ReadLiteral(QStringView sql, qsizetype &at)
{
    const QChar quote = sql[at++];
    Token token{Kind::Literal, {}};
    for (;;) {
        const qsizetype end = sql.indexOf(quote, at);
        const QString piece = PieceOf(sql, at, end < 0 ? sql.size() : end);
        token.text = token.text.isEmpty() ? piece : token.text + piece;
        at = end < 0 ? sql.size() : end + 1;
        if (end < 0) {
            token.kind = Kind::Unclosed;
            return token;
        }
        if (at == sql.size() || sql[at] != quote)
            return token;
        token.text += quote;
        ++at;
    }
}

Tokens Tokenize(QStringView sql)
{
    Tokens tokens;
    tokens.reserve(size_t(sql.size()) / 3);
    qsizetype at = 0;
    const auto take = [&](Kind kind, auto &&belongs) {
        const qsizetype start = at++;
        while (at < sql.size() && belongs(sql[at]))
            ++at;
        tokens.push_back({kind, PieceOf(sql, start, at)});
    };
    while (at < sql.size()) {
        const QChar c = sql[at];
        if (c == '\'' || c == '"')
            tokens.push_back(ReadLiteral(sql, at));
        else if (c.isSpace())
            take(Kind::Blank, [](QChar next) { return next.isSpace(); });
        else if (IsWordStart(c))
            take(Kind::Word, IsWordPart);
        else if (c.isDigit())
            take(Kind::Number, [](QChar next) { return next.isLetterOrNumber() || next == '.'; });
        else if (c == '[')
            take(Kind::Symbol, [closed = false](QChar next) mutable {
                const bool belongs = !closed;
                closed = next == ']';
                return belongs;
            });
        else if (c == '<' || c == '>')
            take(Kind::Symbol, [](QChar next) { return next == '=' || next == '>'; });
        else
            take(Kind::Symbol, [](QChar) { return false; });
    }
    return tokens;
}

/// Whether the text ends inside of this literal or this name in brackets.
bool IsUnclosed(const Token &token)
{
    return token.kind == Kind::Unclosed
           || (token.kind == Kind::Symbol && token.text[0] == '[' && !token.text.endsWith(']'));
}

qsizetype SkipBlanks(const Tokens &tokens, qsizetype at)
{
    while (at < qsizetype(tokens.size()) && tokens[at].kind == Kind::Blank)
        ++at;
    return at;
}

/// A constant text at `at`: a literal, or Chr(n). Moves `at` past it.
std::optional<QString> ReadConstant(const Tokens &tokens, qsizetype &at)
{
    if (at >= qsizetype(tokens.size()))
        return std::nullopt;
    if (tokens[at].kind == Kind::Literal)
        return tokens[at++].text;
    if (!tokens[at].Is(u"Chr") && !tokens[at].Is(u"Chr$"))
        return std::nullopt;
    const qsizetype open = SkipBlanks(tokens, at + 1);
    const qsizetype number = SkipBlanks(tokens, open + 1);
    const qsizetype close = SkipBlanks(tokens, number + 1);
    if (close >= qsizetype(tokens.size()) || !tokens[open].IsSymbol(u"(")
        || tokens[number].kind != Kind::Number || !tokens[close].IsSymbol(u")"))
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
        joined.push_back({Kind::Literal, *text});
    }
    return joined;
}

/// The native form of a pattern that is plain text with at most one "*" at its end; nothing for any
/// other. "[x]" with one character is that character.
std::optional<QString> NativePattern(const QString &pattern)
{
    QString native;
    bool hasEscape = false;
    for (qsizetype at = 0; at < pattern.size(); ++at) {
        QChar c = pattern[at];
        if (c == '*' && at == pattern.size() - 1) {
            native += '%';
            break;
        }
        if (c == '[' && at + 2 < pattern.size() && pattern[at + 2] == ']' && pattern[at + 1] != '!'
            && pattern[at + 1] != ']') {
            c = pattern[at + 1];
            at += 2;
        } else if (c == '*' || c == '?' || c == '#' || c == '[') {
            return std::nullopt;
        }
        if (c == '%' || c == '_' || c == '\\') {
            native += '\\';
            hasEscape = true;
        }
        native += c;
    }
    return SqlQuoted(native) + (hasEscape ? " ESCAPE '\\'" : "");
}

/// Where the operand that ends before `end` begins: a name with its qualifiers, a literal or
/// number, or a parenthesis with the function name before it.
qsizetype OperandStart(const Tokens &tokens, qsizetype end)
{
    qsizetype at = end;
    while (at > 0 && tokens[at - 1].kind == Kind::Blank)
        --at;
    if (at > 0 && tokens[at - 1].IsSymbol(u")")) {
        int depth = 0;
        do {
            --at;
            depth += tokens[at].IsSymbol(u")") ? 1 : tokens[at].IsSymbol(u"(") ? -1 : 0;
        } while (at > 0 && depth > 0);
        return at > 0 && tokens[at - 1].kind == Kind::Word ? at - 1 : at;
    }
    at = std::max<qsizetype>(at - 1, 0);
    while (at >= 2 && tokens[at - 1].IsSymbol(u"."))
        at -= 2;
    return at;
}

Tokens TranslateLike(const Tokens &tokens)
{
    Tokens result;
    result.reserve(tokens.size());
    for (qsizetype at = 0; at < qsizetype(tokens.size()); ++at) {
        const qsizetype pattern = SkipBlanks(tokens, at + 1);
        if (!tokens[at].Is(u"LIKE") || pattern >= qsizetype(tokens.size())
            || tokens[pattern].kind != Kind::Literal) {
            result.push_back(tokens[at]);
            continue;
        }
        if (const auto native = NativePattern(tokens[pattern].text)) {
            result.push_back({Kind::Symbol, "LIKE " + *native});
        } else {
            qsizetype operandEnd = qsizetype(result.size());
            while (operandEnd > 0 && result[operandEnd - 1].kind == Kind::Blank)
                --operandEnd;
            const bool isNegated = operandEnd > 0 && result[operandEnd - 1].Is(u"NOT");
            if (isNegated)
                result.erase(result.begin() + operandEnd - 1, result.end());
            const qsizetype start = OperandStart(result, qsizetype(result.size()));
            result.insert(result.begin() + start,
                          {Kind::Symbol, QString(isNegated ? "NOT " : "") + "like_pattern("
                                             + SqlQuoted(tokens[pattern].text) + ", "});
            result.push_back({Kind::Symbol, ")"});
        }
        at = pattern;
    }
    return result;
}

/// The first word of the list at depth 0 from `from` on; the end when there is none.
qsizetype FindWord(const Tokens &tokens, QStringView word, qsizetype from)
{
    int depth = 0;
    for (qsizetype at = from; at < qsizetype(tokens.size()); ++at) {
        depth += tokens[at].IsSymbol(u"(") ? 1 : tokens[at].IsSymbol(u")") ? -1 : 0;
        if (depth == 0 && tokens[at].Is(word))
            return at;
    }
    return qsizetype(tokens.size());
}

Tokens Slice(const Tokens &tokens, qsizetype from, qsizetype to)
{
    return Tokens(tokens.begin() + from, tokens.begin() + std::max(from, to));
}

void Append(Tokens &tokens, const Tokens &more)
{
    tokens.insert(tokens.end(), more.begin(), more.end());
}

void AppendSymbol(Tokens &tokens, const QString &text)
{
    tokens.push_back({Kind::Symbol, text});
}

/// Takes the statement's closing ";" (and the blanks around it) off; tells whether there was one.
bool TakeSemicolon(Tokens &tokens)
{
    while (!tokens.empty() && tokens.back().kind == Kind::Blank)
        tokens.pop_back();
    if (tokens.empty() || !tokens.back().IsSymbol(u";"))
        return false;
    tokens.pop_back();
    return true;
}

void TranslateTop(Tokens &tokens)
{
    const qsizetype select = SkipBlanks(tokens, 0);
    if (select >= qsizetype(tokens.size()) || !tokens[select].Is(u"SELECT"))
        return;
    const qsizetype top = SkipBlanks(tokens, select + 1);
    const qsizetype count = SkipBlanks(tokens, top + 1);
    if (count >= qsizetype(tokens.size()) || !tokens[top].Is(u"TOP")
        || tokens[count].kind != Kind::Number)
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
        const bool isQualifier = isTarget && token.kind == Kind::Word
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

QString NativeName(const QString &word)
{
    static constexpr struct
    {
        QLatin1String name;
        const char *native;
    } functions[] = {{QLatin1String("CHR"), "char"},
                     {QLatin1String("CHR$"), "char"},
                     {QLatin1String("LEFT$"), "left_text"}};
    for (const auto &[name, native] : functions)
        if (word.size() == name.size() && word.compare(name, Qt::CaseInsensitive) == 0)
            return native;
    return word;
}

QString ToText(const Tokens &tokens, qsizetype expectedLength)
{
    QString sql;
    sql.reserve(expectedLength);
    for (const Token &token : tokens) {
        // Two literals side by side would be one with a quote in it.
        if (token.kind == Kind::Literal)
            sql += (sql.endsWith('\'') ? " " : "") + SqlQuoted(token.text);
        else if (token.kind == Kind::Word)
            sql += NativeName(token.text);
        else
            sql += token.IsSymbol(u"&") ? QString("||") : token.text;
    }
    return sql;
}

} // namespace

QString ToSqlite(const QString &statement)
{
    Tokens tokens = Tokenize(statement);
    if (!tokens.empty() && IsUnclosed(tokens.back()))
        return statement;
    tokens = TranslateLike(JoinConstants(tokens));
    TranslateTop(tokens);
    TranslateUpdateJoin(tokens);
    return ToText(tokens, 2 * statement.size());
}
