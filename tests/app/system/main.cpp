#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// The tests have a session bus to themselves, which stands in for that of the system as well, and
/// of the desktop at hand they see the types of files, but no applications.
int main(int argumentCount, char** arguments) {
    const QTemporaryDir data;
    QFile::link(QStringLiteral("/usr/share/mime"), data.filePath(QStringLiteral("mime")));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(data.path()));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
    const QGuiApplication application(argumentCount, arguments);
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
