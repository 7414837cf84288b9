#include "sheet/CsvWriter.h"

#include "platform/ShiftJis.h"
#include "sheet/SheetCells.h"
#include "sheet/SheetColumns.h"

#include <QIODevice>
#include <algorithm>

namespace {

constexpr auto LineEnd = "\r\n";
constexpr QByteArrayView Utf8Mark("\xef\xbb\xbf");

/// A field that holds what separates fields stands between quotes.
void AppendField(QString &line, const QString &text)
{
    const bool isQuoted = std::any_of(text.cbegin(), text.cend(), [](QChar c) {
        return c == u'"' || c == u',' || c == u'\r' || c == u'\n';
    });
    if (!isQuoted) {
        line += text;
        return;
    }
    line += '"';
    for (const QChar c : text) {
        if (c == u'"')
            line += c;
        line += c;
    }
    line += '"';
}

bool IsProtected(SheetKind kind, const QString &text)
{
    switch (kind) {
    case SheetKind::Code:
        return true;
    case SheetKind::Text:
        return !IsSafeCell(text);
    case SheetKind::Date:
    case SheetKind::AnswerDate:
        return !DateOfCell(text);
    default:
        return false;
    }
}

} // namespace

bool CsvWriter::Flush()
{
    QByteArray bytes;
    if (m_encoding == CsvEncoding::Utf8) {
        bytes = m_text.toUtf8();
    } else {
        bool isComplete = true;
        bytes = ToShiftJis(ToCodePage(m_text), &isComplete);
        m_hasLostCharacters |= !isComplete;
    }
    m_text.resize(0);
    return m_out.write(bytes) == bytes.size();
}

void CsvWriter::AppendRow(const LineList &list, int row)
{
    const auto columns = SheetColumns();
    for (const SheetColumn &column : columns) {
        if (&column != &columns.front())
            m_text += ',';
        const QString text = SheetText(list, row, column);
        AppendField(m_text, IsProtected(column.kind, text) ? ProtectedCell(text) : text);
    }
    m_text += LineEnd;
}

bool CsvWriter::Write(const LineList &list, const RowSelection &rows,
                      const std::function<bool()> &step)
{
    constexpr qsizetype Chunk = 1 << 16;
    m_text.reserve(Chunk + (Chunk >> 2));
    if (m_encoding == CsvEncoding::Utf8 && m_out.write(Utf8Mark.data(), Utf8Mark.size()) < 0)
        return false;
    const auto columns = SheetColumns();
    for (const SheetColumn &column : columns) {
        if (&column != &columns.front())
            m_text += ',';
        AppendField(m_text, column.heading);
    }
    m_text += LineEnd;
    bool goesOn = true;
    rows.ForEach([&](int row) {
        goesOn = step();
        if (goesOn)
            AppendRow(list, row);
        if (m_text.size() >= Chunk)
            goesOn = Flush() && goesOn;
        return goesOn;
    });
    return Flush() && goesOn;
}
