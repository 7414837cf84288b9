#pragma once

#include "lines/LineList.h"
#include "lines/RowSelection.h"

#include <functional>

class QIODevice;

enum class CsvEncoding {
    Utf8, ///< with its mark, by which a spreadsheet knows it
    ShiftJis
};

/// Writes rows of the list as a file that a Japanese spreadsheet opens with a double click: the
/// columns of the sheet under their headings, RFC 4180, lines that end in CR LF. Texts that it
/// would take for a number, a date or a formula have the form ="...".
class CsvWriter
{
public:
    CsvWriter(QIODevice &out, CsvEncoding encoding)
        : m_out(out)
        , m_encoding(encoding)
    {
    }

    /// `step` is called for each row and stops the work with False. False then, and when the device
    /// takes no more.
    bool Write(const LineList &list, const RowSelection &rows, const std::function<bool()> &step);

    /// True when there was a character that Shift-JIS does not have; a "?" stands in its place.
    bool HasLostCharacters() const { return m_hasLostCharacters; }

private:
    void AppendRow(const LineList &list, int row);
    bool Flush();

    QIODevice &m_out;
    const CsvEncoding m_encoding;
    QString m_text; ///< not yet written
    bool m_hasLostCharacters = false;
};
