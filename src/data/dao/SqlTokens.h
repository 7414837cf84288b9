#pragma once

#include <QString>
#include <utility>
#include <vector>

enum class TokenKind { Blank, Word, Number, Literal, Unclosed, Symbol };

/// One token of a statement. A literal's text is its content without quotes. Texts that stand in
/// the statement as they are point into it.
struct Token
{
    TokenKind kind;
    QString text;

    bool Is(QStringView word) const
    {
        return kind == TokenKind::Word && text.compare(word, Qt::CaseInsensitive) == 0;
    }
    bool IsSymbol(QStringView symbol) const { return kind == TokenKind::Symbol && text == symbol; }
};

using Tokens = std::vector<Token>;

/// The tokens of a statement, which must outlive them. A name in brackets is one symbol.
Tokens Tokenize(QStringView sql);

/// Whether the text ends inside of this literal or this name in brackets.
bool IsUnclosed(const Token &token);

/// The first token at `at` or behind that is no blank.
qsizetype SkipBlanks(const Tokens &tokens, qsizetype at);

/// The first word of that name at depth 0 from `from` on; the end when there is none.
qsizetype FindWord(const Tokens &tokens, QStringView word, qsizetype from = 0);

/// Where the list after ORDER BY begins and where it ends; both are the end without one.
std::pair<qsizetype, qsizetype> OrderList(const Tokens &tokens);

Tokens Slice(const Tokens &tokens, qsizetype from, qsizetype to);
void Append(Tokens &tokens, const Tokens &more);
void AppendSymbol(Tokens &tokens, const QString &text);

/// Takes the statement's closing ";" (and the blanks around it) off; tells whether there was one.
bool TakeSemicolon(Tokens &tokens);
