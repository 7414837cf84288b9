#include "data/dao/postgres/ServerFile.h"

#include "data/dao/DaoError.h"

#include <QFile>
#include <QStringList>

namespace {

constexpr QByteArrayView FirstLine("TLDB0010 on a PostgreSQL server");
constexpr QByteArrayView ByteOrderMark("\xEF\xBB\xBF"); ///< some editors put it before a text

/// Less than any database file has. Such a file is not even opened: closing it would end every lock
/// that this process has on it.
constexpr qint64 MostBytes = 4095;

} // namespace

std::optional<QString> ServerFile::SettingsOf(const QString &localPath)
{
    QFile file(localPath);
    if (file.size() > MostBytes || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray text = file.read(MostBytes);
    if (text.startsWith(ByteOrderMark))
        text.remove(0, ByteOrderMark.size());
    if (!text.startsWith(FirstLine))
        return std::nullopt;
    QStringList lines;
    for (const QString &line : QString::fromUtf8(text).split('\n'))
        if (!line.trimmed().isEmpty())
            lines += line.trimmed();
    if (lines.size() != 2 || lines.front() != QLatin1String(FirstLine))
        throw DaoErrors::Make(DaoErrors::UnrecognizedFormat, DaoErrors::DatabaseSource,
                              localPath + ": 1 行目の次に、接続の設定を 1 行で書いてください");
    return lines.back();
}

QByteArray ServerFile::TextFor(const QString &settings)
{
    return FirstLine.toByteArray() + '\n' + settings.toUtf8() + '\n';
}
