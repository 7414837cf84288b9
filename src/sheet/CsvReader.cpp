#include "sheet/CsvReader.h"

#include "platform/ShiftJis.h"

#include <QStringDecoder>
#include <deque>

QString CsvText(QByteArrayView bytes)
{
    // Only a mark tells UTF-16.
    if (const auto marked = QStringDecoder::encodingForData(bytes); marked) {
        QStringDecoder decoder(*marked);
        return decoder.decode(bytes);
    }
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8.decode(bytes);
    return utf8.hasError() ? FromShiftJis(bytes) : text;
}

namespace {

class Reader
{
public:
    Reader(const QString &text, QChar separator)
        : m_at(text.constData())
        , m_end(m_at + text.size())
        , m_separator(separator)
    {
    }

    bool IsAtEnd() const { return m_at == m_end; }

    /// The next record, a blank line among them.
    void Read(CsvRecord &record)
    {
        const QChar *start = m_at;
        record.line = m_line;
        record.cells.clear();
        record.isBroken = false;
        m_unquoted.clear();
        do {
            const QStringView cell
                = m_at < m_end && *m_at == u'"' ? QuotedCell(record.isBroken) : PlainCell();
            if (record.cells.size() < MostCsvCells)
                record.cells.push_back(cell);
        } while (!record.isBroken && Take(m_separator));
        if (record.isBroken) {
            m_line = record.line;
            for (m_at = start; m_at < m_end && *m_at != u'\r' && *m_at != u'\n';)
                ++m_at;
        }
        TakeLineEnd();
    }

private:
    bool Take(QChar c)
    {
        if (m_at == m_end || *m_at != c)
            return false;
        ++m_at;
        return true;
    }

    void TakeLineEnd()
    {
        const bool isReturn = Take(u'\r');
        if (Take(u'\n') || isReturn)
            ++m_line;
    }

    bool IsFieldEnd() const { return *m_at == m_separator || *m_at == u'\r' || *m_at == u'\n'; }

    QStringView PlainCell()
    {
        const QChar *start = m_at;
        while (m_at < m_end && !IsFieldEnd())
            ++m_at;
        return {start, m_at};
    }

    QStringView QuotedCell(bool &isBroken)
    {
        const QChar *start = ++m_at;
        SkipToQuote();
        if (IsDoubledQuote()) {
            QString &text = m_unquoted.emplace_back(start, m_at - start);
            while (IsDoubledQuote()) {
                const QChar *piece = ++m_at;
                ++m_at;
                SkipToQuote();
                text.append(piece, m_at - piece);
            }
            isBroken = !TakeClosingQuote();
            return text;
        }
        const QStringView text(start, m_at);
        isBroken = !TakeClosingQuote();
        return text;
    }

    bool IsDoubledQuote() const { return m_at + 1 < m_end && m_at[1] == u'"'; }

    bool TakeClosingQuote() { return Take(u'"') && (m_at == m_end || IsFieldEnd()); }

    /// To the next quote or the end, counting lines.
    void SkipToQuote()
    {
        for (; m_at < m_end && *m_at != u'"'; ++m_at) {
            const bool isPair = *m_at == u'\r' && m_at + 1 < m_end && m_at[1] == u'\n';
            m_line += (*m_at == u'\r' || *m_at == u'\n') && !isPair;
        }
    }

    const QChar *m_at;
    const QChar *const m_end;
    const QChar m_separator;
    int m_line = 1;
    std::deque<QString> m_unquoted; ///< cells that don't stand in the text as they are
};

} // namespace

void ReadCsv(const QString &text, QChar separator,
             const std::function<bool(const CsvRecord &record)> &visit)
{
    Reader reader(text, separator);
    CsvRecord record;
    while (!reader.IsAtEnd()) {
        reader.Read(record);
        if (!visit(record))
            return;
    }
}
