#include "platform/DrivePaths.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

/// The entry of `folder` that equals `name` but for its case; `name` itself when there is none.
QString ExistingName(const QString &folder, const QString &name)
{
    if (QFileInfo::exists(folder + '/' + name))
        return name;
    const auto filters = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    for (const QString &entry : QDir(folder).entryList(filters))
        if (entry.compare(name, Qt::CaseInsensitive) == 0)
            return entry;
    return name;
}

QString Resolve(const QString &root, const QString &rest)
{
    QString path = root;
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    for (const QString &name : rest.split('\\', Qt::SkipEmptyParts))
        path += '/' + ExistingName(path, name);
    return path;
}

bool HasDrive(const QString &path)
{
    return path.size() >= 2 && path[1] == ':' && path[0].isLetter();
}

} // namespace

DrivePaths::DrivePaths(const IniFile &ini)
{
    for (const IniFile::Entry &entry : ini.Section("DRIVES")) {
        QString name = entry.key.toUpper();
        while (name.endsWith(':') || name.endsWith('\\'))
            name.chop(1);
        if (!name.isEmpty() && !entry.value.isEmpty())
            m_roots.emplace_back(name, entry.value);
    }
}

QString DrivePaths::ToLocal(const QString &path) const
{
    if (path.startsWith('/'))
        return QString(path).replace('\\', '/');
    if (path.startsWith("\\\\")) {
        for (const auto &[name, folder] : m_roots)
            if (name.startsWith("\\\\")
                && (path.toUpper() == name || path.toUpper().startsWith(name + '\\')))
                return Resolve(folder, path.mid(name.size()));
        return {};
    }
    if (HasDrive(path)) {
        for (const auto &[name, folder] : m_roots)
            if (name == path.left(1).toUpper())
                return Resolve(folder, path.mid(2));
        const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        return Resolve(data + "/talven/" + path.left(1).toLower(), path.mid(2));
    }
    return path.contains('\\') ? Resolve(".", path) : path;
}

QChar PathSeparator(const QString &path)
{
    return path.contains('/') && !path.contains('\\') ? QChar('/') : QChar('\\');
}
