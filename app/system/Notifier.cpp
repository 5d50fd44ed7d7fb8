#include "app/system/Notifier.h"

#include "app/system/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

#include <utility>

namespace fennik::system {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString object = QStringLiteral("/org/freedesktop/Notifications");

constexpr int byTheServer = -1; ///< how long it is shown

QDBusMessage call(const char* method) {
    return QDBusMessage::createMethodCall(service, object, service, QString::fromLatin1(method));
}

} // namespace

void Notifier::listen() {
    if (std::exchange(listens_, true))
        return;
    auto bus = sessionBus();
    const auto follow = [&](const char* signal, const char* slot) {
        bus->connect(service, object, service, QString::fromLatin1(signal), this, slot);
    };
    follow("ActivationToken", SLOT(takeToken(uint, QString)));
    follow("ActionInvoked", SLOT(takeAction(uint, QString)));
    follow("NotificationClosed", SLOT(takeClosing(uint, uint)));
}

void Notifier::show(const QString& title, const QString& text) {
    auto bus = sessionBus();
    if (!bus)
        return;
    listen();
    isWanted_ = true;
    auto message = call("Notify");
    message << QStringLiteral("Fennik") << id_ << QStringLiteral("fennik") << title
            << text.toHtmlEscaped() // a server may take it for markup
            << QStringList{QStringLiteral("default"), QStringLiteral("Ukázat")}
            << QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("fennik")}}
            << byTheServer;
    auto* watcher = new QDBusPendingCallWatcher(bus->asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<uint> reply = *watcher;
        if (reply.isValid())
            id_ = reply.value();
        if (!isWanted_)
            withdraw();
        watcher->deleteLater();
    });
}

void Notifier::withdraw() {
    isWanted_ = false;
    if (const auto id = std::exchange(id_, 0); id != 0) {
        auto message = call("CloseNotification");
        message << id;
        if (auto bus = sessionBus())
            bus->send(message);
    }
}

void Notifier::takeToken(uint id, const QString& token) {
    if (id == id_)
        token_ = token;
}

void Notifier::takeAction(uint id, const QString&) {
    if (id == id_)
        emit clicked(std::exchange(token_, {}));
}

void Notifier::takeClosing(uint id, uint) {
    if (id == id_)
        id_ = 0;
}

} // namespace fennik::system
