#include "app/main/Options.h"

#include <gtest/gtest.h>

#include <vector>

namespace fennik::test {

namespace {

using app::Options;

std::expected<Options, std::string> read(const std::vector<const char*>& arguments) {
    return app::readOptions(arguments);
}

} // namespace

TEST(OptionsTest, foldersAreTakenByteForByte) {
    const auto options = read({"\xFF", "--", "--help"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->left, "\xFF");
    EXPECT_EQ(options->right, "--help");
    EXPECT_EQ(options->task, Options::Task::window);
    EXPECT_EQ(read({"-"})->left, "-");
}

TEST(OptionsTest, valuesStandBehindABlankOrAnEqualsSign) {
    const auto options =
        read({"--screenshot", "a.png", "--size=760x480", "--appearance", "dark", "--verbose"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->task, Options::Task::screenshot);
    EXPECT_EQ(options->screenshotFile, "a.png");
    EXPECT_EQ(options->width, 760);
    EXPECT_EQ(options->height, 480);
    EXPECT_EQ(options->look, app::Look::dark);
    EXPECT_TRUE(options->verbose);
}

TEST(OptionsTest, theLookCanBeGiven) {
    const auto options = read({"--tour", "x", "--text-scale=150", "--high-contrast"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->task, Options::Task::tour);
    EXPECT_EQ(options->tourFolder, "x");
    EXPECT_EQ(options->textScale, 1.5);
    EXPECT_TRUE(options->highContrast);
    EXPECT_FALSE(options->reducedMotion);
    for (const auto* percent : {"", "84", "201", "100%"})
        EXPECT_FALSE(read({"--text-scale", percent})) << percent;
}

TEST(OptionsTest, whatMakesNoSenseIsSaidInASentence) {
    EXPECT_EQ(read({"--nic"}).error(), "Neznámá volba „--nic“. Všechny ukáže --help.");
    EXPECT_EQ(read({"--screenshot"}).error(), "Za volbou --screenshot chybí hodnota.");
    for (const auto* size : {"x", "0x1", "1x", "10x10y", "99999x1", "-1x5"})
        EXPECT_FALSE(read({"--size", size})) << size;
    EXPECT_FALSE(read({"--appearance", "blue"}));
    EXPECT_FALSE(read({"a", "b", "c"}));
}

TEST(OptionsTest, pathsBecomeAbsolute) {
    EXPECT_EQ(app::absolutePath("../x/./y", "/home/jana"), "/home/x/y");
    EXPECT_EQ(app::absolutePath("/a/", "/home"), "/a");
    EXPECT_EQ(app::absolutePath(".", "/"), "/");
}

} // namespace fennik::test
