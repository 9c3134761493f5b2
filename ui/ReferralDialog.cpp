#include "ui/ReferralDialog.h"

#include "ui/LiveLabel.h"
#include "ui/ReferralCode.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

namespace ui {

namespace {

constexpr int minimumDialogWidth = 280;
constexpr std::chrono::milliseconds closeDelay{1200};

QString dialogStyle()
{
    return QStringLiteral(
        "QLabel#status { font-size: 12px; min-height: 16px; }"
        "QLabel#status[state=\"ok\"] { color: #4CAF50; }"
        "QLabel#status[state=\"error\"] { color: #E25822; }"
        "QLineEdit { background: rgba(255,255,255,15); color: #F2F2FA;"
        " border: 1px solid rgba(255,255,255,30); border-radius: 8px; padding: 8px 12px;"
        " font-size: 13px; letter-spacing: 1px; }"
        "QLineEdit:focus { border-color: rgba(255,255,255,60); }"
        "QPushButton { background: rgba(255,255,255,25); color: #F2F2FA; border: none;"
        " border-radius: 8px; padding: 6px 16px; min-width: 70px; }"
        "QPushButton:hover { background: rgba(255,255,255,50); }");
}

} // namespace

ReferralDialog::ReferralDialog(QWidget *parent)
    : Dialog(dialogStyle(), minimumDialogWidth, {22, 20, 22, 16}, 12, parent)
{
    promptLabel = new QLabel{this};
    promptLabel->setWordWrap(true);

    codeEdit = new QLineEdit{this};
    promptLabel->setBuddy(codeEdit);
    codeEdit->setMaxLength(12);
    codeEdit->setText(storedReferralCode());
    codeEdit->selectAll();

    statusLabel = new LiveLabel{{}, this};
    statusLabel->setObjectName(QStringLiteral("status"));
    statusLabel->setWordWrap(true);
    // The label keeps the height that a longer message has needed.
    statusLabel->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    statusLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    statusLabel->hide();

    auto *const buttons = new QDialogButtonBox{this};
    saveButton = buttons->addButton(QString{}, QDialogButtonBox::AcceptRole);
    // The icon of some desktops fits neither the colours nor the other button.
    buttons->addButton(QDialogButtonBox::Cancel)->setIcon({});

    column->addWidget(promptLabel);
    column->addWidget(codeEdit);
    column->addWidget(statusLabel);
    column->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::accepted, this, &ReferralDialog::onSave);
    connect(buttons, &QDialogButtonBox::rejected, this, &ReferralDialog::reject);
    connect(codeEdit, &QLineEdit::returnPressed, this, &ReferralDialog::onSave);

    retranslateUi();

    // Qt by itself would limit the size to two thirds of the screen, which is not enough at a scale
    // of 300 %.
    const int width = std::max(minimumDialogWidth, column->totalSizeHint().width());
    resize(width, column->totalHeightForWidth(width));
}

void ReferralDialog::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        retranslateUi();
    }
    QWidget::changeEvent(event);
}

void ReferralDialog::keyPressEvent(QKeyEvent *event)
{
    // The field has already saved; the default button would save again.
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter || !codeEdit->hasFocus()) {
        QDialog::keyPressEvent(event);
    }
}

void ReferralDialog::onSave()
{
    const QString code = codeEdit->text().trimmed();
    codeEdit->setText(code);
    if (!isValidReferralCode(code)) {
        showStatus(tr("Invalid code — must be exactly 6 letters or digits"),
                   QStringLiteral("error"));
        return;
    }
    storeReferralCode(code);
    Q_EMIT referralSaved(code);
    showStatus(tr("Saved ✓"), QStringLiteral("ok"));
    saveButton->setEnabled(false);
    QTimer::singleShot(closeDelay, this, &ReferralDialog::accept);
}

void ReferralDialog::showStatus(const QString &text, const QString &state)
{
    statusLabel->announce(text);
    statusLabel->setProperty("state", state);
    statusLabel->style()->unpolish(statusLabel);
    statusLabel->style()->polish(statusLabel);
    statusLabel->show();
    // A layout does not enlarge its window for a wrapped text that appears later.
    const int needed = layout()->totalHeightForWidth(width());
    if (height() < needed) {
        resize(width(), needed);
    }
}

void ReferralDialog::retranslateUi()
{
    setWindowTitle(tr("Referral Code"));
    promptLabel->setText(tr("Enter your referral code:"));
    codeEdit->setPlaceholderText(tr("e.g. ABC123"));
    saveButton->setText(tr("Save"));
}

} // namespace ui
