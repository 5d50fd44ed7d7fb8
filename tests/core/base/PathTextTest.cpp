#include "core/base/PathText.h"
#include "core/base/Utf8.h"
#include "core/base/Uuid.h"

#include <gtest/gtest.h>

namespace fennik::test {

using namespace std::string_literals;

TEST(PathTextTest, everyPathAndNameComesBackByteForByteFromValidText) {
    std::string allBytes;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '/')
            allBytes += static_cast<char>(byte);
    for (const auto& name : {allBytes, "Účty 100%"s, "50%41"s, "\xFF%41"s, "a\nb"s, "file:"s}) {
        const auto path = "/domů/" + name;
        EXPECT_EQ(pathFromStored(storedPath(path)), path);
        EXPECT_EQ(nameFromStored(storedName(name)), name);
        EXPECT_TRUE(Utf8::isValid(storedPath(path) + storedName(name)));
    }
    EXPECT_EQ(storedPath("/a b/č"), "/a b/č");
    EXPECT_EQ(storedPath("/a b/\xE8"), "file:///a%20b/%E8");
    EXPECT_EQ(pathFromStored("/a/b//"), "/a/b");
    EXPECT_EQ(pathFromStored("/"), "/");
}

TEST(PathTextTest, whatMeansNoPathIsRefused) {
    for (const auto& text : {""s, "a/b"s, "~"s, "/a\0b"s, "file:"s, "file://"s, "file://a"s,
                             "file:a"s, "file:///a%"s, "file:///a%4"s, "file:///a%4g"s,
                             "file:///a%00"s, "file:///a%2Fb"s, "file://server/a"s, "http:///a"s})
        EXPECT_EQ(pathFromStored(text), std::nullopt) << text;
    for (const auto& text :
         {""s, "a/b"s, "/"s, "/a"s, "a\0b"s, "file:///"s, "file:///a/b"s, "file:///%00"s})
        EXPECT_EQ(nameFromStored(text), std::nullopt) << text;
}

TEST(PathTextTest, readsFileUrlsAsOtherProgramsWriteThem) {
    EXPECT_EQ(pathOfFileUrl("file:///a%20b/%c4%8D"), "/a b/č");
    EXPECT_EQ(pathOfFileUrl("FILE://LocalHost/a b/č/"), "/a b/č/");
    EXPECT_EQ(pathOfFileUrl("file:/a"), "/a");
    EXPECT_EQ(pathOfFileUrl("file:///a?b"), std::nullopt);
    EXPECT_EQ(pathOfFileUrl("file:///a#b"), std::nullopt);
    EXPECT_EQ(pathOfFileUrl("/a"), std::nullopt);
}

TEST(UuidTest, hasATextFormThatIsReadInEitherCase) {
    const auto known = Uuid::parse("F81D4FAE-7dec-11d0-a765-00a0c91e6bf6");
    ASSERT_TRUE(known);
    EXPECT_EQ(known->text(), "f81d4fae-7dec-11d0-a765-00a0c91e6bf6");
    const auto fresh = Uuid::random();
    EXPECT_EQ(Uuid::parse(fresh.text()), fresh);
    for (const auto* text :
         {"", "f81d4fae7dec11d0a76500a0c91e6bf6", "f81d4fae-7dec-11d0-a765-00a0c91e6bf",
          "f81d4fae-7dec-11d0-a765-00a0c9", "f81d4fae-7dec-11d0-a765-00a0c91e6bfg",
          "f81d4fae-7dec-11d0-a765-00a0c91e6bf67", "{f81d4fae-7dec-11d0-a765-00a0c91e6b}"})
        EXPECT_EQ(Uuid::parse(text), std::nullopt) << text;
}

} // namespace fennik::test
