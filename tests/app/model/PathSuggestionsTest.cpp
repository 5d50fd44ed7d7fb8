#include "app/model/PathSuggestions.h"

#include "tests/support/PanelFixture.h"

#include <filesystem>

namespace fennik::test {

namespace {

using namespace std::chrono_literals;
using app::PathSuggestions;
using testing::ElementsAre;
using testing::IsEmpty;

class PathSuggestionsTest : public PanelFixture {
protected:
    PathSuggestionsTest() {
        for (const auto* name : {"alfa", "beta", ".skrytá"})
            temp.folder(name);
    }
    void type(const std::string& text) {
        suggestions.ask(text, temp.url(), PathCompleter::IncludeHidden::no);
        timers.pass(30ms);
    }

    int changes = 0;
    PathSuggestions suggestions{services(), FileUrl(temp.path("missing home")),
                                [this] { ++changes; }};
};

} // namespace

TEST_F(PathSuggestionsTest, onlyTheAnswerToTheNewestTextCounts) {
    type("a");
    type("b");
    disk.runLast(); // the answer to "b" comes first …
    main.runAll();
    EXPECT_THAT(suggestions.found(), ElementsAre(temp.path("beta")));
    settle(); // … and the one to "a" last.
    EXPECT_THAT(suggestions.found(), ElementsAre(temp.path("beta")));
    EXPECT_EQ(changes, 1);

    type("a");
    disk.runAll();
    suggestions.ask("al", temp.url(), PathCompleter::IncludeHidden::no);
    main.runAll();
    EXPECT_EQ(changes, 1) << "the next key came before the answer";
    suggestions.clear();
    timers.pass(1s);
    EXPECT_TRUE(disk.isIdle());
    EXPECT_THAT(suggestions.found(), IsEmpty());
}

TEST_F(PathSuggestionsTest, fastKeysAskTheDiskOnce) {
    for (const auto* text : {"a", "al", "alf"})
        suggestions.ask(text, temp.url(), PathCompleter::IncludeHidden::no);
    timers.pass(29ms);
    EXPECT_TRUE(disk.isIdle());
    timers.pass(1ms);
    EXPECT_EQ(disk.count(), 1U);
}

TEST_F(PathSuggestionsTest, aDiskThatDoesNotAnswerHoldsUpNobody) {
    disk.stick(temp.path("dead/x"));
    type("dead/x");
    type("al");
    settle();
    EXPECT_THAT(suggestions.found(), ElementsAre(temp.path("alfa")));
    disk.stick("");
    settle();
    EXPECT_THAT(suggestions.found(), ElementsAre(temp.path("alfa")));
}

TEST_F(PathSuggestionsTest, textThatIsNoPathHasNoSuggestions) {
    using namespace std::string_literals;
    type("a");
    settle();
    for (const auto& text :
         {"\0"s, "al\0"s, "a\nb/"s, "file://"s, "file:///%"s, "~/"s, "~nobody/x"s,
          "/"s + std::string(10'000, 'a'), std::string(10'000, '/') + "nothing"}) {
        type(text);
        settle();
        EXPECT_THAT(suggestions.found(), IsEmpty()) << text.substr(0, 20);
    }
}

} // namespace fennik::test
