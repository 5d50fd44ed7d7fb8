#include "app/ui/WindowStyle.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argumentCount, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("TZ", "Europe/Prague");
    const QApplication application(argumentCount, arguments);
    QApplication::setStyle(new fennik::ui::WindowStyle);
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
