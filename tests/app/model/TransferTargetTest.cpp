#include "app/model/TransferTarget.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace fennik::test {

namespace {

using app::Outcome;
using Kind = Outcome::Kind;
using testing::ElementsAre;
using testing::HasSubstr;

class TransferTargetTest : public testing::Test {
protected:
    TransferTargetTest() {
        for (const auto* name : {"home/docs", "from/tree/deep", "to"})
            temp.folder(name);
        for (const auto* name : {"a.txt", "b.txt", "c.txt", "d.txt", "e.txt"})
            temp.file("from/" + std::string(name), "12345");
        temp.file("to/file.txt");
    }
    app::TransferTarget::Answer resolve(TransferKind kind, std::string text,
                                        const std::vector<std::string>& names = {"a.txt"},
                                        std::int64_t knownBytes = 0) {
        std::vector<FileUrl> sources;
        for (const auto& name : names)
            sources.emplace_back(temp.path("from/" + name));
        return app::TransferTarget::resolve(files, {.kind = kind,
                                                    .sources = std::move(sources),
                                                    .text = std::move(text),
                                                    .from = FileUrl(temp.path("from")),
                                                    .home = FileUrl(temp.path("home")),
                                                    .knownBytes = knownBytes});
    }
    app::TransferTarget::Answer copy(std::string text,
                                     const std::vector<std::string>& names = {"a.txt"}) {
        return resolve(TransferKind::copy, std::move(text), names);
    }
    app::TransferTarget::Answer move(std::string text,
                                     const std::vector<std::string>& names = {"a.txt"}) {
        return resolve(TransferKind::move, std::move(text), names);
    }
    /// The one destination, below the test's folder.
    std::string destination(const app::TransferTarget::Answer& answer) {
        EXPECT_EQ(answer.pairs.size(), 1U) << answer.outcome.sentence;
        return answer.pairs.empty()
                   ? ""
                   : answer.pairs.front().destination.path().substr(temp.url().path().size() + 1);
    }
    void expectRefused(const app::TransferTarget::Answer& answer, const std::string& sentence) {
        EXPECT_EQ(answer.outcome.kind, Kind::refused);
        EXPECT_THAT(answer.outcome.sentence, HasSubstr(sentence));
        EXPECT_TRUE(answer.pairs.empty());
    }

    TempFolder temp;
    FaultyFileSystem files;
};

} // namespace

TEST_F(TransferTargetTest, anExistingFolderTakesAllItemsUnderTheirNames) {
    const auto answer = copy(temp.path("to"), {"a.txt", "b.txt"});
    EXPECT_THAT(answer.pairs, ElementsAre(TransferPair{FileUrl(temp.path("from/a.txt")),
                                                       FileUrl(temp.path("to/a.txt"))},
                                          TransferPair{FileUrl(temp.path("from/b.txt")),
                                                       FileUrl(temp.path("to/b.txt"))}));
    EXPECT_EQ(answer.outcome.kind, Kind::existing);
    EXPECT_EQ(answer.outcome.sentence, "2 položky půjdou do existující složky „to“.");
    EXPECT_TRUE(answer.outcome.freeSpace);
    EXPECT_EQ(move(temp.path("to")).outcome.sentence, "1 položka půjde do existující složky „to“.");
    EXPECT_EQ(move(temp.path("to"), {"a.txt", "b.txt", "c.txt", "d.txt", "e.txt"}).outcome.sentence,
              "5 položek půjde do existující složky „to“.");
}

TEST_F(TransferTargetTest, pathsBeginWhereTheyAreSaidTo) {
    EXPECT_EQ(destination(copy("../to")), "to/a.txt");
    EXPECT_EQ(destination(copy("./tree/..//../to/")), "to/a.txt");
    EXPECT_EQ(destination(copy(" ~ ")), "home/a.txt");
    EXPECT_EQ(destination(copy("~/docs")), "home/docs/a.txt");
    EXPECT_EQ(destination(copy("file://" + temp.path("to"))), "to/a.txt");
    EXPECT_EQ(destination(copy("..")), "a.txt");
}

TEST_F(TransferTargetTest, theLastComponentIsANewNameForASingleItemWithoutASlash) {
    const auto copied = copy("../to/y.txt");
    EXPECT_EQ(destination(copied), "to/y.txt");
    EXPECT_EQ(copied.outcome.kind, Kind::renames);
    EXPECT_EQ(copied.outcome.sentence, "kopie pod tímto jménem: „y.txt“");
    EXPECT_EQ(move("y.txt").outcome.sentence, "přesun a přejmenování na „y.txt“");
    EXPECT_EQ(destination(copy("../to/file.txt")), "to/file.txt") << "a clash is asked about later";

    const auto deep = copy("../to/1/2/y.txt");
    EXPECT_EQ(destination(deep), "to/1/2/y.txt");
    EXPECT_EQ(deep.outcome.kind, Kind::creates);
    EXPECT_EQ(deep.outcome.sentence, "Složka „1/2“ se vytvoří, kopie pod tímto jménem: „y.txt“");
}

