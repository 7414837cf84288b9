#include "output/OutputFiles.h"

#include "platform/MsgBox.h"
#include "platform/RuntimeError.h"
#include "util/VbText.h"

#include <optional>

namespace {

struct Opening
{
    FileMode mode;
    FileLock lock;
};

std::optional<Opening> OpeningOf(int mode, int access)
{
    switch (mode) {
    case OutputFiles::Append:
        return Opening{FileMode::Append, FileLock::Exclusive};
    case OutputFiles::Input:
        return Opening{FileMode::Read, FileLock::Shared};
    case OutputFiles::Output:
        return Opening{FileMode::Output, FileLock::Exclusive};
    default:
        break;
    }
    if (access == OutputFiles::Read)
        return Opening{FileMode::Read, FileLock::Shared};
    if (access == OutputFiles::Write || access == OutputFiles::ReadWrite)
        return Opening{FileMode::ReadWrite, FileLock::Exclusive};
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
    const auto opening = OpeningOf(mode, access);
    if (!opening)
        return 0;
    int error = RuntimeError::None;
    auto file
        = m_files.Open(Trim(path), opening->mode, isLocked ? opening->lock : FileLock::None, error);
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
