#include "data/dao/Dialect.h"
#include "data/dao/SqlText.h"

namespace {

constexpr DialectWriter::Function Functions[]
    = {{u"Chr", "char", ""}, {u"Chr$", "char", ""}, {u"Left$", "left_text", ""}};

class SqliteWriter : public DialectWriter
{
public:
    SqliteWriter()
        : DialectWriter(Functions)
    {
    }

    Tokens Like(const Tokens &operand, bool isNegated, const QString &pattern) const override
    {
        Tokens like;
        if (const auto plain = PlainPattern::Of(pattern)) {
            Append(like, operand);
            AppendSymbol(like, (isNegated ? " NOT LIKE " : " LIKE ") + NativePattern(*plain));
        } else {
            AppendSymbol(like, QString(isNegated ? "NOT " : "") + "like_pattern("
                                   + SqlQuoted(pattern) + ", ");
            Append(like, operand);
            AppendSymbol(like, ")");
        }
        return like;
    }

private:
    static QString NativePattern(const PlainPattern &plain)
    {
        QString native;
        for (const QChar c : plain.text) {
            if (c == '%' || c == '_' || c == '\\')
                native += '\\';
            native += c;
        }
        const bool hasEscape = native.size() > plain.text.size();
        return SqlQuoted(native + (plain.isPrefix ? "%" : "")) + (hasEscape ? " ESCAPE '\\'" : "");
    }
};

} // namespace

QString ToSqlite(const QString &statement)
{
    static const SqliteWriter writer;
    return Translate(statement, writer);
}
