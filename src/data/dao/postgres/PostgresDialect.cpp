#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "data/dao/Dialect.h"
#include "data/dao/SqlText.h"

#include <QStringList>
#include <algorithm>

namespace {

constexpr DialectWriter::Function Functions[]
    = {{u"Chr", "chr", ""}, {u"Chr$", "chr", ""}, {u"Left$", "CAST(left", " AS citext)"}};

constexpr auto NeverFits = "(?!)";

QChar Folded(QChar c)
{
    return c >= 'A' && c <= 'Z' ? QChar(c.unicode() + 32) : c;
}

/// One character of a regular expression that stands for itself, also within brackets.
QString Literally(QChar c)
{
    const bool isPlain = c.unicode() >= 0x80 || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
    return isPlain ? QString(c) : QString("\\u%1").arg(c.unicode(), 4, 16, QChar('0'));
}

/// The list between the brackets of a pattern.
QString ListExpression(QStringView list)
{
    const bool isNegated = list.size() > 1 && list.front() == u'!';
    if (isNegated)
        list = list.mid(1);
    QString members;
    for (qsizetype at = 0; at < list.size(); ++at) {
        const QChar first = Folded(list[at]);
        if (at + 2 < list.size() && list[at + 1] == u'-') {
            const QChar last = Folded(list[at + 2]);
            if (first <= last)
                members += Literally(first) + '-' + Literally(last);
            at += 2;
        } else {
            members += Literally(first);
        }
    }
    if (members.isEmpty())
        return isNegated ? "." : NeverFits;
    return (isNegated ? "[^" : "[") + members + ']';
}

/// The regular expression that fits a text in small letters as the pattern fits the text.
QString RegularExpression(const QString &pattern)
{
    QString expression = "^";
    for (qsizetype at = 0; at < pattern.size(); ++at) {
        const QChar c = pattern[at];
        if (c == '*') {
            expression += ".*";
        } else if (c == '?') {
            expression += '.';
        } else if (c == '#') {
            expression += "[0-9]";
        } else if (c == '[') {
            const qsizetype close = pattern.indexOf(']', at + 1);
            if (close < 0)
                return NeverFits;
            expression += ListExpression(QStringView(pattern).mid(at + 1, close - at - 1));
            at = close;
        } else {
            expression += Literally(Folded(c));
        }
    }
    return expression + '$';
}

/// A name in brackets; unquoted ones are written small by the server.
QString NameOf(const QString &bracketed)
{
    QString name = bracketed.mid(1, bracketed.size() - 2);
    std::transform(name.begin(), name.end(), name.begin(), Folded);
    return '"' + name.replace('"', "\"\"") + '"';
}

void RefuseMoreThanOne(const Tokens &tokens)
{
    for (qsizetype at = 0; at < qsizetype(tokens.size()); ++at) {
        const qsizetype next = SkipBlanks(tokens, at + 1);
        if (tokens[at].IsSymbol(u";") && next < qsizetype(tokens.size()))
            throw DaoErrors::Make(DaoErrors::SyntaxError, DaoErrors::DatabaseSource,
                                  tokens[next].text);
    }
}

void WriteNamesAndBytes(Tokens &tokens)
{
    for (size_t at = 0; at < tokens.size(); ++at) {
        Token &token = tokens[at];
        if (token.kind == TokenKind::Symbol && token.text.startsWith('['))
            token.text = NameOf(token.text);
        if (!token.Is(u"x") || at + 1 == tokens.size() || tokens[at + 1].kind != TokenKind::Literal)
            continue;
        token
            = {TokenKind::Symbol, "CAST(" + SqlQuoted("\\x" + tokens[at + 1].text) + " AS bytea)"};
        tokens.erase(tokens.begin() + qsizetype(at) + 1);
    }
}

void OrderNullsFirst(Tokens &tokens)
{
    const auto [from, to] = OrderList(tokens);
    Tokens list;
    int depth = 0;
    bool isDescending = false;
    const auto endTerm = [&] {
        AppendSymbol(list, isDescending ? " NULLS LAST" : " NULLS FIRST");
        isDescending = false;
    };
    for (qsizetype at = from; at < to; ++at) {
        const Token &token = tokens[at];
        depth += token.IsSymbol(u"(") ? 1 : token.IsSymbol(u")") ? -1 : 0;
        if (depth == 0 && token.IsSymbol(u","))
            endTerm();
        isDescending |= depth == 0 && token.Is(u"DESC");
        list.push_back(token);
    }
    if (from == to)
        return;
    endTerm();
    tokens.erase(tokens.begin() + from, tokens.begin() + to);
    tokens.insert(tokens.begin() + from, list.begin(), list.end());
}

/// SELECT DISTINCT of plain columns has its rows in the order of the first row of each.
void OrderDistinct(Tokens &tokens)
{
    const qsizetype distinct = SkipBlanks(tokens, SkipBlanks(tokens, 0) + 1);
    const TableDefinition *table = FirstTable(tokens);
    if (!table || !tokens[distinct].Is(u"DISTINCT")
        || FindWord(tokens, u"ORDER") < qsizetype(tokens.size()))
        return;
    const qsizetype from = FindWord(tokens, u"FROM");
    QString list;
    for (qsizetype at = distinct + 1; at < from; ++at) {
        if (tokens[at].kind != TokenKind::Word && tokens[at].kind != TokenKind::Blank
            && !tokens[at].IsSymbol(u","))
            return;
        list += tokens[at].text;
    }
    QStringList keys;
    QStringList ties;
    QStringList namedKeys;
    for (const ColumnDefinition &column : table->columns) {
        if (!column.isKey)
            continue;
        keys += QString("%1.%2").arg(table->name, column.name);
        ties += QString("first_%1").arg(column.name);
        namedKeys += keys.back() + " AS " + ties.back();
    }
    if (keys.isEmpty())
        return;
    TakeSemicolon(tokens);
    Tokens result;
    AppendSymbol(
        result,
        QString("SELECT %1 FROM (SELECT DISTINCT ON (%1) %1, %2 ").arg(list, namedKeys.join(", ")));
    Append(result, Slice(tokens, from, qsizetype(tokens.size())));
    AppendSymbol(result, QString(" ORDER BY %1, %2) AS firsts ORDER BY %3")
                             .arg(list, keys.join(", "), ties.join(", ")));
    tokens = result;
}

class PostgresWriter : public DialectWriter
{
public:
    PostgresWriter()
        : DialectWriter(Functions)
    {
    }

