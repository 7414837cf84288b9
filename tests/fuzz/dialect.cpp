// Any text as a statement. The translation ends, keeps the literals and does nothing twice; the
// engine runs the whole of the result or throws its one error type.

#include "FuzzDatabase.h"
#include "Fuzzing.h"

#include "data/dao/DaoError.h"
#include "data/dao/Dialect.h"

#include <QStringList>
#include <sqlite3.h>

namespace {

/// A statement taken apart: the contents of its literals, and all that stands outside of them.
struct Parts
{
    QStringList literals;
    QString rest;

    bool Has(const char *word) const { return rest.contains(word, Qt::CaseInsensitive); }
};

Parts PartsOf(const QString &sql)
{
    Parts parts;
    QChar end; // of the literal or the name in brackets that is being read
    QString content;
    for (qsizetype at = 0; at < sql.size(); ++at) {
        const QChar c = sql[at];
        if (end.isNull()) {
            if (c == '\'' || c == '"' || c == '[') {
                end = c == '[' ? QChar(']') : c;
                content = c;
            } else {
                parts.rest += c;
            }
        } else if (c != end) {
            content += c;
        } else if (c != ']' && sql.mid(at + 1, 1) == c) {
            content += c;
            ++at;
        } else {
            if (c == ']')
                parts.rest += content + c;
            else
                parts.literals += content.mid(1);
            end = QChar();
        }
    }
    if (!end.isNull())
        parts.rest += content;
    parts.literals.sort(); // a translation may put its parts in another order
    return parts;
}

void CheckTranslation(const QString &sql, const QString &native)
{
    Require(native.size() <= 4 * sql.size() + 100, "the translation stays small", native);
    const Parts parts = PartsOf(sql);
    const bool isJoined = parts.Has("&") || parts.Has("CHR");
    if (!isJoined && !parts.Has("LIKE"))
        Require(PartsOf(native).literals == parts.literals, "literals are untouched", native);
    if (!parts.Has("LIKE") && !parts.Has("TOP") && !parts.Has("JOIN"))
        Require(ToSqlite(native) == native, "a native statement stays as it is", native);
}

/// Whether the library takes all of the statement as one.
bool IsOneStatement(const QString &native)
{
    const QByteArray utf8 = native.toUtf8();
    sqlite3_stmt *statement = nullptr;
    const char *tail = nullptr;
    sqlite3_prepare_v2(FuzzDatabase().Connection(), utf8.data(), int(utf8.size()), &statement,
                       &tail);
    sqlite3_finalize(statement);
    return statement && QByteArray(tail, utf8.data() + utf8.size() - tail).trimmed().isEmpty();
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString sql = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString native = ToSqlite(sql);
    CheckTranslation(sql, native);
    try {
        FuzzDatabase().OpenRecordset(sql);
        Require(IsOneStatement(native), "no part of a statement is left out", native);
    } catch (const DaoError &error) {
        Require(error.number > 0 && !error.description.isEmpty(), "an error says what it is");
    }
    return 0;
}
