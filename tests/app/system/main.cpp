#include <QGuiApplication>

#include <gtest/gtest.h>

/// The tests have a session bus to themselves, which stands in for that of the system as well.
int main(int argumentCount, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
    const QGuiApplication application(argumentCount, arguments);
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
