#pragma once

#include "ui/Page.h"

class QPushButton;

namespace ui {

/// The page with the way to reach support and the facts that support asks for: version, client ID
/// and referral code, each on a button that copies it.
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
    static void showOn(const CopyRow &row, const QString &text);
    static void nameButton(const CopyRow &row);
    void refreshReferral();
    void retranslateUi() override;

    QLabel *contactCaption = nullptr;
    QLabel *contactText = nullptr;
    QLabel *infoCaption = nullptr;
    /// Version and ID have no row where there is no value.
    CopyRow version;
    CopyRow clientId;
    CopyRow referral;
};

} // namespace ui
