#include "ToolRun.h"
#include "support/QtPrinters.h"
#include "support/TestFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <gtest/gtest.h>

TEST(ToolCommands, WrongUseIsOneLineAndExitCode2)
{
    const TestFolder folder;
    const std::pair<QStringList, const char *> cases[] = {
        {{}, "no command given"},
        {{"import", "x", folder.Path("a"), "y"}, "OLD.MDB and DIR are wanted"},
        {{"history"}, "one DIR and perhaps [ORDER] is wanted"},
        {{"show-answers", "--lines", "3", folder.Path("a")}, "lines"},
        {{"demo", folder.Path("a"), "--lines", "0"}, "--lines wants"},
        {{"demo", folder.Path("a"), "--seed", "18446744073709551616"}, "--seed wants"},
        {{"demo", folder.Path("a"), "--date", "20260230"}, "--date wants"},
        {{"demo", folder.Path("a"), "--date", "19511231"}, "--date wants"},
    };
    for (const auto &[arguments, part] : cases) {
        SCOPED_TRACE(arguments.join(' ').toStdString());
        const ToolRun run(arguments);
        EXPECT_EQ(run.exitCode, ExitCode::WrongUse);
        EXPECT_TRUE(run.err.contains(part)) << run.err.toStdString();
        EXPECT_EQ(run.err.count('\n'), 1);
        EXPECT_EQ(run.out, "");
    }
    EXPECT_FALSE(QFileInfo::exists(folder.Path("a")));
}

TEST(ToolCommands, HelpNamesWhatThereIsWithAnExampleThatWorks)
{
    const ToolRun tool({"--help"});
    EXPECT_EQ(tool.exitCode, ExitCode::Ok);
    const QString list = tool.out.section("Commands:\n", 1).section("\n\n", 0, 0);
    const QStringList lines = list.split('\n');
    EXPECT_GE(lines.size(), 5);
    for (const QString &line : lines) {
        // Its words end where the operands begin.
        static const QRegularExpression words("^ *([a-z-]+( [a-z-]+)*) [A-Z]");
        const QString name = words.match(line).captured(1);
        SCOPED_TRACE(name.toStdString());
        // Help is given even where the command could not run.
        const ToolRun command(QString(name).split(' ') + QStringList("--help"));
        EXPECT_EQ(command.exitCode, ExitCode::Ok);
        EXPECT_TRUE(command.out.startsWith(QString("Usage: tldb %1 ").arg(name)));
        const QString example = command.out.section("\nExample: tldb ", 1).section('\n', 0, 0);
        EXPECT_TRUE(example.startsWith(name + ' ')) << example.toStdString();
        // Options that the command doesn't have would be told of before the help.
        EXPECT_EQ(ToolRun(example.split(' ') + QStringList{"--help"}).out, command.out);
    }
}

TEST(ToolCommands, SpeaksEnglishOfEveryDatabaseError)
{
    const TestFolder folder;
    folder.Write("TLDB0010.MDB", QByteArray(4096, 'x'));
    const ToolRun run({"check", folder.Path()});
    EXPECT_EQ(run.exitCode, ExitCode::Found);
    EXPECT_EQ(run.err,
              QString("tldb: %1/TLDB0010.MDB: database error 3049: file is not a database\n")
                  .arg(folder.Path()));
}

TEST(CreateCommand, AFolderThatCanNotTakeTheDatabase)
{
    const TestFolder folder;
    folder.Write("TLDB0010.MDB", "precious");
    const QString sample = QString(QT_TESTCASE_SOURCEDIR) + "/tldb/existing-database.mdb";
    for (const QStringList &command :
         {QStringList{"create"}, QStringList{"demo"}, QStringList{"import", sample}}) {
        SCOPED_TRACE(command.first().toStdString());
        const std::pair<QString, const char *> cases[] = {
            {folder.Path(), "the database exists already"},
            {folder.Path("TLDB0010.MDB/below"), "the database can't be written"},
        };
        for (const auto &[dir, error] : cases) {
            const ToolRun run(command + QStringList{dir});
            EXPECT_EQ(run.exitCode, ExitCode::Found);
            EXPECT_EQ(run.out, "");
            EXPECT_EQ(run.err, QString("tldb: %1/TLDB0010.MDB: %2\n").arg(dir, error));
        }
        EXPECT_EQ(folder.Read("TLDB0010.MDB"), "precious");
        EXPECT_EQ(QDir(folder.Path()).entryList(QDir::Files), QStringList{"TLDB0010.MDB"});
    }
}
