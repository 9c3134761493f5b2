#pragma once

#include "ui/Page.h"

class QComboBox;
class QPushButton;

namespace ui {

/// The page on which the user selects the language of the interface. It neither stores the choice
/// nor loads a catalogue.
class SettingsDialog : public Page
{
    Q_OBJECT

public:
    explicit SettingsDialog(QWidget *parent);

    /// Shows the page and selects the language of `tag`, or English if no language has this tag.
    void openPage(const QString &tag);

Q_SIGNALS:
    /// The user has saved a language other than that of openPage().
    void languageChanged(QString tag);

private:
    void onSave();
    void retranslateUi() override;

    QLabel *languageLabel = nullptr;
    QComboBox *languageCombo = nullptr;
    QPushButton *saveButton = nullptr;
    QString currentTag;
};

} // namespace ui
