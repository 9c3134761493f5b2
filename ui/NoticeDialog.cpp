#include "ui/NoticeDialog.h"

#include "ui/LinkLabel.h"
#include "ui/SafeMarkup.h"
#include "ui/WindowManager.h"

#include <QAbstractTextDocumentLayout>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace ui {

namespace {

constexpr int minimumDialogWidth = 360;

// Leaves the rest of the screen to window frames and panels.
constexpr double maxShareOfScreen = 0.8;

QString dialogStyle()
{
    return QStringLiteral(
        "QPushButton { background: #E25822; color: #F2F2FA; border: none; border-radius: 8px;"
        " padding: 7px 22px; min-width: 80px; }"
        "QPushButton:hover { background: #FF6A30; }");
}

// Qt's own scroll bars are light.
QString scrollStyle()
{
    return QStringLiteral(
        "QAbstractScrollArea, QAbstractScrollArea::corner { background: transparent; }"
        "QScrollBar { background: transparent; }"
        "QScrollBar:vertical { width: 10px; }"
        "QScrollBar:horizontal { height: 10px; }"
        "QScrollBar::handle { background: rgba(255, 255, 255, 50); border-radius: 3px; }"
        "QScrollBar::handle:hover, QScrollBar::handle:pressed"
        " { background: rgba(255, 255, 255, 90); }"
        "QScrollBar::handle:vertical { min-height: 32px; margin-left: 4px; }"
        "QScrollBar::handle:horizontal { min-width: 32px; margin-top: 4px; }"
        "QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }"
        "QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }");
}

// The rectangle of the selected text on its first line.
QRect selectionRect(const LinkLabel &label)
{
    const auto *const document = label.findChild<QTextDocument *>();
    const QTextBlock block = document->findBlock(label.selectionStart());
    const int start = label.selectionStart() - block.position();
    const QTextLine line = block.layout()->lineForTextPosition(start);
    const int end =
        std::min(start + label.selectedText().size(), line.textStart() + line.textLength());
    const QPointF corner = document->documentLayout()->blockBoundingRect(block).topLeft();
    const double left = std::min(line.cursorToX(start), line.cursorToX(end));
    const double right = std::max(line.cursorToX(start), line.cursorToX(end));
    return QRectF{left, line.y(), right - left, line.height()}
        .translated(corner + label.contentsRect().topLeft())
        .toAlignedRect();
}

// Takes ownership of the label.
QScrollArea *makeScrollArea(LinkLabel *label)
{
    auto *const area = new QScrollArea;
    area->setStyleSheet(scrollStyle());
    area->setFrameShape(QFrame::NoFrame);
    // The label has the focus and passes on the keys that scroll.
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidgetResizable(true);
    area->setWidget(label);
    label->setAutoFillBackground(false);
    QObject::connect(label, &LinkLabel::linkReached, area, [area, label] {
        const QRect link = selectionRect(*label);
        area->ensureVisible(link.center().x(), link.center().y(), link.width() / 2, link.height());
    });
    return area;
}

} // namespace

NoticeDialog::NoticeDialog(const QString &text, QWidget *parent)
    : Dialog(dialogStyle(), minimumDialogWidth, {24, 22, 24, 18}, 16, parent)
{
    setWindowTitle(tr("Notice"));

    auto *const label = new LinkLabel{this};
    label->setWordWrap(true);
    label->showMarkup(safeMarkup(text));
    auto *const buttons = new QDialogButtonBox{QDialogButtonBox::Ok, this};
    QPushButton *const ok = buttons->button(QDialogButtonBox::Ok);
    // The icon of some styles does not fit the button's colour.
    ok->setIcon({});
    column->addWidget(label);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &NoticeDialog::accept);

    const QSize maximum = screen()->availableSize() * maxShareOfScreen;
    label->ensurePolished();
    const int width =
        std::max(minimumDialogWidth, std::min(column->sizeHint().width(), maximum.width()));
    const int height = column->totalHeightForWidth(width);
    if (column->minimumSize().width() > maximum.width() || height > maximum.height()) {
        column->removeWidget(label);
        column->insertWidget(0, makeScrollArea(label));
        label->setFocus();
    }
    // Qt by itself would limit the size to two thirds of the screen.
    resize(width, std::min(height, maximum.height()));

    // What the user types into another program must not go here: Enter would close it unread.
    if (QGuiApplication::applicationState() != Qt::ApplicationActive) {
        comeUpQuietly(this);
    }
}

} // namespace ui
