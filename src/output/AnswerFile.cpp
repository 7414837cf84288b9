#include "output/AnswerFile.h"

#include "output/AnswerRecord.h"
#include "output/AnswerSql.h"
#include "platform/RuntimeError.h"
#include "util/VbText.h"

#include <algorithm>

namespace {

constexpr int NumberLength = 5;
constexpr QByteArrayView LineEnd("\r\n");

/// True for less than a record that begins as one. The machine, when it loses its power, may put
/// zero bytes in the place of what was not written yet.
bool IsTornRecord(const QByteArray &line)
{
    const QByteArrayView kind(AnswerInfoKind);
    const QByteArray start = line.left(NumberLength + kind.size());
    for (qsizetype at = 0; at < start.size(); ++at) {
        const char c = start[at];
        const bool isOfRecord
            = at < NumberLength ? c >= '0' && c <= '9' : c == kind[at - NumberLength];
        if (!isOfRecord && c != '\0')
            return false;
    }
    return line.size() < ShortRecordLength;
}

} // namespace

AnswerFile::AnswerFile(OutputFiles &files, QString path)
    : m_files(files)
    , m_path(std::move(path))
{
}

AnswerFile::~AnswerFile()
{
    if (m_file && m_file->IsNew() && m_file->Size() == 0 && m_file->IsInPlace())
        m_file->Remove(); // under the lock: who waits for it sees that the file has gone
    m_files.CloseFileNo(m_fileNo);
}

bool AnswerFile::Open()
{
    m_fileNo = m_files.OpenFileNo(m_path, OutputFiles::Append, OutputFiles::ReadWrite, true);
    m_file = m_files.File(m_fileNo);
    return m_file != nullptr;
}

int AnswerFile::Mend()
{
    // More than a record and its line end: behind the last line end, or at the end of the file.
    const qint64 length = std::min<qint64>(m_file->Size(), LongRecordLength + 2 * LineEnd.size());
    const QByteArray end = m_file->ReadAt(m_file->Size() - length, length);
    if (end.size() < length)
        return RuntimeError::DeviceIo;
    const qsizetype lineEnd = end.lastIndexOf(LineEnd);
    const QByteArray line = lineEnd < 0 ? end : end.mid(lineEnd + LineEnd.size());
    if (line.isEmpty())
        return RuntimeError::None;
    if (IsTornRecord(line))
        return m_file->Truncate(m_file->Size() - line.size());
    return m_file->Append(line.endsWith('\r') ? LineEnd.sliced(1) : LineEnd);
}

int AnswerFile::LastRecordNumber(int recordLength) const
{
    // The long layout's receivers take every record for a first one.
    if (recordLength != ShortRecordLength)
        return 0;
    const qint64 lineLength = recordLength + LineEnd.size();
    const QByteArray number
        = m_file->ReadAt(std::max<qint64>(m_file->Size() - lineLength, 0), NumberLength);
    return int(Val(QString::fromLatin1(number)));
}

int AnswerFile::AppendLine(const QByteArray &line)
{
    return m_file->Append(line + LineEnd.toByteArray());
}

QByteArray BlankLineBreaks(QByteArray line, const QByteArray &replacement)
{
    const bool isBlank = replacement.count(' ') == replacement.size();
    const char blank = isBlank ? ' ' : replacement[0];
    // Neither byte can be the second half of a double-byte character.
    return line.replace('\r', blank).replace('\n', blank);
}
