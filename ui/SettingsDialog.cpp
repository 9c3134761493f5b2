#include "ui/SettingsDialog.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace ui {

namespace {

struct Language
{
    const char *tag;
    const char *name;
};

constexpr std::array languages{
    Language{"en", "English"},    Language{"ru", "Русский"},        Language{"de", "Deutsch"},
    Language{"fr", "Français"},   Language{"es", "Español"},        Language{"it", "Italiano"},
    Language{"pt", "Português"},  Language{"br", "Português (BR)"}, Language{"ja", "日本語"},
    Language{"nl", "Nederlands"}, Language{"pl", "Polski"},         Language{"tr", "Türkçe"},
    Language{"uk", "Українська"}, Language{"cs", "Čeština"},
};

QString pageStyle()
{
    return QStringLiteral(
        "QComboBox { background: rgba(255,255,255,25); color: #F2F2FA; border: none;"
        " border-radius: 8px; padding: 6px 10px; min-width: 180px; }"
        "QComboBox::drop-down { border: none; width: 18px; }"
        "QComboBox QAbstractItemView { background: #1B1D3D; color: #F2F2FA;"
        " selection-background-color: rgba(255,255,255,40); }"
        "QPushButton#save { background: rgba(255,255,255,25); color: #F2F2FA; border: none;"
        " border-radius: 8px; padding: 8px 28px; font-size: 13px; }"
        "QPushButton#save:hover { background: rgba(255,255,255,45); }");
}

} // namespace

SettingsDialog::SettingsDialog(QWidget *parent)
    : Page(pageStyle(), parent)
{
    languageLabel = new QLabel{this};
    languageCombo = new QComboBox{this};
    for (const Language &language : languages) {
        languageCombo->addItem(QString::fromUtf8(language.name),
                               QString{QLatin1String{language.tag}});
    }
    // Not every style shows all languages by itself.
    languageCombo->setMaxVisibleItems(languageCombo->count());
    languageLabel->setBuddy(languageCombo);
    // The page's style sheet does not reach the frame of the list.
    languageCombo->view()->parentWidget()->setStyleSheet(QStringLiteral("background: #1B1D3D;"));
    saveButton = new QPushButton{this};
    saveButton->setObjectName(QStringLiteral("save"));
    // Outside dialogs Enter would have no effect.
    saveButton->setAutoDefault(true);

    auto *const languageRow = new QHBoxLayout;
    languageRow->addWidget(languageLabel);
    languageRow->addWidget(languageCombo);
    languageRow->addStretch(1);

    auto *const buttonRow = new QHBoxLayout;
    buttonRow->addStretch(1);
    buttonRow->addWidget(saveButton);
    buttonRow->addStretch(1);

    // This caption does not follow a change of language.
    body->addWidget(makeSectionCaption(tr("LANGUAGE")));
    body->addLayout(languageRow);
    body->addStretch(1);
    body->addLayout(buttonRow);

    connect(saveButton, &QPushButton::clicked, this, &SettingsDialog::onSave);

    SettingsDialog::retranslateUi();
}

void SettingsDialog::openPage(const QString &tag)
{
    currentTag = tag;
    const int index = languageCombo->findData(tag);
    languageCombo->setCurrentIndex(std::max(index, 0));
    open();
}

void SettingsDialog::onSave()
{
    const QString tag = languageCombo->currentData().toString();
    if (tag != currentTag) {
        Q_EMIT languageChanged(tag);
    }
    Q_EMIT closeRequested();
}

void SettingsDialog::retranslateUi()
{
    setHeader(tr("Settings"), tr("Back"));
    languageLabel->setText(tr("Language"));
    saveButton->setText(tr("Save"));
}

} // namespace ui
