#include "ui/Dialog.h"

#include "ui/Theme.h"

#include <QVBoxLayout>

namespace ui {

Dialog::Dialog(const QString &styleSheet, int minimumWidth, const QMargins &margins, int spacing,
               QWidget *parent)
    : QDialog(parent)
    , column(new QVBoxLayout{this})
{
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setStyleSheet(QStringLiteral("QDialog { background: #1B1D3D; }"
                                 "QLabel { color: #F2F2FA; font-size: 13px; }") +
                  menuStyle() + styleSheet);
    setModal(true);
    setMinimumWidth(minimumWidth);
    setAttribute(Qt::WA_QuitOnClose, false);
    column->setContentsMargins(margins);
    column->setSpacing(spacing);
}

} // namespace ui
