#include "platform/DrivePaths.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

/// The entry of `folder` that equals `name` but for its case; `name` itself when it is there, or
/// when there is none.
QString ExistingName(const QString &folder, const QString &name)
{
    const auto filters = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    const QStringList entries = QDir(folder).entryList(filters);
    if (!entries.contains(name))
        for (const QString &entry : entries)
            if (entry.compare(name, Qt::CaseInsensitive) == 0)
                return entry;
    return name;
}

/// The path below `root`; only what is not there as it is written is looked for.
QString Resolve(const QString &root, QStringList names)
{
    const QString path = (QStringList(root) + names).join('/');
    if (names.isEmpty() || QFileInfo::exists(path))
        return path;
    const QString name = names.takeLast();
    const QString folder = Resolve(root, names);
    return folder + '/' + ExistingName(folder, name);
}

QString Resolve(QString root, const QString &rest)
{
    while (root.size() > 1 && root.endsWith('/'))
        root.chop(1);
    return Resolve(root, rest.split('\\', Qt::SkipEmptyParts));
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
        const QString user = UserDrive(path);
        return Resolve(user.isEmpty() ? MappedFolder(path.left(1)) : user, path.mid(2));
    }
    return path.contains('\\') ? Resolve(".", path) : path;
}

QString DrivePaths::UserDrive(const QString &path) const
{
    if (!HasDrive(path) || !MappedFolder(path.left(1)).isEmpty())
        return {};
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return data + "/talven/" + path.left(1).toLower();
}

QString DrivePaths::MappedFolder(const QString &name) const
{
    for (const auto &[mapped, folder] : m_roots)
        if (mapped == name.toUpper())
            return folder;
    return {};
}

QChar PathSeparator(const QString &path)
{
    return path.contains('/') && !path.contains('\\') ? QChar('/') : QChar('\\');
}
