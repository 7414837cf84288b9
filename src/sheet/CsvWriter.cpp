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

/// The text in the form ="...", whose own quotes stand doubled in a field between quotes.
void AppendProtected(QString &line, const QString &text)
{
    line += QLatin1String("\"=\"\"");
    for (const QChar c : text) {
        if (c == u'"')
            line += QLatin1String("\"\"\"");
        line += c;
    }
    line += QLatin1String("\"\"\"");
}

/// Whether a date's text is the date that it looks like, and not something else in its place.
bool LooksLikeDate(const QString &text)
{
    if (text.size() != 10)
        return false;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const bool isFit
            = at == 4 || at == 7 ? text[at] == u'/' : text[at] >= u'0' && text[at] <= u'9';
        if (!isFit)
            return false;
    }
    return true;
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
        return !LooksLikeDate(text);
    default:
        return false;
    }
}

void AppendCell(QString &line, SheetKind kind, const QString &text)
{
    if (text.isEmpty())
        return;
    if (IsProtected(kind, text))
        AppendProtected(line, text);
    else if (kind == SheetKind::Text || kind == SheetKind::Written)
        AppendField(line, text);
    else
        line += text; // digits do not separate fields
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
        AppendCell(m_text, column.kind, SheetText(list, row, column));
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
