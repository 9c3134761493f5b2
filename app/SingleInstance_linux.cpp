#include "app/SingleInstance.h"

#include "app/PresentWindow_linux.h"

#include <QSocketNotifier>
#include <QWidget>

#include <array>
#include <cerrno>
#include <optional>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace app {

namespace {

// Longer than any start-up ID of a launcher.
constexpr int maxRequestSize = 1024;

class Descriptor
{
public:
    explicit Descriptor(int fd_ = -1)
        : fd(fd_)
    {}
    ~Descriptor()
    {
        if (fd >= 0) {
            close(fd);
        }
    }
    Descriptor(Descriptor &&other) noexcept
        : fd(std::exchange(other.fd, -1))
    {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(fd, other.fd);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    bool isOpen() const { return fd >= 0; }
    int get() const { return fd; }

private:
    int fd;
};

// A folder of this user that nobody else can read or write; not open if the path is taken.
Descriptor openPrivateFolder(const std::string &path)
{
    constexpr mode_t ownerOnly = S_IRWXU;
    if (mkdir(path.c_str(), ownerOnly) != 0 && errno != EEXIST) {
        return Descriptor{};
    }
    Descriptor folder{open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)};
    struct stat found = {};
    if (!folder.isOpen() || fstat(folder.get(), &found) != 0 || found.st_uid != geteuid() ||
        fchmod(folder.get(), ownerOnly) != 0) {
        return Descriptor{};
    }
    return folder;
}

struct LockedFolder
{
    std::string path;
    Descriptor folder;
};

// The same folder for every start of this user, whatever the environment says.
std::optional<LockedFolder> findFolder()
{
    const std::string user = std::to_string(geteuid());
    for (const std::string &path : {"/run/user/" + user + "/ixovpn", "/tmp/ixovpn-" + user}) {
        Descriptor folder = openPrivateFolder(path);
        if (folder.isOpen()) {
            return LockedFolder{path, std::move(folder)};
        }
    }
    return std::nullopt;
}

sockaddr_un channelAddress(const std::string &folder)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const std::string path = folder + "/show";
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

const sockaddr *generic(const sockaddr_un &address)
{
    return reinterpret_cast<const sockaddr *>(&address);
}

Descriptor openSocket()
{
    return Descriptor{socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)};
}

void askForWindow(const std::string &folder)
{
    const Descriptor channel = openSocket();
    const sockaddr_un address = channelAddress(folder);
    // One datagram is one request: the start-up ID, which may be empty.
    const QByteArray request = qgetenv("DESKTOP_STARTUP_ID").left(maxRequestSize);
    sendto(channel.get(), request.constData(), static_cast<std::size_t>(request.size()),
           MSG_NOSIGNAL, generic(address), sizeof address);
}

} // namespace

/// The folder itself is locked: no lock file can become stale, and programs that clean up /tmp
/// leave locked folders alone.
class SingleInstance::Private
{
public:
    std::optional<LockedFolder> locked;
    Descriptor channel;
};

SingleInstance::SingleInstance()
    : d(std::make_unique<Private>())
{}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::claim()
{
    if (std::optional<LockedFolder> found = findFolder()) {
        if (flock(found->folder.get(), LOCK_EX | LOCK_NB) == 0) {
            d->locked = std::move(found);
        } else if (errno == EWOULDBLOCK) {
            askForWindow(found->path);
            return false;
        }
    }
    // A client without a lock is better than no client.
    return true;
}

void SingleInstance::queueRequests()
{
    if (!d->locked || d->channel.isOpen()) {
        return;
    }
    // A socket of an earlier client, which has ended.
    const sockaddr_un address = channelAddress(d->locked->path);
    unlink(address.sun_path);
    Descriptor channel = openSocket();
    if (bind(channel.get(), generic(address), sizeof address) == 0) {
        d->channel = std::move(channel);
    }
}

class SingleInstance::ShowRequests::Private
{
public:
    Private(Descriptor channel_, QWidget *window_)
        : window(window_)
        , channel(std::move(channel_))
        , notifier(channel.get(), QSocketNotifier::Read)
    {
        QObject::connect(&notifier, &QSocketNotifier::activated, window, [this] { onReadable(); });
    }

private:
    // Reads all requests first, so that many starts at once show the window once.
    void onReadable()
    {
        std::optional<QByteArray> wanted;
        std::array<char, maxRequestSize> buffer = {};
        ssize_t length = 0;
        while ((length = recv(channel.get(), buffer.data(), buffer.size(), 0)) >= 0) {
            wanted = QByteArray{buffer.data(), static_cast<int>(length)};
        }
        if (wanted) {
            presentWindow(window, *wanted);
        }
    }

    QWidget *window;
    Descriptor channel;
    QSocketNotifier notifier;
};

SingleInstance::ShowRequests::ShowRequests(SingleInstance &instance, QWidget *window)
{
    instance.queueRequests();
    if (instance.d->channel.isOpen()) {
        d = std::make_unique<Private>(std::move(instance.d->channel), window);
    }
}

SingleInstance::ShowRequests::~ShowRequests() = default;

} // namespace app
