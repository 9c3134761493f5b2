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
        QWidget *row;
        QLabel *caption;
        QPushButton *button;
        const char *text;
    };

    void addCopyRow(const QString &value, const char *text);
    void onCopy(const CopyRow &row);
    static void setButtonText(const CopyRow &row, const QString &text);
    static void nameButton(const CopyRow &row);
    void retranslateUi() override;

    QLabel *contactCaption = nullptr;
    QLabel *contactText = nullptr;
    QLabel *infoCaption = nullptr;
    /// Version and ID, each only if it has a value, and the referral code.
    QList<CopyRow> rows;
};

} // namespace ui
