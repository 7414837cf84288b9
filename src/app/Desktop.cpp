#include "app/Desktop.h"

#include <QApplication>
#include <QFontDatabase>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
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

} // namespace

void PrepareDesktop(QApplication &application)
{
    KeepMemoryBetweenLists();
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
