#include "messages/bMessage.h"

#include "platform/MsgBox.h"
#include "util/VbText.h"

#include <algorithm>

namespace {

enum Style { Caution, Notice, Ask, AskOrCancel, OkOrCancel, Confirm, Fallback };

struct BoxLook
{
    const char *title;
    int style;
};

constexpr BoxLook LookOf(Style style)
{
    using namespace BoxStyle;
    switch (style) {
    case Caution:
        return {"注意", Exclamation};
    case Notice:
        return {"情報", Information};
    case Ask:
        return {"情報", Information + YesNo + DefaultButton2};
    case AskOrCancel:
        return {"情報", Information + YesNoCancel + DefaultButton2};
    case OkOrCancel:
        return {"情報", Information + OkCancel + DefaultButton2};
    case Confirm:
        return {"確認", Information + YesNo + DefaultButton2};
    case Fallback:
        break;
    }
    return {"注意", Exclamation + DefaultButton2};
}

struct Entry
{
    int code;
    const char *text;
    Style style;
};

// The suite shares the catalogue, so that a code means the same in each of its programs.
constexpr Entry Catalogue[] = {
    {1, "注文情報がありません", Caution},
    {2, "出荷されていません", Caution},
    {3, "指示数量が注残数を超えています", Caution},
    {4, "不良数が注文数を超えています", Caution},
    {5, "返品数が注文数を超えています", Caution},
    {6, "出荷されています", Caution},
    {7, "商品が登録されていません", Caution},
    {8, "日付の入力が間違っています", Caution},
    {9, "数値の入力が間違っています", Caution},
    {10, "必須入力です", Caution},
    {11, "納品ｷｰ№が既に登録されています", Caution},
    {12, "データが既に存在します", Caution},
    {13, "データが存在しません", Caution},
    {14, "登録されました", Notice},
    {15, "登録されませんでした", Caution},
    {16, "更新しました", Notice},
    {17, "更新されませんでした", Caution},
    {18, "削除しました", Notice},
    {19, "削除されませんでした", Caution},
    {20, "削除してもよろしいですか", Ask},
    {21, "半角のカタカナ、英数字のみ入力可能です", Caution},
    {22, "有効な行を選択してください", Caution},
    {23, "これ以上削除できません", Caution},
    {24, "既に出荷されているため変更できません", Caution},
    {25, "得意先区分が存在しません", Caution},
    {26, "伝票区分が存在しません", Caution},
    {27, "注文情報に誤りがあります", Caution},
    {28, "納品キー№が重複しています", Caution},
    {29, "商品コードが存在しません", Caution},
    {30, "注文情報がありません", Caution},
    {31, "納期がありません", Caution},
    {32, "納入指示がありません", Caution},
    {33, "納入指示数が誤りです", Caution},
    {34, "得意先コードが存在しません", Caution},
    {35, "受注者商品コードが存在しません", Caution},
    {36, "この注文№は既に登録されています", Caution},
    {37, "納入指示数合計が注文数を超えています", Caution},
    {38, "全件対象ですか", AskOrCancel},
    {39, "出荷数が注残数を超えています", Caution},
    {40, "得意先コードを入力してください", Notice},
    {41, "出荷区分が誤りがあります", Caution},
    {42, "作成しました", Notice},
    {43, "作成できませんでした", Caution},
    {44, "ファイル名が間違っています", Caution},
    {45, "今表示されている商品は、受注情報テーブルに\r存在しているため、削除できません", Caution},
    {46, "今表示されている得意先名は、受注情報テーブルに\r存在しているため、削除できません",
     Caution},
    {47, "今表示されている納入先は、受注情報テーブルに\r存在しているため、削除できません", Caution},
    {48, "すべての得意先の一覧を印刷しますか", AskOrCancel},
    {49, "受注情報テーブルにいまの情報が存在していて、\rそれを削除できません", Caution},
    {50, "商品変換マスタに、データは存在しません、\r削除できませんでした", Caution},
    {51, "コードを入力してください", Caution},
    {52, "バックアップファイルが見つかりません", Caution},
    {53, "ファイルまたはディレクトリが見つかりません", Caution},
    {54, "リストアできませんでした", Caution},
    {55, "リストアしました", Notice},
    {56, "受注データをCSVファイルに出力しました", Notice},
    {57, "出荷データをCSVファイルに出力しました", Notice},
    {58, "出荷情報の内容を取得できないためプログラムを終了します", Caution},
    {59, "最終受注明細№を取得できないためデータ取込処理を終了します", Caution},
    {60, "最終出荷明細№を取得できないためデータ取込処理を終了します", Caution},
    {61, "親注文が存在しません", Caution},
    {62, "未確定の納入指示情報が存在します", Caution},
    {63, "単価区分=2のとき、アクセス情報区分がない", Caution},
    {64, "正しい郵便番号を入力して下さい", Caution},
    {65, "ディレクトリが存在します", Caution},
    {66, "ファイルが既に存在します。上書きしますか？", Ask},
    {67, "バックアップしました", Notice},
    {68, "バックアップされませんでした", Caution},
    {69, "出力する帳票を選択してください", Caution},
    {70, "ディレクトリが存在しません\r新規に作成しますか", OkOrCancel},
    {71, "出力データを選択してください", Caution},
    {72, "他に同一の注文データがない為、これ以上削除できません", Caution},
    {73, "複写したもので、出荷数=0のもののみ、削除可能です", Caution},
    {74, "得意先マスタにファイル名が指定されていません", Caution},
    {75, "直前の回答納期以降の日付を入力してください", Caution},
    {76, "まだ未登録のデータなので、詳細を表示できません", Caution},
    {77, "ＦＪ情報区分が不正です", Caution},
    {78, "富士通ゼネラルの変更注文区分が不正です", Caution},
    {79, "納入指示数量の合計と注残数量が一致していません", Caution},
    {80, "テン情報区分が不正です", Caution},
    {81, "未確定の受注データが存在します", Caution},
    {82, "富士通、富士通ｾﾞﾈﾗﾙ 以外の発注者には対応していません。", Caution},
    {83, "アクセス情報区分が不正です", Caution},
    {84, "期間注文型取引以外の納入指示情報には対応していません。", Caution},
    {85, "部品管理形態区分が不正です", Caution},
    {86, "取引先符号区分に誤りがあります", Caution},
    {87, "オーダ区分に誤りがあります", Caution},
    {88, "納期を設定したい行を選択してください", Notice},
    {89, "出荷日を設定したい行を選択してください", Notice},
    {90, "バックアップファイルではありません", Caution},
    {91, "すべてのデータを削除します\r削除してもよろしいですか", Ask},
    {92, "選択された行のデータを削除します\r削除してもよろしいですか", Ask},
    {93, "金額の計算に得意先マスタの端数処理区分を必要とします\r得意先を確認してください", Notice},
    {94, "VANｺｰﾄﾞが既に登録されています", Caution},
    {95, "処理を中断しました", Caution},
    {96, "出荷を取り消しました", Notice},
    {97, "変更後の得意先ｺｰﾄﾞが得意先ﾏｽﾀに存在します。更新しますか？", Confirm},
    {98, "同一注文の、入力された回答数合計が、注残数を超えています", Caution},
    {99,
     "変更の対象となる注文の一部、又は全て出荷されてる為\rこの変更注文は、取り込むことは出来ません"
     "。\rこの変更を取り込みたい場合は、出荷取消で出荷を取り\r消した後に再度この処理を行って下さい"
     "。",
     Caution},
    {100, "変更の対象となる注文は、一括部品なので確定できません", Caution},
    {101, "注残数量と打切数量が一致していません", Caution},
    {102, "一部、又は全て出荷済みの為、注文取消の確定はできません", Fallback},
    {103, "注文数が出荷数を超えています", Caution},
    {104, "商品ｺｰﾄﾞが異なります。", Fallback},
    {110, "富士通テンの注文番号の桁数は８桁固定です", Fallback},
    {111, "変更対象となる納品キー番号が存在しません。", Fallback},
    {112, "一部、又は全て出荷済みの為、単価の自動更新はできません", Fallback},
    {113, "不良代納の数量が出荷数量を超えています", Fallback},
    {114, "該当の注文情報は打切済みです", Fallback},
    {115, "ファイル出力ができません。出力フォルダの設定、属性を確認してください。", Fallback},
};

const Entry *Find(int code)
{
    const auto *entry = std::ranges::lower_bound(Catalogue, code, {}, &Entry::code);
    return entry != std::end(Catalogue) && entry->code == code ? entry : nullptr;
}

} // namespace

QString MessageText(int code)
{
    const Entry *message = Find(code);
    return message ? QString::fromUtf8(message->text) : QString();
}

int ShowMessage(int code, const QString &extra)
{
    const Entry *message = Find(code);
    const BoxLook look = LookOf(message ? message->style : Fallback);
    const QString text = MessageText(code);
    return MsgBox(Trim(text).isEmpty() ? Trim(extra) : text + '\r' + Trim(extra), look.style,
                  QString::fromUtf8(look.title));
}
