#include "tests/support/SessionManager.h"

#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

// These headers define macros that break other headers.
#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>

namespace support {

class SessionManager::Private
{
public:
    explicit Private(QObject *context)
        : owner(context)
    {
        // The default handler exits when a program closes its connection without notice.
        IceSetIOErrorHandler([](IceConn) {});
        std::array<char, 256> error = {};
        char vendor[] = "tests";
        char release[] = "1";
        if (SmsInitialize(vendor, release, &Private::onNewClient, this, &Private::letIn,
                          static_cast<int>(error.size()), error.data()) == 0 ||
            IceListenForConnections(&places, &listeners, static_cast<int>(error.size()),
                                    error.data()) == 0) {
            qFatal("No session manager: %s", error.data());
        }
        for (int i = 0; i < places; ++i) {
            IceSetHostBasedAuthProc(listeners[i], &Private::letIn);
            auto *const notifier = new QSocketNotifier{IceGetListenConnectionNumber(listeners[i]),
                                                       QSocketNotifier::Read, owner};
            QObject::connect(notifier, &QSocketNotifier::activated, owner,
                             [this, listener = listeners[i]] { accept(listener); });
        }
    }

    ~Private() { IceFreeListenObjs(places, listeners); }
    Private(const Private &) = delete;
    Private &operator=(const Private &) = delete;

    void logOut()
    {
        for (const SmsConn client : clients) {
            SmsSaveYourself(client, SmSaveBoth, True, SmInteractStyleAny, False);
        }
    }

    QObject *owner;
    int places = 0;
    IceListenObj *listeners = nullptr;
    std::vector<SmsConn> clients;
    int joined = 0;
    bool leaving = false;
    bool cancelled = false;

private:
    static Private *self(SmPointer data) { return static_cast<Private *>(data); }
    static Bool letIn(char * /*host*/) { return True; }

    void accept(IceListenObj listener)
    {
        IceAcceptStatus status = IceAcceptSuccess;
        const IceConn connection = IceAcceptConnection(listener, &status);
        if (connection == nullptr || status != IceAcceptSuccess) {
            return;
        }
        auto *const notifier =
            new QSocketNotifier{IceConnectionNumber(connection), QSocketNotifier::Read, owner};
        QObject::connect(notifier, &QSocketNotifier::activated, owner,
                         [this, connection, notifier] {
                             const IceProcessMessagesStatus read =
                                 IceProcessMessages(connection, nullptr, nullptr);
                             if (read != IceProcessMessagesSuccess) {
                                 notifier->setEnabled(false);
                                 notifier->deleteLater();
                             }
                             if (read == IceProcessMessagesIOError) {
                                 forget(connection);
                             }
                         });
    }

    void forget(IceConn connection)
    {
        const auto gone =
            std::stable_partition(clients.begin(), clients.end(), [connection](SmsConn client) {
                return SmsGetIceConnection(client) != connection;
            });
        std::for_each(gone, clients.end(), &SmsCleanUp);
        clients.erase(gone, clients.end());
        IceSetShutdownNegotiation(connection, False);
        IceCloseConnection(connection);
    }

    static Status onNewClient(SmsConn client, SmPointer manager, unsigned long *mask,
                              SmsCallbacks *callbacks, char ** /*refusal*/)
    {
        self(manager)->clients.push_back(client);
        *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
                SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
                SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask |
                SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
        *callbacks = {};
        callbacks->register_client = {&Private::onRegister, manager};
        callbacks->interact_request = {[](SmsConn asking, SmPointer, int) { SmsInteract(asking); },
                                       manager};
        callbacks->interact_done = {
            [](SmsConn, SmPointer data, Bool cancel) { self(data)->cancelled |= cancel != 0; },
            manager};
        callbacks->save_yourself_request = {[](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {},
                                            manager};
        callbacks->save_yourself_phase2_request = {
            [](SmsConn asking, SmPointer) { SmsSaveYourselfPhase2(asking); }, manager};
        callbacks->save_yourself_done = {&Private::onSaved, manager};
        callbacks->close_connection = {
            [](SmsConn closing, SmPointer data, int count, char **reasons) {
                SmFreeReasons(count, reasons);
                self(data)->forget(SmsGetIceConnection(closing));
            },
            manager};
        callbacks->set_properties = {[](SmsConn, SmPointer, int count, SmProp **properties) {
                                         for (int i = 0; i < count; ++i) {
                                             SmFreeProperty(properties[i]);
                                         }
                                         std::free(properties);
                                     },
                                     manager};
        callbacks->delete_properties = {[](SmsConn, SmPointer, int count, char **names) {
                                            for (int i = 0; i < count; ++i) {
                                                std::free(names[i]);
                                            }
                                            std::free(names);
                                        },
                                        manager};
        callbacks->get_properties = {
            [](SmsConn asking, SmPointer) { SmsReturnProperties(asking, 0, nullptr); }, manager};
        return 1;
    }

    static Status onRegister(SmsConn client, SmPointer, char *previousId)
    {
        if (previousId != nullptr) {
            std::free(previousId);
            return 0;
        }
        char *const id = SmsGenerateClientID(client);
        SmsRegisterClientReply(client, id);
        std::free(id);
        // The protocol demands this first SaveYourself.
        SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
        return 1;
    }

    static void onSaved(SmsConn client, SmPointer manager, Bool /*success*/)
    {
        if (!self(manager)->leaving) {
            SmsSaveComplete(client);
            ++self(manager)->joined;
        } else if (!self(manager)->cancelled) {
            SmsDie(client);
        } else {
            SmsShutdownCancelled(client);
        }
    }
};

SessionManager::SessionManager()
    : d(std::make_unique<Private>(this))
{}

SessionManager::~SessionManager() = default;

QString SessionManager::address() const
{
    char *const list = IceComposeNetworkIdList(d->places, d->listeners);
    QString address = QString::fromLocal8Bit(list);
    std::free(list);
    return address;
}

int SessionManager::members() const
{
    return d->joined;
}

void SessionManager::logOut()
{
    d->leaving = true;
    d->logOut();
}

bool SessionManager::isCancelled() const
{
    return d->cancelled;
}

} // namespace support
