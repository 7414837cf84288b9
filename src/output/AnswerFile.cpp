#include "output/AnswerFile.h"

#include "output/AnswerRecord.h"
#include "platform/RuntimeError.h"
#include "util/VbText.h"

#include <algorithm>

namespace {

constexpr int NumberLength = 5;
constexpr QByteArrayView LineEnd("\r\n");

} // namespace

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
