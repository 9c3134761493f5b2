#include "ui/SupportDialog.h"

#include "ui/CopyButton.h"
#include "ui/LinkLabel.h"
#include "ui/ReferralCode.h"
#include "ui/SupportLink.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <chrono>

namespace ui {

namespace {

constexpr int linkGap = 4;
constexpr int copyRowGap = 8;
constexpr std::chrono::milliseconds feedbackTime{1500};
constexpr const char *copyValueProperty = "copyValue";

QString pageStyle()
{
    return QStringLiteral(
        "QLabel#link a { color: #FF8A4E; text-decoration: none; font-weight: 600; }"
        "QLabel#link a:hover { text-decoration: underline; }"
        "QPushButton#copy { background: rgba(255,255,255,10); color: #C9CBE6; border: none;"
        " border-radius: 6px; padding: 4px 10px; font-family: \"Courier New\"; font-size: 12px;"
        " letter-spacing: 1px; min-width: 0; }"
        "QPushButton#copy:hover { background: rgba(255,255,255,30); }");
}

QString storedClientId()
{
    const QSettings service{QSettings::SystemScope, QStringLiteral("IXOVPN"),
                            QStringLiteral("IxoService")};
    return service.value(QStringLiteral("client_id")).toString();
}

QLabel *makeLink(const QString &address, QWidget *parent)
{
    auto *const link = new LinkLabel{parent};
    link->setObjectName(QStringLiteral("link"));
    link->setText(QStringLiteral("<a style=\"color:#FF8A4E;text-decoration:none;font-weight:600;\""
                                 " href=\"%1\">%1</a>")
                      .arg(address));
    return link;
}

} // namespace

SupportDialog::SupportDialog(QWidget *parent)
    : Page(pageStyle(), parent)
{
    contactCaption = makeSectionCaption({});
    contactText = new QLabel{this};
    contactText->setWordWrap(true);
    infoCaption = makeSectionCaption({});

    body->addWidget(contactCaption);
    body->addWidget(contactText);
    body->addWidget(makeLink(supportLink(), this));
    body->addSpacing(linkGap);
    body->addWidget(infoCaption);
    const QString applicationVersion = QCoreApplication::applicationVersion();
    if (!applicationVersion.isEmpty()) {
        version = makeCopyRow(applicationVersion);
    }
    const QString id = storedClientId();
    if (!id.isEmpty()) {
        clientId = makeCopyRow(id);
    }
    referral = makeCopyRow({});
    referral.row->hide();
    body->addStretch(1);

    connect(backButton, &QToolButton::clicked, this, &SupportDialog::closeRequested);

    retranslateUi();
}

void SupportDialog::openPage()
{
    refreshReferral();
    cover();
}

void SupportDialog::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        retranslateUi();
    }
    QWidget::changeEvent(event);
}

SupportDialog::CopyRow SupportDialog::makeCopyRow(const QString &value)
{
    CopyRow made;
    made.row = new QWidget{this};
    made.caption = new QLabel{made.row};
    made.button = new CopyButton{value, made.row};
    made.button->setObjectName(QStringLiteral("copy"));
    made.button->setProperty(copyValueProperty, value);
    made.button->setToolTip(tr("Click to copy"));

    auto *const line = new QHBoxLayout{made.row};
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(copyRowGap);
    line->addWidget(made.caption);
    line->addWidget(made.button);
    line->addStretch(1);
    body->addWidget(made.row);

    connect(made.button, &QPushButton::clicked, this,
            [this, button = made.button] { onCopy(button); });
    return made;
}

void SupportDialog::onCopy(QPushButton *button)
{
    const QString value = button->property(copyValueProperty).toString();
    QGuiApplication::clipboard()->setText(value, QClipboard::Clipboard);
    button->setText(tr("Copied!"));
    QTimer::singleShot(feedbackTime, button, [button, value] { button->setText(value); });
}

void SupportDialog::refreshReferral()
{
    const QString code = referralcode::stored();
    const bool valid = isValidReferralCode(code);
    if (valid) {
        referral.button->setText(code);
        referral.button->setProperty(copyValueProperty, code);
    }
    referral.row->setVisible(valid);
}

void SupportDialog::retranslateUi()
{
    backButton->setToolTip(tr("Back"));
    titleLabel->setText(tr("Support"));
    contactCaption->setText(tr("CONTACT"));
    contactText->setText(tr("For any questions about VPN operation, please contact us:"));
    infoCaption->setText(tr("INFO"));
    const auto retranslate = [](const CopyRow &row, const QString &caption) {
        if (row.row != nullptr) {
            row.caption->setText(caption);
            row.button->setToolTip(tr("Click to copy"));
        }
    };
    retranslate(version, tr("Version:"));
    retranslate(clientId, tr("Your ID:"));
    retranslate(referral, tr("Referral:"));
}

} // namespace ui
