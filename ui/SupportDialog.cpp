#include "ui/SupportDialog.h"

#include "ui/CopyButton.h"
#include "ui/LinkLabel.h"
#include "ui/ReferralCode.h"
#include "ui/SupportLink.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>

namespace ui {

namespace {

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
    link->showAddress(address);
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
    body->addSpacing(4);
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

    retranslateUi();
}

void SupportDialog::openPage()
{
    refreshReferral();
    open();
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
    line->setSpacing(8);
    line->addWidget(made.caption);
    line->addWidget(made.button);
    line->addStretch(1);
    body->addWidget(made.row);

    made.caption->setBuddy(made.button);

    connect(made.button, &QPushButton::clicked, this, [this, made] { onCopy(made); });
    return made;
}

void SupportDialog::onCopy(const CopyRow &row)
{
    const QString value = row.button->property(copyValueProperty).toString();
    QGuiApplication::clipboard()->setText(value, QClipboard::Clipboard);
    setButtonText(row, tr("Copied!"));
    QTimer::singleShot(feedbackTime, row.button, [row, value] { setButtonText(row, value); });
}

void SupportDialog::setButtonText(const CopyRow &row, const QString &text)
{
    row.button->setText(text);
    nameButton(row);
}

// A screen reader reads out the caption with the value.
void SupportDialog::nameButton(const CopyRow &row)
{
    row.button->setAccessibleName(row.caption->text() + QLatin1Char{' '} + row.button->text());
}

void SupportDialog::refreshReferral()
{
    const QString code = storedReferralCode();
    const bool valid = isValidReferralCode(code);
    if (valid) {
        setButtonText(referral, code);
        referral.button->setProperty(copyValueProperty, code);
    }
    referral.row->setVisible(valid);
}

void SupportDialog::retranslateUi()
{
    setHeader(tr("Support"), tr("Back"));
    contactCaption->setText(tr("CONTACT"));
    contactText->setText(tr("For any questions about VPN operation, please contact us:"));
    infoCaption->setText(tr("INFO"));
    const auto retranslate = [](const CopyRow &row, const QString &caption) {
        if (row.row != nullptr) {
            row.caption->setText(caption);
            row.button->setToolTip(tr("Click to copy"));
            nameButton(row);
        }
    };
    retranslate(version, tr("Version:"));
    retranslate(clientId, tr("Your ID:"));
    retranslate(referral, tr("Referral:"));
}

} // namespace ui
