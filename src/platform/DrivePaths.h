#pragma once

#include "platform/IniFile.h"

#include <QString>
#include <utility>
#include <vector>

/// Turns the system's paths ("C:\EDI\OUT\ANS.TXT", "\\server\share\ans.txt") into the machine's
/// own. Only this folder knows the machine's paths; everywhere else a path is kept as it was
/// entered.
class DrivePaths
{
public:
    DrivePaths() = default;

    /// Takes the mappings of section DRIVES: "C=/srv/edi" or "\\server\share=/mnt/share".
    explicit DrivePaths(const IniFile &ini);

    /// The machine's path. A path that begins with "/" or holds no "\" and no drive is the
    /// machine's own already. A drive without an entry lives under the user's data folder; a share
    /// without one gives an empty text, as no machine answers to it. Names that exist in another
    /// case are found.
    QString ToLocal(const QString &path) const;

    /// The folder under the user's data folder in which the path's drive lives; empty for a path
    /// without a drive, or with one that has an entry.
    QString UserDrive(const QString &path) const;

private:
    QString MappedFolder(const QString &name) const;

    std::vector<std::pair<QString, QString>> m_roots; ///< upper-cased drive or share, local folder
};

/// The separator at which a path text is split into its names: "/" for the machine's own paths (no
/// "\" in them), else "\".
QChar PathSeparator(const QString &path);
