#include "core/listing/Format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace fennik::test {

TEST(FormatTest, bytesRoundBeforeTheyChooseUnitAndDecimals) {
    struct Case {
        std::int64_t count;
        std::string_view text;
    };
    for (const auto& [count, text] : {
             Case{0, "0\u00A0B"},
             Case{999, "999\u00A0B"},
             Case{1'234, "1,2\u00A0kB"},
             Case{9'949, "9,9\u00A0kB"},
             Case{9'950, "10\u00A0kB"},
             Case{18'400, "18\u00A0kB"},
             Case{999'499, "999\u00A0kB"},
             Case{999'500, "1\u00A0MB"},
             Case{999'950, "1\u00A0MB"},
             Case{1'124'803, "1,12\u00A0MB"},
             Case{2'100'000, "2,1\u00A0MB"},
             Case{9'996'000, "10\u00A0MB"},
             Case{64'940'000, "64,9\u00A0MB"},
             Case{999'600'000, "1\u00A0GB"},
             Case{38'200'000'000, "38,2\u00A0GB"},
             Case{412'000'000'000, "412\u00A0GB"},
             Case{std::numeric_limits<std::int64_t>::max(), "9,22\u00A0EB"},
             Case{std::numeric_limits<std::int64_t>::min(), "-9,22\u00A0EB"},
         })
        EXPECT_EQ(Format::bytes(count), text);
}

TEST(FormatTest, groupedPutsANarrowSpaceBetweenThousands) {
    EXPECT_EQ(Format::grouped(999), "999");
    EXPECT_EQ(Format::grouped(1'000), "1\u202F000");
    EXPECT_EQ(Format::grouped(1'234'567), "1\u202F234\u202F567");
    EXPECT_EQ(Format::grouped(-12'345), "-12\u202F345");
    EXPECT_EQ(Format::grouped(std::numeric_limits<std::int64_t>::min()),
              "-9\u202F223\u202F372\u202F036\u202F854\u202F775\u202F808");
}

TEST(FormatTest, durationRoundsToSecondsFirst) {
    EXPECT_EQ(Format::duration(-1), "–");
    EXPECT_EQ(Format::duration(std::nan("")), "–");
    EXPECT_EQ(Format::duration(std::numeric_limits<double>::infinity()), "–");
    EXPECT_EQ(Format::duration(0), "0:00");
    EXPECT_EQ(Format::duration(59.5), "1:00");
    EXPECT_EQ(Format::duration(75), "1:15");
    EXPECT_EQ(Format::duration(3599.4), "59:59");
    EXPECT_EQ(Format::duration(3599.5), "1:00:00");
    EXPECT_EQ(Format::duration(3725), "1:02:05");
    EXPECT_EQ(Format::duration(360'000), "100:00:00");
    EXPECT_EQ(Format::duration(1e300), "2500000000000000:00:00");
}

TEST(FormatTest, permissionsShowNineBitsAndWhetherItIsLikeAFolder) {
    EXPECT_EQ(Format::permissions(04755, Format::Folder::no), "-rwxr-xr-x");
    EXPECT_EQ(Format::permissions(01000, Format::Folder::yes), "d---------");
    EXPECT_EQ(Format::permissions(0124, Format::Folder::no), "---x-w-r--");
    EXPECT_EQ(Format::permissions(FileItem::parentEntry(FileUrl("/a")).view()), "drwxr-xr-x");
    const FileItemView linkToFolder{
        .name = "l", .kind = FileKind::symlink, .linksToDirectory = true, .mode = 0777};
    EXPECT_EQ(Format::permissions(linkToFolder), "drwxrwxrwx");
}

} // namespace fennik::test
