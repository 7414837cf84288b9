#include "data/dao/DaoError.h"

#include <sqlite3.h>

namespace {

constexpr int RuleBroken = 3317;
constexpr int CannotOpen = 3051;
constexpr int DiskFull = 3026;
constexpr int DiskError = 3043;
constexpr int TypeMismatch = 3464;
constexpr int InternalError = 3000;

QString DescriptionOf(int number)
{
    static constexpr struct
    {
        int number;
        const char *text;
    } descriptions[] = {
        {InternalError, "予期しないエラーが発生しました。"},
        {DaoErrors::NoCurrentRecord, "カレント レコードがありません。"},
        {DaoErrors::DuplicateKey, "主キーの値が重複しているため、テーブルを変更できませんでした。"},
        {DaoErrors::FileNotFound, "データベース ファイルが見つかりませんでした。"},
        {DiskFull, "ディスクの空き容量が不足しています。"},
        {DaoErrors::CannotUpdate, "更新できません。データベースは読み取り専用です。"},
        {DaoErrors::InvalidPassword, "パスワードが正しくありません。"},
        {DiskError, "ディスクまたはネットワークのエラーです。"},
        {DaoErrors::CorruptFile,
         "データベースを開けません。データベース ファイルではないか、壊れています。"},
        {CannotOpen,
         "データベース ファイルを開けません。ほかで使用中か、使用する権限がありません。"},
        {DaoErrors::SyntaxError, "SQL ステートメントを実行できません。"},
        {DaoErrors::Locked,
         "ほかのプログラムがデータベースをロックしているため、処理できませんでした。"},
        {DaoErrors::ItemNotFound, "要求された名前の項目が、このコレクションで見つかりません。"},
        {DaoErrors::PropertyNotFound, "プロパティが見つかりません。"},
        {DaoErrors::FileExists, "データベース ファイルは既に存在します。"},
        {DaoErrors::NullNotAllowed, "必須のフィールドに値がありません。"},
        {RuleBroken, "入力規則に違反する値です。"},
        {DaoErrors::UnrecognizedFormat, "データベースの形式を認識できません。"},
        {DaoErrors::ObjectInvalid, "オブジェクトが正しくないか、または設定されていません。"},
        {DaoErrors::Cancelled, "操作は取り消されました。"},
        {TypeMismatch, "データの型が一致しません。"},
    };
    for (const auto &entry : descriptions)
        if (entry.number == number)
            return QString::fromUtf8(entry.text);
    return DescriptionOf(InternalError);
}

int NumberOf(int extendedCode)
{
    switch (extendedCode) {
    case SQLITE_CONSTRAINT_NOTNULL:
        return DaoErrors::NullNotAllowed;
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_ROWID:
        return DaoErrors::DuplicateKey;
    default:
        break;
    }
    switch (extendedCode & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return DaoErrors::Locked;
    case SQLITE_CONSTRAINT:
        return RuleBroken; // of a trigger, a check, a reference
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return CannotOpen;
    case SQLITE_READONLY:
        return DaoErrors::CannotUpdate;
    case SQLITE_FULL:
        return DiskFull;
    case SQLITE_IOERR:
        return DiskError;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return DaoErrors::CorruptFile;
    case SQLITE_INTERRUPT:
        return DaoErrors::Cancelled;
    case SQLITE_MISMATCH:
        return TypeMismatch;
    case SQLITE_ERROR:
        return DaoErrors::SyntaxError;
    default:
        return InternalError;
    }
}

} // namespace

DaoError DaoErrors::Make(int number, const QString &source, const QString &detail)
{
    const QString description = DescriptionOf(number);
    return {number, detail.isEmpty() ? description : description + " (" + detail + ')', source,
            detail};
}

DaoError DaoErrors::FromSqlite(sqlite3 *connection, const QString &source)
{
    return Make(NumberOf(sqlite3_extended_errcode(connection)), source,
                QString::fromUtf8(sqlite3_errmsg(connection)));
}
