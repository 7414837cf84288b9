#include "platform/RuntimeError.h"

#include "platform/Log.h"

#include <QFileDevice>
#include <QFileInfo>
#include <cerrno>

namespace RuntimeError {

QString Description(int number)
{
    static constexpr struct
    {
        int number;
        const char *text;
    } descriptions[] = {
        {SubscriptOutOfRange, "インデックスが有効範囲にありません。"},
        {BadFileName, "ファイル名または番号が不正です。"},
        {FileNotFound, "ファイルが見つかりません。"},
        {DeviceIo, "デバイス I/O エラーです。"},
        {FileExists, "既に同名のファイルが存在しています。"},
        {DiskFull, "ディスクの空き容量が不足しています。"},
        {TooManyFiles, "ファイルが多すぎます。"},
        {PermissionDenied, "書き込みできません。"},
        {DiskNotReady, "ディスクが準備されていません。"},
        {PathFileAccess, "パス名が無効です。"},
        {PathNotFound, "パスが見つかりません。"},
    };
    for (const auto &entry : descriptions)
        if (entry.number == number)
            return QString::fromUtf8(entry.text);
    return QString("アプリケーション定義またはオブジェクト定義のエラーです。");
}

namespace {

/// The machine's own cause, for the log: the operator gets the run-time's number.
void LogCause(int error)
{
    const QString cause = QString("errno %1: %2").arg(error).arg(qt_error_string(error));
    const bool isExpected = error == ENOENT || error == EEXIST || error == EAGAIN;
    if (isExpected)
        qCDebug(LogFile).noquote() << cause;
    else
        qCWarning(LogFile).noquote() << cause;
}

} // namespace

int FromErrno(int error)
{
    if (error != 0)
        LogCause(error);
    switch (error) {
    case 0:
        return None;
    case ENOENT:
        return FileNotFound;
    case ENOTDIR:
        return PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ELOOP:
        return PathFileAccess;
    case EAGAIN:
    case EBUSY:
    case ETXTBSY:
        return PermissionDenied;
    case EEXIST:
        return FileExists;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return DiskFull;
    case EMFILE:
    case ENFILE:
        return TooManyFiles;
    case ENAMETOOLONG:
    case EINVAL:
        return BadFileName;
    case ENXIO:
    case ENODEV:
        return DiskNotReady;
    default:
        return DeviceIo;
    }
}

int OfFile(const QFileDevice &file)
{
    if (!QFileInfo(QFileInfo(file.fileName()).path()).isDir())
        return PathNotFound;
    switch (file.error()) {
    case QFileDevice::NoError:
        return None;
    case QFileDevice::PermissionsError:
    case QFileDevice::OpenError:
    case QFileDevice::RenameError:
        return PermissionDenied;
    case QFileDevice::ResourceError:
        return DiskFull;
    default:
        return DeviceIo;
    }
}

} // namespace RuntimeError
