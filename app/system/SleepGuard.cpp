#include "app/system/SleepGuard.h"

#include "app/system/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace fennik::system {

namespace {

const QString program = QStringLiteral("Fennik");
const QString reason = QStringLiteral("Běží operace se soubory");

QDBusMessage loginCall() {
    auto message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    message << QStringLiteral("sleep") << program << reason << QStringLiteral("block");
    return message;
}

QDBusMessage desktopCall(const char* method) {
    return QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.PowerManagement"),
        QStringLiteral("/org/freedesktop/PowerManagement/Inhibit"),
        QStringLiteral("org.freedesktop.PowerManagement.Inhibit"), QString::fromLatin1(method));
}

} // namespace

SleepGuard::SleepGuard(Executor& worker, Executor& main) : worker_(worker), main_(main) {}

void SleepGuard::hold() {
    isWanted_ = true;
    if (isAsking_ || lock_.isValid() || cookie_ != 0)
        return;
    isAsking_ = true;
    // To meet a bus takes a while, and this one nobody has met before.
    runThen(
        worker_, main_, life_, [] { return QDBusConnection::systemBus().isConnected(); },
        [this](bool isConnected) {
            if (isConnected)
                askLogin();
            else
                askDesktop();
        });
}

void SleepGuard::askLogin() {
    auto* watcher =
        new QDBusPendingCallWatcher(QDBusConnection::systemBus().asyncCall(loginCall()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *watcher;
        watcher->deleteLater();
        if (!reply.isValid())
            return askDesktop();
        isAsking_ = false;
        lock_ = reply.value();
        if (!isWanted_)
            release();
    });
}

void SleepGuard::askDesktop() {
    auto bus = sessionBus();
    if (!bus) {
        isAsking_ = false;
        return;
    }
    auto message = desktopCall("Inhibit");
    message << program << reason;
    auto* watcher = new QDBusPendingCallWatcher(bus->asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<uint> reply = *watcher;
        watcher->deleteLater();
        isAsking_ = false;
        if (reply.isValid())
            cookie_ = reply.value();
        if (!isWanted_)
            release();
    });
}

void SleepGuard::release() {
    isWanted_ = false;
    lock_ = QDBusUnixFileDescriptor();
    if (const auto cookie = std::exchange(cookie_, 0); cookie != 0) {
        auto message = desktopCall("UnInhibit");
        message << cookie;
        if (auto bus = sessionBus())
            bus->send(message);
    }
}

} // namespace fennik::system
