#include "ui/X11Atom_linux.h"

#include <QX11Info>

#include <cstdlib>
#include <memory>

namespace ui {

xcb_atom_t x11Atom(const QByteArray &name)
{
    xcb_connection_t *const connection = QX11Info::connection();
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply{
        xcb_intern_atom_reply(
            connection,
            xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.constData()),
            nullptr),
        &std::free};
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace ui
