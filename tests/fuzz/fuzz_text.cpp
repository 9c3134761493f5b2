// Fuzzes the parser of the service's lines and the sanitiser of notices, without a window: lines,
// messages, states and notices. Every line is tried as a notice too.

#include "ipc/Protocol.h"
#include "tests/fuzz/Finding.h"
#include "tests/support/OwnMarkup.h"
#include "ui/SafeMarkup.h"

#include <QByteArray>

#include <cstdint>

using fuzz::require;
using fuzz::requireEqual;
using ipc::protocol::MessageKind;

namespace {

void tryNotice(const QString &text)
{
    const QString safe = ui::safeMarkup(text);
    require(safe.isValidUtf16(), "half a character:", text);
    require(safe.size() <= 5 * (ui::maxNoticeLength + 1), "a notice grows:", text);
    require(support::isOwnMarkup(safe), "markup that is not ours:", safe);
    if (safe != text && safe.size() <= ui::maxNoticeLength) {
        requireEqual(ui::safeMarkup(safe), safe, "the second time");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input{reinterpret_cast<const char *>(data), static_cast<int>(size)};
    for (const QByteArray &line : input.split('\n')) {
        const QString text = QString::fromUtf8(line.constData(), line.size()).trimmed();
        const ipc::protocol::Message message = ipc::protocol::parseMessage(text);
        require(message.rest.isEmpty() || text.endsWith(message.rest), "not a rest:", message.rest);
        const bool begins = message.rest.startsWith(QStringLiteral("failed"));
        require(!begins ||
                    ipc::protocol::parseState(message.rest) == ipc::protocol::ServiceState::Failed,
                "not a failure:", message.rest);
        tryNotice(message.kind == MessageKind::Notice ? message.rest : text);
    }
    return 0;
}
