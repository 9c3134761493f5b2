#include "ipc/Protocol.h"
#include "ipc/ServiceClient.h"
#include "tests/support/Contents.h"
#include "tests/support/ScriptedService.h"

#include <QFile>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTest>

namespace {

// Only a test that fails anyway waits this long.
constexpr int patienceMs = 30'000;

// The range of ephemeral ports, in this network namespace.
const QString rangeFile = QStringLiteral("/proc/sys/net/ipv4/ip_local_port_range");

bool givePorts(const QByteArray &range)
{
    QFile file{rangeFile};
    return file.open(QIODevice::WriteOnly) && file.write(range) == range.size();
}

bool givePorts(int first, int last)
{
    return givePorts(QByteArray::number(first) + ' ' + QByteArray::number(last));
}

} // namespace

/// The client's end of the connection where the system would give it the service's own port.
class tst_OwnPort : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanupTestCase();

    void clientIsNotItsOwnService();

private:
    QByteArray range;
};

void tst_OwnPort::init()
{
    if (!qEnvironmentVariableIsSet("IXOVPN_ISOLATED")) {
        QSKIP("Needs a network of its own");
    }
    range = support::contents(rangeFile);
    QVERIFY(!range.isEmpty());
}

void tst_OwnPort::cleanupTestCase()
{
    QVERIFY(range.isEmpty() || givePorts(range));
}

void tst_OwnPort::clientIsNotItsOwnService()
{
    constexpr int port = ipc::protocol::servicePort;
    QVERIFY(givePorts(port, port));
    ipc::ServiceClient client{nullptr};
    auto *const socket = client.findChild<QTcpSocket *>();
    const QSignalSpy changes{&client, &ipc::ServiceClient::connectionChanged};
    const QSignalSpy connections{socket, &QTcpSocket::connected};

    client.connectToService();
    QTRY_COMPARE_WITH_TIMEOUT(connections.size(), 2, patienceMs);
    QVERIFY(changes.isEmpty());

    // Now the client gets another port, and the service can listen.
    QVERIFY(givePorts(port + 1, port + 100));
    support::ScriptedService service;
    service.listen();
    QTRY_COMPARE_WITH_TIMEOUT(changes.size(), 1, patienceMs);
    QVERIFY(changes.first().first().toBool());
    QTRY_COMPARE_WITH_TIMEOUT(service.connected(), 1, patienceMs);
}

QTEST_GUILESS_MAIN(tst_OwnPort)

#include "tst_ownport.moc"
