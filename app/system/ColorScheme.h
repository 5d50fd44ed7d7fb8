#pragma once

#include <QDBusVariant>
#include <QObject>

namespace fennik::system {

/// How the desktop wants windows to look: dark or light, in high contrast, without motion. By the
/// settings portal of the desktop (org.freedesktop.portal.Settings). Nothing here waits: the
/// answers come as signals.
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
    /// The same for contrast and motion. What never was asked for is not told.
    void highContrastPreferred(bool isHigh);
    void reducedMotionPreferred(bool isReduced);
    /// All first questions have their answers, whether or not there are preferences.
    void answered();

private slots:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void ask(const QString& group, const QString& key);
    void take(const QString& group, const QString& key, const QVariant& value);
    void takeColors(const QVariant& value);

    int openQuestions_ = 0;
    bool wantsStillness_ = false;    ///< of all desktops that speak for themselves
    bool wantsNoAnimations_ = false; ///< as GNOME says it
};

} // namespace fennik::system
