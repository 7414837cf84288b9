#pragma once

#include "output/OutputFiles.h"

#include <QByteArray>
#include <QString>

/// The customer's answer file: one record a line.

/// Sees to it that the file ends with a whole line, before a record is added to it. A crash may
/// have left a piece of a record there: it is cut off, as its order was not marked answered and is
/// answered again. Anything else without a line end gets one. False after an error that the file
/// error box has shown; a file that is missing or can't be read is left alone.
bool MendAnswerFile(const Files &files, const QString &path, int recordLength);

/// The number of the last record in the file; 0 when there is none or the file can't be read. Only
/// the short layout counts its records: for the long one the number is always 0.
int NextRecordSeqNo(const Files &files, const QString &path, int recordLength);

/// The line (Shift-JIS) with every CR and LF replaced by the first byte of `replacement`, or by a
/// space when that is blank.
QByteArray BlankLineBreaks(QByteArray line, const QByteArray &replacement);

/// Adds the line and CR LF to the end of the file, which is created when missing and locked
/// meanwhile. False, and the file as it was, after an error that the file error box has shown.
bool AppendAnswerLine(OutputFiles &files, const QString &path, const QByteArray &line);
