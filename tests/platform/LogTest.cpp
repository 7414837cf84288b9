#include "platform/Log.h"

#include "platform/InputBox.h"
#include "platform/MsgBox.h"
#include "platform/RuntimeError.h"
#include "support/LogLines.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"

#include <QFileInfo>
#include <cerrno>
#include <gtest/gtest.h>

TEST(LogTest, EveryBoxIsALineAsGraveAsItsIcon)
{
    const LogLines log;
    ScriptedBoxes boxes;
    boxes.Press(BoxButton::Yes);
    MsgBox("一\r二\r\n\tend", BoxStyle::Exclamation, "注意");
    MsgBox("よいですか", BoxStyle::Question + BoxStyle::YesNo, "確認");
    MsgBox("INSERT INTO T VALUES (1,'A VALUES B');", BoxStyle::Critical, "原因");
    boxes.Type("261201");
    InputBox("回答納期\rを入力", "納期設定");
    EXPECT_EQ(log.Lines(),
              (QStringList{"warning talven.box: 「注意」 一↵二↵ end",
                           "info talven.box: 「確認」 よいですか", "info talven.box: 応答 はい",
                           "error talven.box: 「原因」 INSERT INTO T VALUES (…)",
                           "info talven.box: 「納期設定」 回答納期↵を入力"}));
}

TEST(LogTest, TheLevelDecidesWhatIsWritten)
{
    const LogLines log;
    for (const LogLevel level :
         {LogLevel::Debug, LogLevel::Info, LogLevel::Warning, LogLevel::Error}) {
        SetLogLevel(level);
        const auto before = log.Lines().size();
        qCDebug(LogList) << "debug";
        qCInfo(LogList) << "info";
        qCWarning(LogList) << "warning";
        qCCritical(LogList) << "error";
        EXPECT_EQ(log.Lines().size() - before, 4 - int(level)) << int(level);
    }
    EXPECT_EQ(LogLevelOf("error"), LogLevel::Error);
    EXPECT_EQ(LogLevelOf("Error"), std::nullopt);
}

TEST(LogTest, TheMachinesOwnCauseOfAFileError)
{
    const LogLines log;
    RuntimeError::FromErrno(EAGAIN); // a lock that is waited for
    EXPECT_EQ(log.Lines(), QStringList());
    RuntimeError::FromErrno(EROFS);
    ASSERT_EQ(log.Lines().size(), 1);
    EXPECT_TRUE(
        log.Lines().first().startsWith(QString("warning talven.file: errno %1: ").arg(EROFS)));
}

TEST(LogTest, MakesRoomForItselfAndNobodyElseReadsIt)
{
    const LogLines log;
    const QString path = log.folder.Path("talven/TL030101.log");
    const QString line(9'999, 'x');
    for (int of10kB = 0; of10kB < 750; ++of10kB)
        qCInfo(LogList).noquote() << line;
    qint64 size = 0;
    for (const char *age : {"", ".1", ".2", ".3", ".4", ".5"}) {
        EXPECT_TRUE(QFileInfo::exists(path + age)) << age;
        size += QFileInfo(path + age).size();
    }
    EXPECT_FALSE(QFileInfo::exists(path + ".6"));
    EXPECT_LE(size, 6'000'000);
    EXPECT_GE(size, 5'000'000);
    constexpr auto Others
        = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    EXPECT_EQ(QFile::permissions(path) & Others, QFile::Permissions());
}
