#include "output/OutputFolders.h"

#include "messages/bMessage.h"
#include "output/AnswerSql.h"
#include "platform/RuntimeError.h"
#include "util/VbText.h"

#include <QStringList>

namespace {

constexpr InfoKind InfoKinds[] = {
    {"0302", "AnsInfPath", "AnsInfKBN", "見積回答情報"},
    {"0702", "NokiInfPath", "NokiInfKBN", "納期回答情報"},
    {"0704", "ShpInfPath", "ShpInfKBN", "出荷情報"},
    {"1004", "RsvPath2", "RsvInfKBN2", "返品受諾情報"},
    {"1103", "RsvPath1", "RsvInfKBN1", "照合確認情報"},
    {"9999", "NohinPath", "NohinKBN", "納品情報"},
};

constexpr auto WritableTestFile = "@@@@@Writable@@@@@.txt";
constexpr auto NoFolder = "ファイルを出力するフォルダが存在しません。\r\n"
                          "出力フォルダの設定、属性を確認してください。";
constexpr auto NotWritable = "ファイルの書き込みが出来ません。\r\n"
                             "出力フォルダの設定、属性を確認してください。";

/// The folder names of a path, the first one a drive, "\\server" or "" before the machine's root.
QStringList FolderNames(const QString &path, QChar separator)
{
    QStringList names;
    qsizetype start = 0;
    qsizetype from = path.startsWith("\\\\") ? 2 : 0;
    for (qsizetype at = path.indexOf(separator, from); at >= 0;
         at = path.indexOf(separator, start)) {
        names += path.mid(start, at - start);
        start = at + 1;
    }
    return names;
}

/// Makes the folders of a path that are missing; false when one can't be made.
bool MakeFolders(const Files &files, const QStringList &names, QChar separator)
{
    QString folder = names[0];
    if (files.MakeDrive(folder) != RuntimeError::None)
        return false;
    for (const QString &name : names.sliced(1)) {
        folder += separator + name;
        if (!files.FolderExists(folder) && files.MakeFolder(folder) != RuntimeError::None)
            return false;
    }
    return true;
}

/// True when a file can be made in the folder. It is always made anew: what bears its name may be a
/// link to a file worth keeping.
bool IsWritable(const Files &files, const QString &localFolder)
{
    constexpr int MostTurns = 100; // programs that start at once take turns at it
    const QString testFile
        = localFolder.isEmpty() ? QString() : localFolder + '/' + WritableTestFile;
    int error = RuntimeError::FileExists;
    for (int turn = 0; turn < MostTurns && error == RuntimeError::FileExists; ++turn) {
        error = files.Remove(testFile);
        if (error == RuntimeError::None || error == RuntimeError::FileNotFound)
            files.Open(testFile, FileMode::New, FileLock::None, error);
    }
    if (error == RuntimeError::None)
        files.Remove(testFile);
    return error == RuntimeError::None;
}

/// Names the first customer that uses the path.
QString CustomerOfPath(bDAO &db, const InfoKind &kind, const QString &path)
{
    const auto rows = db.OpenRS(BuildPathUsersSql(kind, path));
    if (db.IsEOF(rows.get()))
        return {};
    return QString("\r\n\r\n得意先コード：%1\r\n得意先名　　：%2\r\n情報種名　　：%"
                   "3\r\n出力パス　　：%4")
        .arg(db.NullToRTrim(*rows, u"CustCD"), db.NullToRTrim(*rows, u"CustName"), kind.name, path);
}

} // namespace

const InfoKind *FindInfoKind(const QString &code)
{
    for (const InfoKind &kind : InfoKinds)
        if (code == QLatin1String(kind.code))
            return &kind;
    return nullptr;
}

QString BuildPathsSql(const InfoKind &kind)
{
    const QString path = kind.pathColumn;
    return "Select Distinct " + path + " From TLMT0040 " + " Where " + kind.switchColumn + " <> 0 "
           + " And   " + path + " <> '' ";
}

QString BuildPathUsersSql(const InfoKind &kind, const QString &path)
{
    return QString("Select * From TLMT0040 ") + " Where " + kind.switchColumn + "  <> 0 "
           + " And   " + kind.pathColumn + " = '" + SqlText(path) + "' " + " Order By CustCD ";
}

bool CheckInfoOutputPaths(bDAO &db, const Files &files, const QString &infoKindCode,
                          QString &message)
{
    message.clear();
    const InfoKind *kind = FindInfoKind(infoKindCode);
    if (!kind)
        return false;
    const auto rows = db.OpenRS(BuildPathsSql(*kind));
    if (!rows)
        return false;
    for (; !db.IsEOF(rows.get()); db.MoveNext(*rows)) {
        const QString path = rows->Text(0);
        if (!CheckOutputFolder(files, path, message)) {
            message += CustomerOfPath(db, *kind, path);
            return false;
        }
    }
    return true;
}

bool CheckOutputFolder(const Files &files, const QString &filePath, QString &message)
{
    message.clear();
    const QString path = Trim(filePath);
    if (path.isEmpty()) {
        message = "出力パスが設定されていません。";
        return false;
    }
    const QChar separator = PathSeparator(path);
    QStringList names = FolderNames(path, separator);
    if (names.isEmpty()) {
        if (files.LocalPath(path) != path) { // on a drive or a server, but in no folder of it
            message = NoFolder;
            return false;
        }
        names += "."; // a bare file name stands in the current folder
    }
    const QString folder = names.join(separator);
    // By the folder's name on the machine: no file is looked for that differs only in case.
    QString local = files.LocalPath(folder);
    if (!files.FolderExists(local)) {
        if (!MakeFolders(files, names, separator)) {
            message = NoFolder;
            return false;
        }
        local = files.LocalPath(folder);
    }
    if (!IsWritable(files, local))
        message = NotWritable;
    return message.isEmpty();
}

bool CheckAnswerOutputPaths(bDAO &db, const Files &files)
{
    QString message;
    if (CheckInfoOutputPaths(db, files, AnswerInfoKind, message))
        return true;
    if (!message.isEmpty()) // else the database's error boxes have told why
        ShowMessage(Message::ExtraTextAlone, message);
    return false;
}
