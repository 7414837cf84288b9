#include "platform/IniFile.h"

#include "platform/ShiftJis.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <cerrno>
#include <unistd.h>

namespace {

constexpr int ValueLimit = 255;

QString Decode(const QByteArray &bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringConverter::Flag::Stateless);
    const QString text = utf8.decode(bytes);
    if (utf8.hasError())
        return FromShiftJis(bytes);
    return text;
}

/// True for a name that leads to nothing; one in a folder that keeps the user out is not missing.
bool IsMissing(const QString &localPath)
{
    return ::access(QFile::encodeName(localPath), F_OK) != 0
           && (errno == ENOENT || errno == ENOTDIR);
}

QString Unquoted(const QString &value)
{
    const bool isQuoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'')
                          && value.back() == value.front();
    return isQuoted ? value.mid(1, value.size() - 2) : value;
}

} // namespace

IniFile IniFile::Read(const QString &localPath)
{
    IniFile ini;
    if (IsMissing(localPath))
        return ini;
    QFile file(localPath);
    // A pipe is not waited for.
    ini.m_isUnreadable = !QFileInfo(localPath).isFile() || !file.open(QIODevice::ReadOnly);
    const QByteArray bytes = ini.m_isUnreadable ? QByteArray() : file.readAll();
    if (file.error() != QFile::NoError)
        ini.m_isUnreadable = true;
    QString section;
    for (QString line : Decode(bytes).replace('\r', '\n').split('\n')) {
        line = line.trimmed();
        const qsizetype equals = line.indexOf('=');
        if (line.startsWith(';'))
            continue;
        if (line.startsWith('[')) {
            section = line.mid(1, line.indexOf(']') - 1).trimmed();
        } else if (equals > 0) {
            QString value = Unquoted(line.mid(equals + 1).trimmed());
            const qsizetype nul = value.indexOf(QChar(0));
            if (nul >= 0)
                value.truncate(nul);
            ini.m_entries.push_back({section, line.left(equals).trimmed(), value.left(ValueLimit)});
        }
    }
    return ini;
}

QString IniFile::Value(const QString &section, const QString &key) const
{
    for (const Entry &entry : m_entries)
        if (entry.section.compare(section, Qt::CaseInsensitive) == 0
            && entry.key.compare(key, Qt::CaseInsensitive) == 0)
            return entry.value;
    return {};
}

std::vector<IniFile::Entry> IniFile::Section(const QString &section) const
{
    std::vector<Entry> found;
    for (const Entry &entry : m_entries)
        if (entry.section.compare(section, Qt::CaseInsensitive) == 0)
            found.push_back(entry);
    return found;
}
