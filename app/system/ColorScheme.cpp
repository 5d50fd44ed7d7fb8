#include "app/system/ColorScheme.h"

#include "app/system/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QTimer>

namespace fennik::system {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString object = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString settingGroup = QStringLiteral("org.freedesktop.appearance");
const QString settingKey = QStringLiteral("color-scheme");

} // namespace

void ColorScheme::start() {
    auto bus = sessionBus();
    if (!bus) {
        QTimer::singleShot(0, this, &ColorScheme::answered);
        return;
    }
    // The slot is found by the names of its types.
    qRegisterMetaType<QDBusVariant>();
    bus->connect(service, object, interface, QStringLiteral("SettingChanged"), this,
                 SLOT(settingChanged(QString, QString, QDBusVariant)));
    auto question =
        QDBusMessage::createMethodCall(service, object, interface, QStringLiteral("Read"));
    question << settingGroup << settingKey;
    auto* watcher = new QDBusPendingCallWatcher(bus->asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            take(reply.value().variant());
        emit answered();
        watcher->deleteLater();
    });
}

void ColorScheme::settingChanged(const QString& group, const QString& key,
                                 const QDBusVariant& value) {
    if (group == settingGroup && key == settingKey)
        take(value.variant());
}

void ColorScheme::take(const QVariant& value) {
    // The method wraps the value once more than the signal does.
    const auto plain =
        value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
    switch (plain.toUInt()) {
    case 1:
        emit preferred(Preference::dark);
        break;
    case 2:
        emit preferred(Preference::light);
        break;
    default:
        emit preferred(Preference::none);
        break;
    }
}

} // namespace fennik::system