    Tokens Like(const Tokens &operand, bool isNegated, const QString &pattern) const override
    {
        Tokens like;
        const auto addOperand = [&](const char *type) {
            AppendSymbol(like, "CAST(");
            Append(like, operand);
            AppendSymbol(like, QString(" AS ") + type + ')');
        };
        AppendSymbol(like, isNegated ? "NOT (" : "(");
        if (const auto plain = PlainPattern::Of(pattern); plain && !plain->isPrefix) {
            addOperand("citext");
            AppendSymbol(like, " = " + SqlQuoted(plain->text));
        } else if (plain) {
            static const QString highest = QString::fromUcs4(U"\U0010FFFF", 1);
            addOperand("citext");
            AppendSymbol(like, " >= " + SqlQuoted(plain->text) + " AND ");
            addOperand("citext");
            AppendSymbol(like, " < " + SqlQuoted(plain->text + highest));
        } else {
            AppendSymbol(like, "lower(");
            addOperand("text");
            AppendSymbol(like, ") ~ " + SqlQuoted(RegularExpression(pattern)));
        }
        AppendSymbol(like, ")");
        return like;
    }

    void Finish(Tokens &tokens) const override
    {
        RefuseMoreThanOne(tokens);
        WriteNamesAndBytes(tokens);
        OrderNullsFirst(tokens);
        OrderDistinct(tokens);
    }
};

} // namespace

QString ToPostgres(const QString &statement)
{
    static const PostgresWriter writer;
    return Translate(statement, writer);
}
