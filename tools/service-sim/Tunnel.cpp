#include "tools/service-sim/Tunnel.h"

#include "ipc/Protocol.h"

namespace servicesim {

namespace {

namespace protocol = ipc::protocol;
using protocol::ServiceState;

} // namespace

Tunnel::Tunnel(const TunnelSettings &settings_)
    : settings(settings_)
    , state(settings_.startState)
{
    timer.setSingleShot(true);
    timer.setInterval(settings.stepDelay);
    connect(&timer, &QTimer::timeout, this, &Tunnel::advance);
}

bool Tunnel::requestUp()
{
    if (timer.isActive() && step > Step::Running) {
        upAgain = true;
        return false;
    }
    if (timer.isActive() || protocol::parseState(state) == ServiceState::Running) {
        return false;
    }
    enter(Step::Fetching);
    return true;
}

bool Tunnel::requestDown()
{
    if (timer.isActive() && step > Step::Running) {
        upAgain = false;
        if (step == Step::Stopped) {
            timer.stop();
        }
        return false;
    }
    switch (protocol::parseState(state)) {
    case ServiceState::Stopped:
    case ServiceState::Disconnected:
        return false;
    case ServiceState::SubscriptionExpired:
    case ServiceState::Failed:
        enter(Step::Stopped);
        return true;
    default:
        enter(Step::Stopping);
        return true;
    }
}

QString Tunnel::stateLine() const
{
    return protocol::statusPrefix + state;
}

void Tunnel::advance()
{
    const bool expires = settings.expired && step == Step::Fetching;
    if (expires || (settings.failure && settings.failure->after == step)) {
        fail();
    } else if (step == Step::Stopped) {
        upAgain = false;
        enter(Step::Fetching);
    } else {
        enter(static_cast<Step>(static_cast<int>(step) + 1));
    }
}

void Tunnel::enter(Step reached)
{
    step = reached;
    bool arrived = false;
    switch (step) {
    case Step::Fetching:
        sayState(QStringLiteral("fetching"));
        break;
    case Step::Config:
        Q_EMIT said(protocol::configBytesPrefix + QString::number(settings.configBytes));
        break;
    case Step::Starting:
        sayState(QStringLiteral("starting"));
        break;
    case Step::Connecting:
        sayState(QStringLiteral("connecting"));
        break;
    case Step::Running:
        sayState(QStringLiteral("running"));
        arrived = !settings.failure || settings.failure->after != Step::Running;
        break;
    case Step::Stopping:
        sayState(QStringLiteral("stopping"));
        break;
    case Step::Stopped:
        sayState(QStringLiteral("stopped"));
        arrived = !upAgain;
        break;
    }
    if (arrived) {
        timer.stop();
    } else {
        timer.start();
    }
}

void Tunnel::fail()
{
    upAgain = false;
    if (settings.expired) {
        state = QString{protocol::subscriptionExpired};
        Q_EMIT said(protocol::errorPrefix + state);
        return;
    }
    const QString &reason = settings.failure->text;
    const bool asError = settings.failure->form == Failure::Form::Error;
    state = QStringLiteral("failed: %1").arg(reason);
    Q_EMIT said(asError ? protocol::errorPrefix + reason : stateLine());
}

void Tunnel::sayState(const QString &word)
{
    state = word;
    Q_EMIT said(stateLine());
}

} // namespace servicesim
