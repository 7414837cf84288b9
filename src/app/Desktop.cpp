#include "app/Desktop.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace {

/// Other faces draw the same characters in their Chinese shapes, and a desktop's own face may lack
/// them altogether.
void TakeJapaneseFont(QApplication &application)
{
    const QString family = QFontInfo(application.font()).family();
    if (QFontDatabase::writingSystems(family).contains(QFontDatabase::Japanese))
        return;
    const QStringList installed = QFontDatabase::families(QFontDatabase::Japanese);
    for (const char *face : {"IPAexGothic", "Noto Sans CJK JP", "IPAGothic", "TakaoGothic"}) {
        if (!installed.contains(QLatin1String(face)))
            continue;
        QFont font = application.font();
        font.setFamily(QString::fromLatin1(face));
        application.setFont(font);
        return;
    }
}

} // namespace

void PrepareDesktop(QApplication &application)
{
    application.setApplicationName("TL030101");
    // Without a display name: the titles name the program themselves.
    // By these a desktop finds the program's entry, and with it its icon and its place in the bar.
    application.setDesktopFileName("TL030101");
    QIcon::setThemeSearchPaths(QIcon::themeSearchPaths()
                               << QCoreApplication::applicationDirPath() + "/../share/icons");
    application.setWindowIcon(QIcon::fromTheme("TL030101"));
    application.setQuitOnLastWindowClosed(false); // the screens take turns
    QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));

    TakeJapaneseFont(application);

    auto *translator = new QTranslator(&application);
    if (translator->load("qtbase_ja", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        application.installTranslator(translator);
}
