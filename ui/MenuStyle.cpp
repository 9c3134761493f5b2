#include "ui/MenuStyle.h"

namespace ui {

QString menuStyle()
{
    return QStringLiteral(
        "QMenu { background: #232548; color: #F2F2FA; border: 1px solid rgba(255,255,255,30);"
        " border-radius: 8px; padding: 6px 0; }"
        "QMenu::item { padding: 8px 24px; background: transparent; }"
        "QMenu::item:selected { background: rgba(255,255,255,30); }");
}

} // namespace ui
