#pragma once

#include <memory>

class QWidget;

namespace app {

/// Sees to it that there is one interactive client, of each user on Linux and of the whole machine
/// on Windows: the first start keeps the place, a later one asks the first to show its window.
///
/// The place is held by something that the system gives back by itself when the process ends,
/// however it ends. Nothing here blocks or reports errors.
class SingleInstance
{
public:
    SingleInstance();
    ~SingleInstance();
    SingleInstance(const SingleInstance &) = delete;
    SingleInstance &operator=(const SingleInstance &) = delete;

    /// Takes the place and returns true, or asks the client that has it to show its window and
    /// returns false. A client that has no window yet does nothing about it, nor on Windows one on
    /// another user's desktop. A client that hangs does not hold up the caller.
    ///
    /// To be called once, before the application object exists: on X11 that takes the launcher's
    /// start-up id, which the first client needs, out of the environment.
    bool claim();

    /// As long as this object lives, requests of later starts show, raise and activate the window.
    /// Needs the application object.
    class ShowRequests
    {
    public:
        /// On Linux no request arrives without the place. On Windows requests find a window by its
        /// title, whoever has the place.
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
