#include "platform/InputBox.h"

#include "platform/Log.h"

#include <QApplication>
#include <QInputDialog>
#include <QLineEdit>

namespace {

std::function<QString(const QString &, const QString &)> &Handler()
{
    static std::function<QString(const QString &, const QString &)> handler;
    return handler;
}

} // namespace

QString InputBox(const QString &prompt, const QString &title)
{
    qCInfo(LogBox).noquote() << QString("「%1」 %2").arg(title, OneLine(prompt));
    if (Handler())
        return Handler()(prompt, title);

    QInputDialog box(QApplication::activeWindow());
    box.setObjectName("InputBox");
    box.setWindowTitle(title);
    box.setLabelText(QString(prompt).replace("\r\n", "\n").replace('\r', '\n'));
    box.setInputMode(QInputDialog::TextInput);
    if (auto *edit = box.findChild<QLineEdit *>())
        edit->setAccessibleName(title);
    return box.exec() == QDialog::Accepted ? box.textValue() : QString();
}

void SetInputBoxHandler(std::function<QString(const QString &, const QString &)> handler)
{
    Handler() = std::move(handler);
}
