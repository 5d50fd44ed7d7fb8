#include "app/ui/Icons.h"
#include "app/ui/ActionIcons.h"
#include "app/ui/Text.h"

#include <gtest/gtest.h>

namespace fennik::test {

namespace {

using namespace ui;

/// How many pixels of the icon are not empty.
int inkOf(const QPixmap& pixmap) {
    const auto image = pixmap.toImage();
    int ink = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ink += image.pixelColor(x, y).alpha() > 0 ? 1 : 0;
    }
    return ink;
}

class IconsTest : public testing::Test {
protected:
    Theme theme{Appearance::light};
    Icons icons{theme};
    QColor color{theme.tokens().markSolid};
};

} // namespace

TEST_F(IconsTest, everySymbolOfAnActionIsDrawn) {
    for (const auto& [symbol, icon] : ActionIcons::all()) {
        EXPECT_EQ(ActionIcons::iconOf(symbol), fromUtf8(icon));
        EXPECT_GT(inkOf(icons.line(fromUtf8(icon), 16, color, 1)), 16) << symbol;
    }
    EXPECT_EQ(ActionIcons::iconOf("star.of.nothing"), QString());
    EXPECT_EQ(inkOf(icons.line(QStringLiteral("no-such-file"), 16, color, 1)), 0);
}

TEST_F(IconsTest, aFilledIconIsTheSameShapeWithItsInside) {
    const auto star = QStringLiteral("star");
    const auto middle = [&](IconFill fill) {
        return icons.line(star, 16, color, 1, fill).toImage().pixelColor(8, 8);
    };
    EXPECT_EQ(middle(IconFill::solid), color);
    EXPECT_EQ(middle(IconFill::none).alpha(), 0);
}

} // namespace fennik::test
