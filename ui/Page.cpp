#include "ui/Page.h"

#include "ui/Theme.h"
#include "ui/ToolButton.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace ui {

namespace {

QString sharedStyle()
{
    return QStringLiteral(
        "QLabel { color: #F2F2FA; font-size: 13px; }"
        "QLabel#section { color: #8B8DA8; font-size: 11px; letter-spacing: 0.5px; }"
        "QToolButton#back { background: rgba(255,255,255,20); color: #F2F2FA; border: none;"
        " border-radius: 10px; padding: 5px 12px; font-size: 14px; }"
        "QToolButton#back:hover { background: rgba(255,255,255,45); }");
}

} // namespace

Page::Page(const QString &styleSheet, QWidget *parent)
    : Overlay(parent)
{
    setStyleSheet(sharedStyle() + styleSheet);

    backButton = new ToolButton{this};
    backButton->setObjectName(QStringLiteral("back"));
    backButton->setText(QStringLiteral("←"));
    connect(backButton, &ToolButton::clicked, this, &Page::closeRequested);

    titleLabel = new QLabel{this};
    QFont titleFont = titleLabel->font();
    titleFont.setPixelSize(15);
    titleFont.setWeight(QFont::DemiBold);
    titleLabel->setFont(titleFont);

    auto *const header = new QHBoxLayout;
    header->setContentsMargins(16, 14, 16, 10);
    header->setSpacing(10);
    header->addWidget(backButton);
    header->addWidget(titleLabel);
    header->addStretch(1);

    auto *const separator = new QWidget{this};
    separator->setFixedHeight(1);
    separator->setStyleSheet(QStringLiteral("background: rgba(255,255,255,18);"));

    body = new QVBoxLayout;
    body->setContentsMargins(22, 20, 22, 20);
    body->setSpacing(16);

    auto *const root = new QVBoxLayout{this};
    root->setContentsMargins(0, 0, 0, 0);
    root->setSpacing(0);
    root->addLayout(header);
    root->addWidget(separator);
    root->addLayout(body);
}

void Page::open()
{
    cover();
    backButton->setFocus();
}

void Page::setHeader(const QString &title, const QString &back)
{
    titleLabel->setText(title);
    setAccessibleName(title);
    backButton->setToolTip(back);
    backButton->setAccessibleName(back);
}

QLabel *Page::makeSectionCaption(const QString &text)
{
    auto *const caption = new QLabel{text, this};
    caption->setObjectName(QStringLiteral("section"));
    return caption;
}

void Page::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        retranslateUi();
    }
    QWidget::changeEvent(event);
}

// A shortcut of the button would take Escape from an open list.
void Page::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel)) {
        backButton->click();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void Page::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    paintBackgroundGradient(painter, rect());
}

} // namespace ui
