#pragma once

#include "ui/Page.h"

class QPushButton;

namespace ui {

/// The page with the address of support, and version, client ID and referral code on buttons that
/// copy them.
///
/// The client ID belongs to the service and is only read, once, at construction; the referral code
/// is read at every opening.
class SupportDialog : public Page
{
    Q_OBJECT

public:
    explicit SupportDialog(QWidget *parent);

    void openPage();

private:
    struct CopyRow
    {
        QWidget *row = nullptr;
        QLabel *caption = nullptr;
        QPushButton *button = nullptr;
    };

    CopyRow makeCopyRow(const QString &value);
    void onCopy(const CopyRow &row);
    static void setButtonText(const CopyRow &row, const QString &text);
    static void nameButton(const CopyRow &row);
    void refreshReferral();
    void retranslateUi() override;

    QLabel *contactCaption = nullptr;
    QLabel *contactText = nullptr;
    QLabel *infoCaption = nullptr;
    /// Version and ID have no row without a value.
    CopyRow version;
    CopyRow clientId;
    CopyRow referral;
};

} // namespace ui
