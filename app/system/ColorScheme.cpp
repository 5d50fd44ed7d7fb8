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
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colors = QStringLiteral("color-scheme");
const QString contrast = QStringLiteral("contrast");
const QString stillness = QStringLiteral("reduced-motion");
/// Long before there was a common setting for it.
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString animations = QStringLiteral("enable-animations");

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
    for (const auto& key : {colors, contrast, stillness})
        ask(appearance, key);
    ask(gnome, animations);
}

void ColorScheme::ask(const QString& group, const QString& key) {
    auto question =
        QDBusMessage::createMethodCall(service, object, interface, QStringLiteral("Read"));
    question << group << key;
    auto* watcher = new QDBusPendingCallWatcher(sessionBus()->asyncCall(question), this);
    ++openQuestions_;
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, group, key] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            take(group, key, reply.value().variant());
        if (--openQuestions_ == 0)
            emit answered();
        watcher->deleteLater();
    });
}

void ColorScheme::settingChanged(const QString& group, const QString& key,
                                 const QDBusVariant& value) {
    take(group, key, value.variant());
}

void ColorScheme::take(const QString& group, const QString& key, const QVariant& value) {
    // The method wraps the value once more than the signal does.
    const auto plain =
        value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
    if (group == appearance && key == colors) {
        takeColors(plain);
    } else if (group == appearance && key == contrast) {
        emit highContrastPreferred(plain.toUInt() == 1);
    } else if (group == appearance && key == stillness) {
        wantsStillness_ = plain.toUInt() == 1;
        emit reducedMotionPreferred(wantsStillness_ || wantsNoAnimations_);
    } else if (group == gnome && key == animations) {
        wantsNoAnimations_ = !plain.toBool();
        emit reducedMotionPreferred(wantsStillness_ || wantsNoAnimations_);
    }
}

void ColorScheme::takeColors(const QVariant& value) {
    switch (value.toUInt()) {
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
