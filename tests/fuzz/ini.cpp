// Any bytes as a settings file. Every entry is as IniFile promises, and the same entries come back
// from the same text in another encoding and from a file that is written of them.

#include "Fuzzing.h"

#include "platform/IniFile.h"
#include "platform/ShiftJis.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <QTemporaryDir>

namespace {

IniFile Read(const QByteArray &bytes)
{
    static const QTemporaryDir folder(
        "/dev/shm/fuzz_ini-XXXXXX"); // on a disk nearly all is waiting
    QFile file(folder.filePath("TALVEN.INI"));
    Require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "a file is made");
    file.close();
    return IniFile::Read(file.fileName());
}

bool IsUtf8(const QByteArray &bytes)
{
    return QUtf8StringView(bytes).isValidUtf8();
}

/// The names of all sections that the text may have, each once.
QStringList SectionsOf(const QString &text)
{
    static const QRegularExpression lineBreak("[\\r\\n]");
    QStringList names = {""};
    QSet<QString> known = {""};
    for (const QString &line : text.split(lineBreak)) {
        const QString name = line.trimmed().mid(1).section(']', 0, 0).trimmed();
        if (line.trimmed().startsWith('[') && !known.contains(name.toCaseFolded())) {
            known += name.toCaseFolded();
            names += name;
        }
    }
    return names;
}

/// The entries of these sections, one text each.
QStringList EntriesOf(const IniFile &ini, const QStringList &sections)
{
    QStringList lines;
    for (const QString &section : sections)
        for (const IniFile::Entry &entry : ini.Section(section))
            lines += section + '\1' + entry.key + '\1' + entry.value;
    return lines;
}

void CheckEntry(const IniFile &ini, const IniFile::Entry &entry)
{
    static const QRegularExpression lineBreak("[\\r\\n]");
    Require(!entry.key.isEmpty() && entry.key == entry.key.trimmed(), "a key is trimmed text",
            entry.key);
    Require(!entry.key.contains('=') && !entry.key.startsWith(';'), "a key ends before the \"=\"",
            entry.key);
    Require(entry.value.size() <= 255, "a value has at most 255 characters", entry.value);
    Require(!entry.value.contains(QChar(0)) && !entry.value.contains(lineBreak),
            "a value is one text", entry.value);
    for (const IniFile::Entry &first : ini.Section(entry.section)) {
        if (first.key.compare(entry.key, Qt::CaseInsensitive) != 0)
            continue;
        Require(ini.Value(entry.section.toUpper(), entry.key.toUpper()) == first.value,
                "the first of equal keys counts", entry.key);
        return;
    }
}

QByteArray Written(const IniFile &ini, const QStringList &sections)
{
    QString text;
    for (const QString &section : sections) {
        text += '[' + section + "]\r\n";
        for (const IniFile::Entry &entry : ini.Section(section))
            text += entry.key + " = \"" + entry.value + "\"\r\n";
    }
    return text.toUtf8();
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString text = IsUtf8(bytes) ? QString::fromUtf8(bytes) : FromShiftJis(bytes);
    const IniFile ini = Read(bytes);
    const QStringList sections = SectionsOf(text);
    const QStringList entries = EntriesOf(ini, sections);
    for (const QString &section : sections)
        for (const IniFile::Entry &entry : ini.Section(section))
            CheckEntry(ini, entry);

    Require(EntriesOf(Read(Written(ini, sections)), sections) == entries,
            "what is written is read again", text);
    const QByteArray mark = "\xef\xbb\xbf";
    if (IsUtf8(bytes) && !bytes.startsWith(mark))
        Require(EntriesOf(Read(mark + bytes), sections) == entries, "a mark changes nothing", text);
    constexpr QChar Alias(0xf86f); // for private use, written as U+2116
    if (IsShiftJisText(text) && !text.contains(Alias)) {
        const QByteArray shiftJis = ToShiftJis(text);
        Require(FromShiftJis(shiftJis) == text, "a text of the code page comes back", text);
        if (!IsUtf8(shiftJis))
            Require(EntriesOf(Read(shiftJis), sections) == entries, "Shift-JIS changes nothing",
                    text);
    }
    return 0;
}
