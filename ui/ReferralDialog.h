#pragma once

#include "ui/Dialog.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace ui {

class LiveLabel;

/// The dialog in which the user enters a referral code.
///
/// The dialog stores a valid code and emits referralSaved() at once, and closes after 1200 ms. For
/// an invalid code it shows an error under the field and changes nothing.
class ReferralDialog : public Dialog
{
    Q_OBJECT

public:
    explicit ReferralDialog(QWidget *parent);

Q_SIGNALS:
    void referralSaved(QString code);

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void onSave();
    void showStatus(const QString &text, const QString &state);
    void retranslateUi();

    QLabel *promptLabel = nullptr;
    QLineEdit *codeEdit = nullptr;
    LiveLabel *statusLabel = nullptr;
    QPushButton *saveButton = nullptr;
};

} // namespace ui
