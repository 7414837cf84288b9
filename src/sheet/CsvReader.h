#pragma once

#include <QByteArrayView>
#include <QString>
#include <functional>
#include <vector>

/// One record of a file of separated values.
struct CsvRecord
{
    int line = 0;                   ///< of the file, from 1, where it begins
    std::vector<QStringView> cells; ///< no more than MostCsvCells of them; valid during the visit
    bool isBroken = false;          ///< a quote in it has no end, or does not end its cell
};

inline constexpr size_t MostCsvCells = 1000;

/// The text of a file in UTF-8 (with its mark or none), UTF-16 with its mark, or Shift-JIS. A byte
/// that is no character becomes U+FFFD.
QString CsvText(QByteArrayView bytes);

/// Reads records (RFC 4180, a line may end in CR, LF or both) until `visit` returns False. A quote
/// within a field that began without one is an ordinary character. A blank line is one blank cell.
/// Of a broken record the first line alone is passed over, so that a forgotten quote costs no more.
void ReadCsv(const QString &text, QChar separator,
             const std::function<bool(const CsvRecord &record)> &visit);
