#pragma once

#include "ui/Page.h"

class QComboBox;
class QPushButton;

namespace ui {

/// The page on which the user picks the language of the interface.
///
/// Despite its name it is no dialog but an overlay of the main window. It neither stores the
/// choice nor loads a catalogue: the choice leaves it as a signal.
class SettingsDialog : public Page
{
    Q_OBJECT

public:
    explicit SettingsDialog(QWidget *parent);

    /// Shows the page with the language of `tag` selected; English if no language has this tag.
    void openPage(const QString &tag);

Q_SIGNALS:
    /// Another language than the one that the page was opened with was saved.
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
