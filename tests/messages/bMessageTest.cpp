#include "messages/bMessage.h"

#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"

#include <QFile>
#include <gtest/gtest.h>
#include <map>

namespace {

/// One line of catalogue.txt: code, box style, title and text, separated by tabs; "\r" in the text
/// stands for a carriage return.
struct CatalogueLine
{
    int style;
    QString title;
    QString text;
};

std::map<int, CatalogueLine> ReadCatalogue()
{
    QFile file(QT_TESTCASE_SOURCEDIR "/messages/catalogue.txt");
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    std::map<int, CatalogueLine> lines;
    for (const QString &line : QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts)) {
        const auto parts = line.split('\t');
        lines[parts.at(0).toInt()]
            = {parts.at(1).toInt(), parts.at(2), QString(parts.at(3)).replace("\\r", "\r")};
    }
    return lines;
}

} // namespace

TEST(bMessage, EveryCodeShowsItsTextTitleAndStyle)
{
    const auto catalogue = ReadCatalogue();
    ASSERT_EQ(catalogue.size(), 110u);
    for (int code = -2; code <= 120; ++code) {
        const auto found = catalogue.find(code);
        const bool hasText = found != catalogue.end();
        const CatalogueLine line = hasText ? found->second : CatalogueLine{304, "注意", ""};
        EXPECT_EQ(MessageText(code), line.text) << code;

        ScriptedBoxes boxes;
        const bool isQuestion = (line.style & 0xf) != 0;
        if (isQuestion)
            boxes.Press(BoxButton::No);
        EXPECT_EQ(ShowMessage(code, "追加"), isQuestion ? BoxButton::No : BoxButton::Ok) << code;
        ASSERT_EQ(boxes.Shown().size(), 1u) << code;
        EXPECT_EQ(boxes.Shown()[0].style, line.style) << code;
        EXPECT_EQ(boxes.Shown()[0].title, line.title) << code;
        EXPECT_EQ(boxes.Shown()[0].text, hasText ? line.text + "\r追加" : "追加") << code;
    }
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
