#pragma once

namespace app {

class SingleInstance;

/// Takes DESKTOP_AUTOSTART_ID out of the environment, so that child processes do not inherit it,
/// and returns whether it was there. Call it before the application object exists: GTK, which a
/// theme of Qt loads, would remove it first.
bool takeAutostartId();

/// After a start by the session, waits up to 10 s for the tray, which often comes later than the
/// client: a window gets an icon only if there is a tray when it is created. Requests of later
/// starts are queued meanwhile.
///
/// The session starts a client with Qt's option -session, as session managers that restore it do
/// and as an autostart entry should, or with DESKTOP_AUTOSTART_ID in the environment.
///
/// Returns false if the application was told to quit meanwhile. Needs the application object.
bool waitForTray(bool autostarted, SingleInstance &instance);

} // namespace app