TEST_F(TransferTargetTest, aMissingFolderIsMadeWithItsLevels) {
    const auto one = copy("../to/1/2/");
    EXPECT_EQ(destination(one), "to/1/2/a.txt");
    EXPECT_EQ(one.outcome.kind, Kind::creates);
    EXPECT_EQ(one.outcome.sentence, "Složka „1/2“ se vytvoří a položka půjde do ní.");
    EXPECT_EQ(copy("../to/new", {"a.txt", "b.txt"}).outcome.sentence,
              "Složka „new“ se vytvoří a položky půjdou do ní.");
}

TEST_F(TransferTargetTest, whatNoPathCanBeIsRefused) {
    using namespace std::string_literals;
    for (const auto& text : {"a\nb"s, "a\0b"s})
        expectRefused(copy(text), "Cesta nesmí obsahovat");
    expectRefused(copy("file:///a%00b"), "nejde přečíst.");
    expectRefused(copy(" "), "Zadejte, kam.");
    expectRefused(copy(std::string(256, 'x')), "je příliš dlouhý.");
    expectRefused(copy("../to/" + std::string(256, 'x') + "/y/", {"a.txt", "b.txt"}),
                  "je příliš dlouhý.");
}

TEST_F(TransferTargetTest, whatIsNoFolderTakesNoItems) {
    expectRefused(copy("../to/file.txt", {"a.txt", "b.txt"}),
                  "„file.txt“ je soubor a položek je víc.");
    expectRefused(copy("../to/file.txt/"), "„file.txt“ není složka.");
    expectRefused(copy("../to/file.txt/below"), "„file.txt“ není složka.");
    temp.link("to/broken", "nowhere");
    expectRefused(copy("../to/broken/"), "„broken“ je odkaz, který nikam nevede.");
    EXPECT_EQ(destination(copy("../to/broken")), "to/broken") << "a clash is asked about later";
}

TEST_F(TransferTargetTest, nothingGoesIntoItselfHoweverThatIsSpelled) {
    expectRefused(copy("tree", {"tree"}), "„tree“ nejde kopírovat do sebe sama.");
    expectRefused(copy("tree/new/", {"a.txt", "tree"}), "„tree“ nejde kopírovat do sebe sama.");
    temp.link("to/shortcut", "../from/tree/deep");
    expectRefused(move("../to/shortcut/", {"tree"}), "„tree“ nejde přesunout do sebe sama.");
    EXPECT_EQ(destination(copy("tree-old", {"tree"})), "from/tree-old");
    temp.link("from/link", "tree");
    EXPECT_EQ(destination(copy("tree", {"link"})), "from/tree/link") << "the link, not its folder";
}

TEST_F(TransferTargetTest, theFolderThatTheItemsLieInGetsCopiesAndNothingToMove) {
    temp.link("to/back", "../from");
    for (const auto* text : {".", "../to/back"}) {
        EXPECT_EQ(copy(text, {"a.txt", "b.txt"}).outcome.kind, Kind::existing);
        EXPECT_THAT(copy(text, {"a.txt", "b.txt"}).outcome.sentence,
                    HasSubstr("přibudou kopie s čísly v názvech."));
        expectRefused(move(text, {"a.txt", "b.txt"}), "2 položky už v této složce jsou.");
    }
    expectRefused(move("a.txt"), "„a.txt“ už v této složce je.");
}

TEST_F(TransferTargetTest, aFolderThatCannotBeWrittenIsRefused) {
    EXPECT_TRUE(asOrdinaryUser([this] {
        return copy("../to").outcome.sentence ==
               "Do složky „to“ nejde nic uložit: nemáte do ní právo zapisovat.";
    }));
    files.fail(FaultyFileSystem::Call::checkWritable, EROFS);
    expectRefused(copy("../to/1/2/"), "„to“ nejde nic uložit: je na disku jen pro čtení.");
}

TEST_F(TransferTargetTest, whatAnotherVolumeHasNoRoomForIsRefused) {
    const std::string other = "/dev/shm";
    if (files.status(other, FollowLinks::yes).value().device ==
        files.status(temp.url().path(), FollowLinks::yes).value().device)
        GTEST_SKIP() << "the temporary folder is on the same volume";
    constexpr auto petabyte = std::int64_t{1'000'000'000'000'000};
    expectRefused(resolve(TransferKind::copy, other, {"a.txt"}, petabyte),
                  "V cíli je málo místa: potřeba 1");
    EXPECT_EQ(resolve(TransferKind::copy, "../to", {"a.txt"}, petabyte).outcome.kind,
              Kind::existing)
        << "a clone may need no room";
}

TEST_F(TransferTargetTest, aFolderThatCannotBeReachedIsRefused) {
    files.fail(FaultyFileSystem::Call::status, EIO);
    expectRefused(copy("../to"), "teď není dostupný: ");
}

} // namespace fennik::test
