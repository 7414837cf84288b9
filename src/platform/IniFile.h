#pragma once

#include <QString>
#include <vector>

/// A Windows private-profile file, read whole. Section and key names compare without case; the
/// first of two equal names counts. The file may be Shift-JIS or UTF-8 (with or without a byte
/// order mark).
class IniFile
{
public:
    struct Entry
    {
        QString section;
        QString key;
        QString value;
    };

    /// Reads the file at a path of the machine. One that is missing or can't be read gives no
    /// entries.
    static IniFile Read(const QString &localPath);

    /// True when there is a file, but it can't be read.
    bool IsUnreadable() const { return m_isUnreadable; }

    /// The value, blanks and one pair of enclosing quotes removed, cut at the first NUL and at 255
    /// characters (the reader's buffer holds 256); empty when there is none.
    QString Value(const QString &section, const QString &key) const;

    /// The entries of a section in the order of the file.
    std::vector<Entry> Section(const QString &section) const;

private:
    std::vector<Entry> m_entries;
    bool m_isUnreadable = false;
};
