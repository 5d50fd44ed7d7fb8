#pragma once

#include <QDBusVariant>
#include <QObject>

namespace fennik::system {

/// Whether the desktop asks for dark or light windows, by the settings portal of the desktop
/// (org.freedesktop.portal.Settings). Nothing here waits: the answer comes as a signal.
class ColorScheme final : public QObject {
    Q_OBJECT

public:
    enum class Preference { none, dark, light };
    Q_ENUM(Preference)

    using QObject::QObject;

    /// Asks once and listens from then on. Without a session bus, `answered` comes at once.
    void start();

signals:
    /// The desktop says, at first or later, what it prefers.
    void preferred(fennik::system::ColorScheme::Preference preference);
    /// The first question has its answer, whether or not there is a preference.
    void answered();

private slots:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void take(const QVariant& value);
};

} // namespace fennik::system
