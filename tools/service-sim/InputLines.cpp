#include "tools/service-sim/InputLines.h"

#include <array>
#include <cerrno>

#include <unistd.h>

namespace servicesim {

InputLines::InputLines()
    : notifier(STDIN_FILENO, QSocketNotifier::Read)
{
    connect(&notifier, &QSocketNotifier::activated, this, [this] { onReadable(); });
}

void InputLines::onReadable()
{
    std::array<char, 4096> piece;
    const ssize_t length = read(STDIN_FILENO, piece.data(), piece.size());
    if (length < 0 && (errno == EINTR || errno == EAGAIN)) {
        return;
    }
    if (length <= 0) {
        notifier.setEnabled(false);
        if (!unfinished.isEmpty()) {
            Q_EMIT lineRead(unfinished);
        }
        return;
    }
    unfinished.append(piece.data(), static_cast<int>(length));
    int end = 0;
    while ((end = unfinished.indexOf('\n')) >= 0) {
        Q_EMIT lineRead(unfinished.left(end));
        unfinished.remove(0, end + 1);
    }
}

} // namespace servicesim
