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

} // namespace

SupportDialog::SupportDialog(QWidget *parent)
    : Page(pageStyle(), parent)
{
    contactCaption = makeSectionCaption({});
    contactText = new QLabel{this};
    contactText->setWordWrap(true);
    auto *const link = new LinkLabel{this};
    link->setObjectName(QStringLiteral("link"));
    link->showAddress(supportLink());
    infoCaption = makeSectionCaption({});

    body->addWidget(contactCaption);
    body->addWidget(contactText);
    body->addWidget(link);
    body->addSpacing(4);
    body->addWidget(infoCaption);
    const QString applicationVersion = QCoreApplication::applicationVersion();
    if (!applicationVersion.isEmpty()) {
        addCopyRow(applicationVersion, QT_TR_NOOP("Version:"));
    }
    const QString id = storedClientId();
    if (!id.isEmpty()) {
        addCopyRow(id, QT_TR_NOOP("Your ID:"));
    }
    addCopyRow({}, QT_TR_NOOP("Referral:"));
    rows.constLast().row->hide();
    body->addStretch(1);

    SupportDialog::retranslateUi();
}

void SupportDialog::openPage()
{
    const QString code = storedReferralCode();
    const bool valid = isValidReferralCode(code);
    const CopyRow &referral = rows.constLast();
    if (valid) {
        setButtonText(referral, code);
        referral.button->setProperty(copyValueProperty, code);
    }
    referral.row->setVisible(valid);
    open();
}

void SupportDialog::addCopyRow(const QString &value, const char *text)
{
    auto *const widget = new QWidget{this};
    const CopyRow row{widget, new QLabel{widget}, new CopyButton{value, widget}, text};
    row.button->setObjectName(QStringLiteral("copy"));
    row.button->setProperty(copyValueProperty, value);

    auto *const line = new QHBoxLayout{widget};
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(8);
    line->addWidget(row.caption);
    line->addWidget(row.button);
    line->addStretch(1);
    body->addWidget(widget);

    connect(row.button, &QPushButton::clicked, this, [this, row] { onCopy(row); });
    rows.append(row);
}

void SupportDialog::onCopy(const CopyRow &row)
{
    const QString value = row.button->property(copyValueProperty).toString();
    QGuiApplication::clipboard()->setText(value);
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

void SupportDialog::retranslateUi()
{
    setHeader(tr("Support"), tr("Back"));
    contactCaption->setText(tr("CONTACT"));
    contactText->setText(tr("For any questions about VPN operation, please contact us:"));
    infoCaption->setText(tr("INFO"));
    for (const CopyRow &row : qAsConst(rows)) {
        row.caption->setText(tr(row.text));
        row.button->setToolTip(tr("Click to copy"));
        nameButton(row);
    }
}

} // namespace ui
