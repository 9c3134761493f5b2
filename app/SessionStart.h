#pragma once

/// Lets a client that the session starts wait for the tray, which often comes later: a window gets
/// an icon only if there is a tray when it is created.
///
/// The session starts a client with Qt's option -session, as session managers that restore it do
/// and as an autostart entry should, or with DESKTOP_AUTOSTART_ID in the environment.
namespace app {

class SingleInstance;

/// Takes DESKTOP_AUTOSTART_ID out of the environment, so that child processes do not inherit it,
/// and returns whether it was there. Call it before the application object exists: GTK, which a
/// theme of Qt loads, would remove it first.
bool takeAutostartId();

/// After a start by the session it waits for a tray, up to 10 s; requests of later starts are
/// queued. Returns false if the application was told to quit meanwhile. Needs the application
/// object.
bool waitForTray(bool autostarted, SingleInstance &instance);

} // namespace app
