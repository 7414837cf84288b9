#include "output/OutputFiles.h"

#include "platform/MsgBox.h"
#include "platform/RuntimeError.h"
#include "util/VbText.h"

#include <optional>

namespace {

std::optional<FileMode> FileModeOf(int mode, int access)
{
    switch (mode) {
    case OutputFiles::Append:
        return FileMode::Append;
    case OutputFiles::Input:
        return FileMode::Read;
    case OutputFiles::Output:
        return FileMode::Output;
    default:
        break;
    }
    if (access == OutputFiles::Read)
        return FileMode::Read;
    if (access == OutputFiles::Write || access == OutputFiles::ReadWrite)
        return FileMode::ReadWrite;
    return std::nullopt;
}

} // namespace

int OutputFiles::OpenFileNo(const QString &path, int mode, int access, bool isLocked, int)
{
    int fileNo = 1;
    while (m_open.contains(fileNo))
        ++fileNo;
    if (mode < Append || mode > Random)
        return fileNo;
    const auto fileMode = FileModeOf(mode, access);
    if (!fileMode)
        return 0;
    // Denying others what this open does itself: a locked reader keeps out the next one, too.
    const FileLock lock = isLocked ? FileLock::Exclusive : FileLock::None;
    int error = RuntimeError::None;
    auto file = m_files.Open(Trim(path), *fileMode, lock, error);
    if (!file) {
        ShowFileError(error, path);
        return 0;
    }
    m_open[fileNo] = std::move(file);
    return fileNo;
}

bool OutputFiles::CloseFileNo(int fileNo)
{
    m_open.erase(fileNo);
    return true;
}

OpenFile *OutputFiles::File(int fileNo)
{
    const auto found = m_open.find(fileNo);
    return found == m_open.end() ? nullptr : found->second.get();
}

void ShowFileError(int error, const QString &path)
{
    MsgBox(QString("ｴﾗｰｺｰﾄﾞ：%1\r\nｴﾗｰ内容：%2\r\nﾌｧｲﾙ名：%3")
               .arg(QString::number(error), RuntimeError::Description(error), Trim(path)),
           BoxStyle::Critical + BoxStyle::SystemModal, "ﾌｧｲﾙｵ-ﾌﾟﾝｴﾗｰ");
}
