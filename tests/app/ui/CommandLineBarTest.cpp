#include "app/ui/CommandLineBar.h"

#include "app/ui/Icons.h"

#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace fennik::test {

using namespace fennik::ui;

TEST(CommandLineBarTest, givesItsRoomToTheRowsWhereThereIsLittle) {
    const Theme theme(Appearance::light);
    Icons icons(theme);
    QWidget window;
    QLineEdit elsewhere(&window);
    CommandLineBar bar(theme, icons, &window);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    elsewhere.setFocus();
    EXPECT_TRUE(bar.isVisible());
    bar.setAlwaysShown(false);
    EXPECT_FALSE(bar.isVisible());

    bar.takeFocus();
    EXPECT_TRUE(bar.isVisible());
    EXPECT_TRUE(bar.isAncestorOf(window.focusWidget()));
    bar.setText(QStringLiteral("ls"));
    elsewhere.setFocus();
    EXPECT_TRUE(bar.isVisible()) << "what was typed is not hidden";
    bar.setText({});
    EXPECT_FALSE(bar.isVisible());

    bar.takeFocus();
    elsewhere.setFocus();
    EXPECT_FALSE(bar.isVisible());
    bar.setAlwaysShown(true);
    EXPECT_TRUE(bar.isVisible());
}

} // namespace fennik::test
