#include "app/QtEnvironment.h"

#include <QtGlobal>

#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace app {

namespace {

constexpr uint32_t wholeProperty = 100'000'000;

// Qt reads this property of the root window, with this tab.
bool hasXftDpi()
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> server{
        xcb_connect(nullptr, nullptr), &xcb_disconnect};
    if (xcb_connection_has_error(server.get()) != 0) {
        return false;
    }
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server.get())).data->root;
    const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> resources{
        xcb_get_property_reply(server.get(),
                               xcb_get_property(server.get(), 0, root, XCB_ATOM_RESOURCE_MANAGER,
                                                XCB_ATOM_STRING, 0, wholeProperty),
                               nullptr),
        &std::free};
    return resources != nullptr &&
           ('\n' + QByteArray{static_cast<const char *>(xcb_get_property_value(resources.get())),
                              xcb_get_property_value_length(resources.get())})
               .contains("\nXft.dpi:\t");
}

} // namespace

QtEnvironment::QtEnvironment(Run run)
{
    setDefault("QT_XCB_GL_INTEGRATION", QByteArrayLiteral("none"));

    // Without Xft.dpi Qt would scale by the millimetres that the server makes up; and it would
    // multiply that scale by the user's own factor.
    if (run == Run::WithWindow && qEnvironmentVariableIsEmpty("QT_SCALE_FACTOR") && hasXftDpi()) {
        setDefault("QT_ENABLE_HIGHDPI_SCALING", QByteArrayLiteral("1"));
        setDefault("QT_SCALE_FACTOR_ROUNDING_POLICY", QByteArrayLiteral("PassThrough"));
    }

    const bool hasDisplay =
        !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (run == Run::WithoutWindow && !hasDisplay) {
        // Left alone, Qt would abort.
        setDefault("QT_QPA_PLATFORM", QByteArrayLiteral("offscreen"));
    }
}

} // namespace app
