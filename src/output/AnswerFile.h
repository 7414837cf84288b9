#pragma once

#include "output/OutputFiles.h"

#include <QByteArray>
#include <QString>

/// The customer's answer file: one record a line.

/// The number of the last record in the file; 0 when there is none or the file can't be read. Only
/// the short layout counts its records: for the long one the number is always 0.
int NextRecordSeqNo(const Files &files, const QString &path, int recordLength);

/// The line (Shift-JIS) with every CR and LF replaced by the first byte of `replacement`, or by a
/// space when that is blank.
QByteArray BlankLineBreaks(QByteArray line, const QByteArray &replacement);

/// Adds the line and CR LF to the end of the file, which is created when missing and locked
/// meanwhile. False, and the file as it was, after an error that the file error box has shown.
bool AppendAnswerLine(OutputFiles &files, const QString &path, const QByteArray &line);
