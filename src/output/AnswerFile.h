#pragma once

#include "output/OutputFiles.h"

#include <QByteArray>
#include <QString>

/// One turn at a customer's answer file, which holds one record a line: it is opened, locked
/// against everybody else, mended, read for its last number, added to, and closed when the object
/// ends. Once it is open no routine shows a box, as a transaction may be open: an int is 0 or the
/// run-time's error number, which is for ShowFileError when the transaction has ended.
class AnswerFile
{
public:
    AnswerFile(OutputFiles &files, QString path);

    /// Takes a file that Open made away again when nothing was written.
    ~AnswerFile();
    AnswerFile(const AnswerFile &) = delete;
    AnswerFile &operator=(const AnswerFile &) = delete;

    /// Opens the file, made when missing. False after an error that the file error box has shown;
    /// only after True do the others make sense.
    bool Open();

    /// Sees to it that the file ends with a whole line. A crash may have left a piece of a record
    /// there: it is cut off, as its order was not marked answered and is answered again. Anything
    /// else without a line end gets one, and so does whatever is long enough for a whole record of
    /// either layout, also when the customer's layout is another by now.
    int Mend();

    /// The number of the last record; 0 when there is none. Only the short layout counts its
    /// records: for the long one the number is always 0.
    int LastRecordNumber(int recordLength) const;

    /// Adds the line and CR LF to the end, safely onto the disk; the file as it was after an error.
    int AppendLine(const QByteArray &line);

private:
    OutputFiles &m_files;
    QString m_path;
    int m_fileNo = 0;
    OpenFile *m_file = nullptr;
};

/// The line (Shift-JIS) with every CR and LF replaced by the first byte of `replacement`, or by a
/// space when that is blank.
QByteArray BlankLineBreaks(QByteArray line, const QByteArray &replacement);
