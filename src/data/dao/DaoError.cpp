#include "data/dao/DaoError.h"

namespace {

QString DescriptionOf(int number)
{
    static constexpr struct
    {
        int number;
        const char *text;
    } descriptions[] = {
        {DaoErrors::InternalError, "予期しないエラーが発生しました。"},
        {DaoErrors::NoCurrentRecord, "カレント レコードがありません。"},
        {DaoErrors::DuplicateKey, "主キーの値が重複しているため、テーブルを変更できませんでした。"},
        {DaoErrors::FileNotFound, "データベース ファイルが見つかりませんでした。"},
        {DaoErrors::DiskFull, "ディスクの空き容量が不足しています。"},
        {DaoErrors::CannotUpdate, "更新できません。データベースは読み取り専用です。"},
        {DaoErrors::InvalidPassword, "パスワードが正しくありません。"},
        {DaoErrors::DiskError, "ディスクまたはネットワークのエラーです。"},
        {DaoErrors::CorruptFile,
         "データベースを開けません。データベース ファイルではないか、壊れています。"},
        {DaoErrors::CannotOpen,
         "データベース ファイルを開けません。ほかで使用中か、使用する権限がありません。"},
        {DaoErrors::SyntaxError, "SQL ステートメントを実行できません。"},
        {DaoErrors::Locked,
         "ほかのプログラムがデータベースをロックしているため、処理できませんでした。"},
        {DaoErrors::ItemNotFound, "要求された名前の項目が、このコレクションで見つかりません。"},
        {DaoErrors::NoDriver, "この種類のデータベースのドライバーがありません。"},
        {DaoErrors::PropertyNotFound, "プロパティが見つかりません。"},
        {DaoErrors::FileExists, "データベース ファイルは既に存在します。"},
        {DaoErrors::NullNotAllowed, "必須のフィールドに値がありません。"},
        {DaoErrors::RuleBroken, "入力規則に違反する値です。"},
        {DaoErrors::UnrecognizedFormat, "データベースの形式を認識できません。"},
        {DaoErrors::ObjectInvalid, "オブジェクトが正しくないか、または設定されていません。"},
        {DaoErrors::Cancelled, "操作は取り消されました。"},
        {DaoErrors::TypeMismatch, "データの型が一致しません。"},
    };
    for (const auto &entry : descriptions)
        if (entry.number == number)
            return QString::fromUtf8(entry.text);
    return DescriptionOf(DaoErrors::InternalError);
}

} // namespace

DaoError DaoErrors::Make(int number, const QString &source, const QString &detail)
{
    const QString description = DescriptionOf(number);
    return {number, detail.isEmpty() ? description : description + " (" + detail + ')', source,
            detail};
}
