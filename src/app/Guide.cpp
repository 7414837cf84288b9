#include "app/Guide.h"

#include "platform/Log.h"
#include "platform/MsgBox.h"
#include "platform/System.h"

#include <QApplication>
#include <QFileInfo>
#include <QKeyEvent>
#include <QProcess>
#include <QTextBrowser>

namespace {

QString GuidePath()
{
    return QFileInfo(QCoreApplication::applicationDirPath() + "/../share/talven/guide/index.html")
        .absoluteFilePath();
}

/// A page whose pictures are never wider than the window.
class GuidePage : public QTextBrowser
{
protected:
    QVariant loadResource(int type, const QUrl &name) override
    {
        const QVariant resource = QTextBrowser::loadResource(type, name);
        if (type != QTextDocument::ImageResource)
            return resource;
        const QImage picture = QImage::fromData(resource.toByteArray());
        const int width = viewport()->width() * 9 / 10; // less the page's margins
        return picture.width() <= width ? picture
                                        : picture.scaledToWidth(width, Qt::SmoothTransformation);
    }
};

class GuideKey : public QObject
{
public:
    using QObject::QObject;
    ~GuideKey() override { CloseGuide(); }

private:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        const bool isF1 = event->type() == QEvent::KeyPress && object->isWidgetType()
                          && static_cast<QKeyEvent *>(event)->key() == Qt::Key_F1
                          && static_cast<QKeyEvent *>(event)->modifiers() == Qt::NoModifier;
        if (isF1)
            OpenGuide();
        return isF1;
    }

    void CloseGuide()
    {
        if (m_guide.state() == QProcess::NotRunning)
            return;
        m_guide.kill(); // it has nothing to lose
        m_guide.waitForFinished();
    }

    void OpenGuide()
    {
        CloseGuide();
        m_guide.setProcessChannelMode(QProcess::ForwardedChannels);
        m_guide.start(QCoreApplication::applicationDirPath() + "/TL030101", {"--guide"});
    }

    QProcess m_guide;
};

} // namespace

void OpenGuideOnF1(QApplication &application)
{
    application.installEventFilter(new GuideKey(&application));
}

bool ShowGuide()
{
    const QString path = GuidePath();
    if (!QFileInfo::exists(path)) {
        MsgBox("操作の手引きがありません。\r\r" + path, BoxStyle::Exclamation, "操作の手引き");
        return false;
    }
    GuidePage page;
    page.setObjectName("Guide");
    page.setWindowTitle("操作の手引き");
    page.setOpenExternalLinks(true);
    page.resize(QSize(960, 800).boundedTo(WorkArea().size()));
    page.show();
    page.setSource(QUrl::fromLocalFile(path));
    qCInfo(LogStart).noquote() << "操作の手引きを表示しました: " + path;
    QObject::connect(qApp, &QGuiApplication::lastWindowClosed, qApp, &QCoreApplication::quit);
    return QCoreApplication::exec() == 0;
}
