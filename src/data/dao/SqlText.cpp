#include "data/dao/SqlText.h"

#include "util/VbText.h"

#include <QRegularExpression>

namespace {

QString Doubled(QString text)
{
    return text.replace("'", "''");
}

} // namespace

QString SqlQuoted(const QString &text)
{
    return '\'' + Doubled(text) + '\'';
}

QString SqlText(const QString &text)
{
    return RTrim(Doubled(text));
}

QString LikeText(const QString &text)
{
    return QString(text).replace("#", "[#]");
}

QString LiteralLikeText(const QString &text)
{
    static const QRegularExpression wildcard("([[*?#])");
    return QString(text).replace(wildcard, "[\\1]");
}
