#include "app/model/TerminalScript.h"

#include <gtest/gtest.h>

namespace fennik::test {

TEST(TerminalScriptTest, quotesTheFolderForTheShellAndThenForTheScript) {
    const std::string before = "tell application \"Terminal\"\nactivate\ndo script \"cd ";
    ASSERT_EQ(before.size(), 51U);
    const std::string after = "\"\nend tell";
    const auto script = [](const char* path) {
        return app::TerminalScript::opening(FileUrl(path));
    };
    EXPECT_EQ(script("/Users/jana/Dokumenty"), before + "'/Users/jana/Dokumenty'" + after);
    EXPECT_EQ(script("/it's"), before + R"('/it'\\''s')" + after);
    EXPECT_EQ(script(R"(/a"b\c\")"), before + R"('/a\"b\\c\\\"')" + after);
    EXPECT_EQ(script("/$(rm)`x`; \xff\n"), before + "'/$(rm)`x`; \xff\n'" + after);
}

} // namespace fennik::test
