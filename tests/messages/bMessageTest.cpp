#include "messages/bMessage.h"

#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"

#include <gtest/gtest.h>

TEST(bMessage, EachKindHasItsBoxAndTheExtraTextALineOfItsOwn)
{
    const struct
    {
        int code;
        QString extra;
        QString shown;
        int style;
        const char *title;
        int answer = BoxButton::Ok;
    } cases[] = {
        {13, "   ", "データが存在しません\r", 48, "注意"},
        {15, "注文№ A-1  ", "登録されませんでした\r注文№ A-1", 48, "注意"},
        {14, "\r\n二行目", "登録されました\r\r\n二行目", 64, "情報"},
        {20, "", "削除してもよろしいですか\r", 64 + 4 + 256, "情報", BoxButton::No},
        {38, "", "全件対象ですか\r", 64 + 3 + 256, "情報", BoxButton::Cancel},
        {114, "", "該当の注文情報は打切済みです\r", 48 + 256, "注意"},
        {0, "  出力パスが設定されていません。 ", "出力パスが設定されていません。", 48 + 256,
         "注意"},
    };
    for (const auto &[code, extra, shown, style, title, answer] : cases) {
        SCOPED_TRACE(code);
        ScriptedBoxes boxes;
        if (answer != BoxButton::Ok)
            boxes.Press(answer);
        EXPECT_EQ(ShowMessage(code, extra), answer);
        const MessageBoxRequest box = boxes.Shown().at(0);
        EXPECT_EQ(box.text, shown);
        EXPECT_EQ(box.style, style);
        EXPECT_EQ(box.title, title);
    }
}

TEST(bMessage, EveryCodeOfTheSuiteIsFound)
{
    for (int code = -1; code <= 120; ++code)
        EXPECT_EQ(MessageText(code).isEmpty(), code < 1 || (code > 104 && code < 110) || code > 115)
            << code;
}
