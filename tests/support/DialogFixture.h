#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"
#include "app/ui/dialogs/DialogHost.h"

#include <QApplication>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace fennik::test {

/// An active window that shows cards, and the keys that reach them.
class DialogFixture : public testing::Test {
protected:
    explicit DialogFixture(const QSize& size = {760, 480}) {
        window.resize(size);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    static QWidget* focus() { return QApplication::focusWidget(); }
    static void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(focus(), Qt::Key(key), modifiers);
    }

    ui::Theme theme{ui::Appearance::light};
    ui::Icons icons{theme};
    QWidget window;
    ui::DialogHost host{theme, &window};
};

} // namespace fennik::test
