#include "app/CommandLine.h"

#include "support/QtPrinters.h"

#include <QCoreApplication>
#include <QDir>
#include <gtest/gtest.h>

namespace {

struct Reading
{
    explicit Reading(const QStringList &arguments)
    {
        QTextStream outStream(&out);
        QTextStream errStream(&err);
        status = ReadCommandLine(QStringList{"TL030101"} + arguments, line, outStream, errStream);
    }

    CommandLine line;
    std::optional<int> status;
    QString out;
    QString err;
};

} // namespace

TEST(CommandLineTest, WrongArgumentsAreOneLineAndStatus2)
{
    const std::pair<QStringList, const char *> cases[] = {
        {{"--nix"}, "知らないオプションです: nix"}, {{"C0001"}, "余分な引数です: C0001"},
        {{"--home"}, "オプションの値がない"},       {{"--guide=1"}, "オプションの値がない"},
        {{"--log", "all\n"}, "--log の値は"},
    };
    for (const auto &[arguments, part] : cases) {
        SCOPED_TRACE(arguments.join(' ').toStdString());
        const Reading reading(arguments);
        EXPECT_EQ(reading.status, 2);
        EXPECT_TRUE(reading.err.startsWith(QString("TL030101: ") + part))
            << reading.err.toStdString();
        EXPECT_EQ(reading.err.count('\n'), 1);
        EXPECT_EQ(reading.out, "");
    }
}

TEST(CommandLineTest, WhatIsAskedFor)
{
    const Reading none({});
    EXPECT_EQ(none.status, std::nullopt);
    EXPECT_EQ(none.line.programDir, QCoreApplication::applicationDirPath());
    EXPECT_EQ(none.line.logLevel, LogLevel::Info);
    EXPECT_FALSE(none.line.isGuide);
    const Reading all({"--home", "db", "--log", "debug", "--guide"});
    EXPECT_EQ(all.line.programDir, QDir::currentPath() + "/db");
    EXPECT_EQ(all.line.logLevel, LogLevel::Debug);
    EXPECT_TRUE(all.line.isGuide);
    // Told without a display.
    for (const char *option : {"--help", "-h", "--version", "-v"}) {
        QByteArray argument(option);
        char *arguments[] = {nullptr, argument.data()};
        EXPECT_TRUE(NeedsNoDisplay(2, arguments)) << option;
        const Reading reading({option});
        EXPECT_EQ(reading.status, 0) << option;
        EXPECT_TRUE(reading.out.contains("TL030101 ")) << option;
    }
}
