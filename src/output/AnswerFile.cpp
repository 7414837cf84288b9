#include "output/AnswerFile.h"

#include "output/AnswerRecord.h"
#include "output/AnswerSql.h"
#include "platform/RuntimeError.h"
#include "util/VbText.h"

#include <algorithm>

namespace {

constexpr int NumberLength = 5;
constexpr QByteArrayView LineEnd("\r\n");

/// What stands behind the file's last line end; of more than a record, its end.
QByteArray UnendedLine(const OpenFile &file, int recordLength)
{
    const qint64 length = std::min<qint64>(file.Size(), recordLength + 2 * LineEnd.size());
    const QByteArray end = file.ReadAt(file.Size() - length, length);
    const qsizetype lineEnd = end.lastIndexOf(LineEnd);
    return lineEnd < 0 ? end : end.mid(lineEnd + LineEnd.size());
}

/// True for less than a record that begins as one. The machine, when it loses its power, may put
/// zero bytes in the place of what was not written yet.
bool IsTornRecord(const QByteArray &line, int recordLength)
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
    return line.size() < recordLength;
}

} // namespace

bool MendAnswerFile(const Files &files, const QString &path, int recordLength)
{
    int error = RuntimeError::None;
    const auto seen = files.Open(Trim(path), FileMode::Read, FileLock::None, error);
    if (!seen || UnendedLine(*seen, recordLength).isEmpty())
        return true;
    const auto file = files.Open(Trim(path), FileMode::ReadWrite, FileLock::Exclusive, error);
    if (file) {
        // Another program may have been in the middle of writing.
        const QByteArray line = UnendedLine(*file, recordLength);
        if (IsTornRecord(line, recordLength))
            error = file->Truncate(file->Size() - line.size());
        else if (!line.isEmpty())
            error = file->Append(line.endsWith('\r') ? LineEnd.sliced(1) : LineEnd);
    }
    if (error != RuntimeError::None)
        ShowFileError(error, path);
    return error == RuntimeError::None;
}

int NextRecordSeqNo(const Files &files, const QString &path, int recordLength)
{
    // The long layout's receivers take every record for a first one.
    if (recordLength != ShortRecordLength)
        return 0;
    int error = RuntimeError::None;
    const auto file = files.Open(Trim(path), FileMode::Read, FileLock::None, error);
    if (!file)
        return 0;
    const qint64 lastLine = std::max<qint64>(file->Size() - recordLength - LineEnd.size(), 0);
    const QByteArray line = file->ReadAt(lastLine, recordLength + LineEnd.size());
    return int(Val(QString::fromLatin1(line.left(NumberLength))));
}

QByteArray BlankLineBreaks(QByteArray line, const QByteArray &replacement)
{
    const bool isBlank = replacement.count(' ') == replacement.size();
    const char blank = isBlank ? ' ' : replacement[0];
    // Neither byte can be the second half of a double-byte character.
    return line.replace('\r', blank).replace('\n', blank);
}

bool AppendAnswerLine(OutputFiles &files, const QString &path, const QByteArray &line)
{
    const int fileNo = files.OpenFileNo(path, OutputFiles::Append, OutputFiles::ReadWrite, true);
    OpenFile *file = files.File(fileNo);
    if (!file)
        return false;
    const int error = file->Append(line + LineEnd.toByteArray());
    files.CloseFileNo(fileNo);
    if (error != RuntimeError::None)
        ShowFileError(error, path);
    return error == RuntimeError::None;
}
