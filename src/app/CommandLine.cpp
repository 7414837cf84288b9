#include "app/CommandLine.h"

#include "platform/Version.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <string_view>

namespace {

constexpr int WrongArguments = 2;

constexpr auto Help = "使い方: TL030101 [オプション]\n"
                      "\n"
                      "納期回答入力\n"
                      "\n"
                      "  --home DIR   実行ファイルのフォルダの代わりに使う、プログラムのフォルダ\n"
                      "  --log LEVEL  ログに書く内容: debug、info（既定）、warning、error\n"
                      "  --guide      操作の手引きだけを表示する\n"
                      "  --version    バージョンを表示する\n"
                      "  --help       この説明を表示する\n"
                      "\n"
                      "例: TL030101 --home /srv/talven/demo --log debug\n"
                      "\n"
                      "終了コード: 0 正常、1 開始できない（理由は標準エラー出力とログに出る）、"
                      "2 引数の誤り\n"
                      "ログ: ";

/// What is wrong with arguments that the parser has not accepted, or that are too many.
QString Mistake(const QCommandLineParser &parser)
{
    if (!parser.unknownOptionNames().isEmpty())
        return "知らないオプションです: " + parser.unknownOptionNames().first();
    if (!parser.positionalArguments().isEmpty())
        return "余分な引数です: " + parser.positionalArguments().first();
    return "オプションの値がないか、余分です";
}

} // namespace

bool NeedsNoDisplay(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i)
        for (const std::string_view option : {"--help", "-h", "--version", "-v"})
            if (option == argv[i])
                return true;
    return false;
}

std::optional<int> ReadCommandLine(const QStringList &arguments, CommandLine &line,
                                   QTextStream &out, QTextStream &err)
{
    const auto complain = [&err](const QString &mistake) {
        err << "TL030101: " << OneLine(mistake) << "。TL030101 --help を参照してください"
            << Qt::endl;
        return WrongArguments;
    };
    QCommandLineParser parser;
    parser.addOptions({{"home", {}, "DIR"}, {"log", {}, "LEVEL", "info"}});
    for (const QStringList &names : {QStringList{"guide"}, {"v", "version"}, {"h", "help"}})
        parser.addOption(QCommandLineOption(names));
    if (!parser.parse(arguments) || !parser.positionalArguments().isEmpty())
        return complain(Mistake(parser));
    if (parser.isSet("help")) {
        out << Help << LogPath() << Qt::endl;
        return 0;
    }
    if (parser.isSet("version")) {
        out << "TL030101 " << ProgramVersion() << Qt::endl;
        return 0;
    }
    const auto level = LogLevelOf(parser.value("log"));
    if (!level)
        return complain("--log の値は debug、info、warning、error のどれかです: "
                        + parser.value("log"));
    line.logLevel = *level;
    line.isGuide = parser.isSet("guide");
    line.programDir = parser.isSet("home") ? QFileInfo(parser.value("home")).absoluteFilePath()
                                           : QCoreApplication::applicationDirPath();
    return std::nullopt;
}
