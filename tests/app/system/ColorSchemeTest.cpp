#include "app/system/ColorScheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace fennik::test {

namespace {

using system::ColorScheme;
using Preference = ColorScheme::Preference;

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString object = QStringLiteral("/org/freedesktop/portal/desktop");

/// A desktop's settings portal, on a connection of its own to the session bus.
class Portal final : public QDBusVirtualObject {
public:
    explicit Portal(uint answer) : answer_(answer) {
        bus_.registerVirtualObject(object, this);
        bus_.registerService(service);
    }
    ~Portal() override { bus_.unregisterService(service); }

    void announce(uint value) {
        announce(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"),
                 value);
    }
    void announce(const QString& group, const QString& key, const QVariant& value) {
        auto signal =
            QDBusMessage::createSignal(object, QStringLiteral("org.freedesktop.portal.Settings"),
                                       QStringLiteral("SettingChanged"));
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        bus_.send(signal);
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != QStringLiteral("Read"))
            return false;
        // The portal wraps the value twice.
        const QDBusVariant inner(answer_);
        connection.send(
            message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
        return true;
    }

private:
    uint answer_;
    QDBusConnection bus_ =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
};

struct Listener {
    ColorScheme scheme;
    QSignalSpy preferred{&scheme, &ColorScheme::preferred};
    QSignalSpy answered{&scheme, &ColorScheme::answered};

    Preference last() const { return preferred.last().first().value<Preference>(); }
};

} // namespace

TEST(ColorSchemeTest, followsThePortalFromTheFirstAnswerOn) {
    Portal portal(1);
    Listener listener;
    listener.scheme.start();
    ASSERT_TRUE(listener.answered.wait());
    ASSERT_EQ(listener.preferred.size(), 1);
    EXPECT_EQ(listener.last(), Preference::dark);

    portal.announce(2);
    ASSERT_TRUE(listener.preferred.wait());
    EXPECT_EQ(listener.last(), Preference::light);
    portal.announce(0);
    ASSERT_TRUE(listener.preferred.wait());
    EXPECT_EQ(listener.last(), Preference::none);
}

TEST(ColorSchemeTest, eitherWayOfAskingForStillnessCountsAndSoDoesContrast) {
    Portal portal(0); // which means that GNOME's animations are off
    Listener listener;
    QSignalSpy stillness(&listener.scheme, &ColorScheme::reducedMotionPreferred);
    QSignalSpy contrast(&listener.scheme, &ColorScheme::highContrastPreferred);
    listener.scheme.start();
    ASSERT_TRUE(listener.answered.wait());
    const auto last = [](QSignalSpy& spy) { return spy.last().first().toBool(); };
    EXPECT_TRUE(last(stillness));
    EXPECT_FALSE(last(contrast));

    const auto common = QStringLiteral("org.freedesktop.appearance");
    portal.announce(common, QStringLiteral("reduced-motion"), 1U);
    ASSERT_TRUE(stillness.wait());
    portal.announce(QStringLiteral("org.gnome.desktop.interface"),
                    QStringLiteral("enable-animations"), true);
    ASSERT_TRUE(stillness.wait());
    EXPECT_TRUE(last(stillness));
    portal.announce(common, QStringLiteral("reduced-motion"), 0U);
    ASSERT_TRUE(stillness.wait());
    EXPECT_FALSE(last(stillness));
    portal.announce(common, QStringLiteral("contrast"), 1U);
    ASSERT_TRUE(contrast.wait());
    EXPECT_TRUE(last(contrast));
}

TEST(ColorSchemeTest, aDesktopWithoutAPortalAnswersToo) {
    Listener listener;
    listener.scheme.start();
    ASSERT_TRUE(listener.answered.wait());
    EXPECT_EQ(listener.preferred.size(), 0);
}

} // namespace fennik::test
