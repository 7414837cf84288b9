#include "data/dao/SqlTokens.h"

#include <algorithm>

namespace {

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
    Token token{TokenKind::Literal, {}};
    for (;;) {
        const qsizetype end = sql.indexOf(quote, at);
        const QString piece = PieceOf(sql, at, end < 0 ? sql.size() : end);
        token.text = token.text.isEmpty() ? piece : token.text + piece;
        at = end < 0 ? sql.size() : end + 1;
        if (end < 0) {
            token.kind = TokenKind::Unclosed;
            return token;
        }
        if (at == sql.size() || sql[at] != quote)
            return token;
        token.text += quote;
        ++at;
    }
}

} // namespace

Tokens Tokenize(QStringView sql)
{
    Tokens tokens;
    tokens.reserve(size_t(sql.size()) / 3);
    qsizetype at = 0;
    const auto take = [&](TokenKind kind, auto &&belongs) {
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
            take(TokenKind::Blank, [](QChar next) { return next.isSpace(); });
        else if (IsWordStart(c))
            take(TokenKind::Word, IsWordPart);
        else if (c.isDigit())
            take(TokenKind::Number,
                 [](QChar next) { return next.isLetterOrNumber() || next == '.'; });
        else if (c == '[')
            take(TokenKind::Symbol, [closed = false](QChar next) mutable {
                const bool belongs = !closed;
                closed = next == ']';
                return belongs;
            });
        else if (c == '<' || c == '>')
            take(TokenKind::Symbol, [](QChar next) { return next == '=' || next == '>'; });
        else
            take(TokenKind::Symbol, [](QChar) { return false; });
    }
    return tokens;
}

bool IsUnclosed(const Token &token)
{
    return token.kind == TokenKind::Unclosed
           || (token.kind == TokenKind::Symbol && token.text[0] == '['
               && !token.text.endsWith(']'));
}

qsizetype SkipBlanks(const Tokens &tokens, qsizetype at)
{
    while (at < qsizetype(tokens.size()) && tokens[at].kind == TokenKind::Blank)
        ++at;
    return at;
}

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

std::pair<qsizetype, qsizetype> OrderList(const Tokens &tokens)
{
    const auto end = qsizetype(tokens.size());
    const qsizetype by = SkipBlanks(tokens, FindWord(tokens, u"ORDER") + 1);
    if (by >= end || !tokens[by].Is(u"BY"))
        return {end, end};
    qsizetype last = std::min(FindWord(tokens, u"LIMIT", by), end);
    while (tokens[last - 1].kind == TokenKind::Blank || tokens[last - 1].IsSymbol(u";"))
        --last;
    return {by + 1, last};
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
    tokens.push_back({TokenKind::Symbol, text});
}

bool TakeSemicolon(Tokens &tokens)
{
    while (!tokens.empty() && tokens.back().kind == TokenKind::Blank)
        tokens.pop_back();
    if (tokens.empty() || !tokens.back().IsSymbol(u";"))
        return false;
    tokens.pop_back();
    return true;
}
