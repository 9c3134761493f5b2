#pragma once

#include <memory>

class QWidget;

namespace app {

/// Allows one interactive client for each user on Linux and for the whole machine on Windows: the
/// first start takes a lock, a later start asks the first to show its window.
///
/// The system releases the lock when the process ends, however it ends. No call blocks or reports
/// errors.
class SingleInstance
{
public:
    SingleInstance();
    ~SingleInstance();
    SingleInstance(const SingleInstance &) = delete;
    SingleInstance &operator=(const SingleInstance &) = delete;

    /// Takes the lock and returns true, or asks the client that holds it to show its window and
    /// returns false. The request has no effect while that client has neither a window nor a queue
    /// or, on Windows, if its window is on another user's desktop.
    ///
    /// Call it once, before the application object exists: on X11 that removes the launcher's
    /// start-up ID, which the first client needs, from the environment.
    bool claim();

    /// From now on requests of later starts are queued until a ShowRequests exists. No effect on
    /// Windows.
    void queueRequests();

    /// While it exists, requests of later starts show, raise and activate the window. Needs the
    /// application object.
    class ShowRequests
    {
    public:
        /// On Linux no request arrives without the lock. On Windows requests find a window by its
        /// title, whoever holds the lock.
        ShowRequests(SingleInstance &instance, QWidget *window);
        ~ShowRequests();
        ShowRequests(const ShowRequests &) = delete;
        ShowRequests &operator=(const ShowRequests &) = delete;

    private:
        class Private;
        std::unique_ptr<Private> d;
    };

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace app
