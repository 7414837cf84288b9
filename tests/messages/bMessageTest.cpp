#include "messages/bMessage.h"

#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"

#include <QFile>
#include <gtest/gtest.h>

// Each line of catalogue.txt: code, box style, title and text, separated by tabs; "\r" in the text
// stands for a carriage return.
TEST(bMessage, EveryCodeShowsItsTextTitleAndStyle)
{
    MessageBoxRequest box;
    SetMsgBoxHandler([&](const MessageBoxRequest &shown) {
        box = shown;
        return BoxButton::No;
    });
    QStringList lines;
    for (int code = -2; code <= 120; ++code) {
        const QString text = MessageText(code);
        EXPECT_EQ(ShowMessage(code, "追加"), BoxButton::No) << code;
        EXPECT_EQ(box.text, text.isEmpty() ? "追加" : text + "\r追加") << code;
        const QString titleAndText = box.title + '\t' + QString(text).replace('\r', "\\r");
        if (text.isEmpty())
            EXPECT_EQ(QString::number(box.style) + titleAndText, "304注意\t") << code;
        else
            lines += QString("%1\t%2\t").arg(code).arg(box.style) + titleAndText;
    }
    SetMsgBoxHandler({});
    QFile file(QT_TESTCASE_SOURCEDIR "/messages/catalogue.txt");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    const QStringList expected = QString::fromUtf8(file.readAll()).trimmed().split('\n');
    for (int at = 0; at < std::max(lines.size(), expected.size()); ++at)
        EXPECT_EQ(lines.value(at), expected.value(at));
}

TEST(bMessage, ExtraTextStandsTrimmedOnALineOfItsOwn)
{
    const struct
    {
        int code;
        QString extra;
        QString shown;
    } cases[] = {
        {13, "   ", "データが存在しません\r"},
        {15, "注文№ A-1  ", "登録されませんでした\r注文№ A-1"},
        {15, "\r\n二行目", "登録されませんでした\r\r\n二行目"},
        {0, "  出力パスが設定されていません。 ", "出力パスが設定されていません。"},
        {105, "文", "文"},
    };
    for (const auto &[code, extra, shown] : cases) {
        ScriptedBoxes boxes;
        EXPECT_EQ(ShowMessage(code, extra), BoxButton::Ok);
        EXPECT_EQ(boxes.TakeTexts(), std::vector{shown}) << code;
    }
}
