#include "app/Desktop.h"

#include "app/PlainStyle.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QFontDatabase>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <fontconfig/fontconfig.h>
#include <malloc.h>

namespace {

/// Memory that goes back to the machine after each list takes a quarter of the next one's time to
/// get again.
void KeepMemoryBetweenLists()
{
    constexpr int LargestOnHeap = 32 << 20; // as much as the allocator allows
    constexpr int KeptBytes = 256 << 20;
    ::mallopt(M_MMAP_THRESHOLD, LargestOnHeap);
    ::mallopt(M_TRIM_THRESHOLD, KeptBytes);
}

/// Takes the machine's fonts without its dozens of rules about which family stands for another:
/// reading those takes longer than all else that a start does about fonts. What the site and the
/// user have set themselves still holds.
void TakeFontsWithoutRules()
{
    constexpr auto Rules = R"(<fontconfig>
        <dir>/usr/share/fonts</dir>
        <dir>/usr/local/share/fonts</dir>
        <dir prefix="xdg">fonts</dir>
        <cachedir>/var/cache/fontconfig</cachedir>
        <cachedir prefix="xdg">fontconfig</cachedir>
        <include ignore_missing="yes">/etc/fonts/local.conf</include>
        <include ignore_missing="yes" prefix="xdg">fontconfig/fonts.conf</include>
        <match target="pattern">
            <edit name="hintstyle" mode="append"><const>hintslight</const></edit>
        </match>
    </fontconfig>)";
    FcConfig *config = FcConfigCreate();
    if (FcConfigParseAndLoadFromMemory(config, reinterpret_cast<const FcChar8 *>(Rules), FcFalse))
        FcConfigSetCurrent(config);
    FcConfigDestroy(config);
}

} // namespace

void PrepareDesktop(QApplication &application)
{
    KeepMemoryBetweenLists();
    TakeFontsWithoutRules();
    application.setStyle(new PlainStyle);
    application.setApplicationName("TL030101");
    application.setApplicationDisplayName("納期回答入力");
    application.setQuitOnLastWindowClosed(false); // the screens take turns
    QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));

    // A Japanese face first: other faces draw the same characters in their Chinese shapes. One with
    // TrueType outlines: it comes faster and is drawn in half the time of one with PostScript's,
    // and its lines are lower.
    const QStringList installed = QFontDatabase::families();
    for (const char *family : {"IPAexGothic", "IPAGothic", "TakaoGothic", "Noto Sans CJK JP"}) {
        if (!installed.contains(QLatin1String(family)))
            continue;
        QFont font(QString::fromLatin1(family));
        font.setPointSize(application.font().pointSize() > 0 ? application.font().pointSize() : 10);
        application.setFont(font);
        break;
    }
    auto *translator = new QTranslator(&application);
    if (translator->load("qtbase_ja", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        application.installTranslator(translator);
}

QString ProgramDir(const QApplication &application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("納期回答入力");
    parser.addHelpOption();
    const QCommandLineOption home("home", "The program's own folder, in place of the executable's.",
                                  "DIR");
    parser.addOption(home);
    parser.process(application);
    return parser.isSet(home) ? QFileInfo(parser.value(home)).absoluteFilePath()
                              : QCoreApplication::applicationDirPath();
}
