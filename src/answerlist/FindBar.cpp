#include "answerlist/FindBar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

FindBar::FindBar(QWidget *parent)
    : QWidget(parent)
    , m_text(new QLineEdit)
{
    auto *label = new QLabel("検索文字");
    label->setBuddy(m_text);
    m_text->setObjectName("txtFind");
    m_text->setAccessibleName("検索文字");
    m_text->setPlaceholderText("注文№、商品ｺｰﾄﾞ、商品名、部門ｺｰﾄﾞ");
    m_text->setMaxLength(60);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(label);
    layout->addWidget(m_text, 1);
    const auto addButton = [&](const QString &text, const QString &icon, auto &&run) {
        auto *button = new QPushButton(QIcon::fromTheme(icon), text);
        layout->addWidget(button);
        connect(button, &QPushButton::clicked, this, run);
    };
    addButton("次を検索 (F3)", "go-down", [this] { emit Wanted(true); });
    addButton("前を検索 (Shift+F3)", "go-up", [this] { emit Wanted(false); });
    addButton("閉じる (Esc)", "window-close", [this] { Close(); });
}

QString FindBar::Text() const
{
    return m_text->text();
}

void FindBar::Open()
{
    show();
    m_text->setFocus(Qt::ShortcutFocusReason);
    m_text->selectAll();
}

void FindBar::Close()
{
    hide();
    emit Closed();
}

void FindBar::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape)
        Close();
    else if (isEnter && m_text->hasFocus())
        emit Wanted(!(event->modifiers() & Qt::ShiftModifier));
    else
        event->ignore();
}
