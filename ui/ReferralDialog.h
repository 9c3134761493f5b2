#pragma once

#include "ui/Dialog.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace ui {

class LiveLabel;

/// The dialog in which the user enters a referral code.
///
/// A valid code is stored and announced at once; the dialog then closes by itself after 1200 ms.
/// An invalid one is answered beside the field and changes nothing. The dialog does not talk to
/// the service: its owner does, on the signal.
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
