#include "tests/core/archives/ExtractionFixture.h"

#include "tests/support/SystemCallFaults.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <sys/stat.h>

namespace fennik::test {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using File = ScriptedEntry;

struct stat statusOf(const std::string& path) {
    struct stat status{};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status;
}

} // namespace

class ArchiveExtractorTest : public ExtractionFixture {};

TEST_F(ArchiveExtractorTest, takesEverythingAsTheArchiveHasIt) {
    archives.entries = {File::folder("a", 0555),        File::file("a/one", "first"),
                        File::link("a/link", "one"),    File::hardLink("a/again", "a/one"),
                        File::file("implicit/two", ""), File::file("set", "id")};
    archives.entries.back().met.entry.mode = 07755;
    EXPECT_EQ(extract(), PairOutcome::done);
    EXPECT_THAT(context.errors, IsEmpty());
    EXPECT_EQ(target(), (Tree{{"a", "folder/"},
                              {"a/one", "first"},
                              {"a/again", "first"},
                              {"a/link", "-> one"},
                              {"implicit", "folder/"},
                              {"implicit/two", ""},
                              {"set", "id"}}));
    const auto file = statusOf(temp.path("target/a/one"));
    EXPECT_EQ(file.st_mode & 07777U, 0640U);
    EXPECT_EQ(file.st_mtim.tv_sec, 1'600'000'000);
    EXPECT_EQ(file.st_mtim.tv_nsec, 123'456'789);
    EXPECT_EQ(file.st_ino, statusOf(temp.path("target/a/again")).st_ino);
    const auto folder = statusOf(temp.path("target/a"));
    EXPECT_EQ(folder.st_mode & 07777U, 0555U);
    EXPECT_EQ(folder.st_mtim.tv_sec, 1'500'000'000);
    EXPECT_EQ(statusOf(temp.path("target/a/link")).st_mtim.tv_sec, 1'400'000'000);
    EXPECT_EQ(statusOf(temp.path("target/set")).st_mode & 07777U, 0755U);
    EXPECT_EQ(context.doneBytes, 7);
    EXPECT_EQ(context.totalBytes, 7);
    EXPECT_EQ(context.doneFiles, 5);
    EXPECT_EQ(context.totalFiles, 5);
    EXPECT_THAT(undo(), IsEmpty());
    EXPECT_THAT(target(), IsEmpty());
}

TEST_F(ArchiveExtractorTest, closesFoldersToTheirOwnerOnlyAtTheEnd) {
    // More than are kept open.
    for (int i = 0; i < 150; ++i) {
        const auto folder = "f" + std::to_string(i);
        archives.entries.push_back(File::folder(folder, 0));
        archives.entries.push_back(File::folder(folder + "/closed", 0500));
        archives.entries.push_back(File::file(folder + "/closed/a", "content"));
    }
    archives.entries.push_back(File::file("f0/closed/b", "content"));
    archives.entries.push_back(File::link("f0/link", "closed"));
    chmod(temp.path("target").c_str(), 0777);
    chmod(temp.url().path().c_str(), 0755);
    EXPECT_TRUE(asOrdinaryUser([this] {
        EXPECT_EQ(extract(), PairOutcome::done);
        EXPECT_THAT(context.errors, IsEmpty());
        return !HasFailure();
    }));
    EXPECT_EQ(target().size(), 452U);
    for (const auto* name : {"target/f0", "target/f149"}) {
        EXPECT_EQ(statusOf(temp.path(name)).st_mode & 07777U, 0U);
        EXPECT_EQ(statusOf(temp.path(name) + "/closed").st_mode & 07777U, 0500U);
        EXPECT_EQ(statusOf(temp.path(name)).st_mtim.tv_sec, 1'500'000'000);
    }
}

TEST_F(ArchiveExtractorTest, refusesWhatLeadsOutOfTheTarget) {
    archives.entries = {File::file("../outside/evil", "x"), File::file("a/../../outside/b", "x"),
                        File::file("/etc/evil", "x"),       File::file(".", "x"),
                        File::folder("../outside/folder"),  File::link("..", "outside")};
    archives.entries.push_back(File::file(std::string("a\0b", 3), "x"));
    archives.entries.push_back(File::file("good", "whole"));
    for (auto& entry : archives.entries)
        entry.met.isRefused = entry.met.entry.path == "/etc/evil";
    // The index is made by who checks paths; the data may come from who does not.
    ScriptedArchives seen;
    seen.entries = {File::file("good", "whole")};
    seen.facts = archives.facts;
    std::swap(seen.entries, archives.entries);
    look();
    std::swap(seen.entries, archives.entries);
    EXPECT_EQ(extract(), PairOutcome::failed);
    EXPECT_EQ(context.errors.size(), 7U);
    EXPECT_THAT(context.errors, testing::Each(HasSubstr("vede mimo archiv.")));
    EXPECT_EQ(target(), (Tree{{"good", "whole"}}));
}

TEST_F(ArchiveExtractorTest, writesThroughNoLinkOfTheArchive) {
    archives.entries = {File::link("d", temp.path("outside")),
                        File::file("d/evil", "new"),
                        File::link("f", temp.path("outside/sentinel")),
                        File::file("f", "new"),
                        File::hardLink("h", "d/sentinel"),
                        File::hardLink("g", "f")};
    context.choice = ConflictChoice::skip;
    EXPECT_EQ(extract(), PairOutcome::failed);
    EXPECT_EQ(target(), (Tree{{"d", "folder/"}, {"d/evil", "new"}, {"f", "new"}, {"g", "new"}}));
    ASSERT_EQ(context.errors.size(), 1U);
    EXPECT_THAT(context.errors.front(), HasSubstr("„h“ nejde rozbalit: je to další jméno"));
}

TEST_F(ArchiveExtractorTest, writesThroughNoLinkOfTheTarget) {
    temp.link("target/d", temp.path("outside"));
    temp.link("target/f", temp.path("outside/sentinel"));
    archives.entries = {File::file("d/evil", "new"), File::file("f", "new")};
    context.choice = ConflictChoice::overwrite;
    EXPECT_EQ(extract(), PairOutcome::done);
    EXPECT_TRUE(context.conflicts.front().typeMismatch);
    EXPECT_EQ(target(), (Tree{{"d", "folder/"}, {"d/evil", "new"}, {"f", "new"}}));
    EXPECT_THAT(undo(), IsEmpty());
    EXPECT_EQ(target(), (Tree{{"d", "-> " + temp.path("outside")},
                              {"f", "-> " + temp.path("outside/sentinel")}}));
}

TEST_F(ArchiveExtractorTest, givesNoFurtherNameToAFileThatSomebodyHasPutInPlace) {
    archives.entries = {File::file("a", "own"), File::hardLink("b", "a")};
    context.onName = [&](const std::string& name) {
        if (name != "b")
            return;
        fs::remove(temp.path("target/a"));
        fs::create_hard_link(temp.path("outside/sentinel"), temp.path("target/a"));
    };
    EXPECT_EQ(extract(), PairOutcome::failed);
    EXPECT_FALSE(target().contains("b"));
}

TEST_F(ArchiveExtractorTest, copiesWhatCanHaveNoFurtherName) {
    archives.entries = {File::file("a", "own"), File::hardLink("b", "a")};
    const FaultInjection fault({.calls = {SystemCall::linkat}, .errorCode = EPERM});
    EXPECT_EQ(extract(), PairOutcome::done);
    EXPECT_TRUE(fault.struck());
    EXPECT_EQ(target(), (Tree{{"a", "own"}, {"b", "own"}}));
}

TEST_F(ArchiveExtractorTest, keepsNothingOfAFileThatIsNotWhatTheArchiveSays) {
    auto more = File::file("more", "content");
    more.met.entry.size = 5;
    auto less = File::file("less", "content");
    less.met.entry.size = 9;
    auto broken = File::file("broken", "content");
    broken.error = {ArchiveError::Case::damaged, "bad checksum"};
    auto back = File::file("back", "content");
    back.blocks.emplace_back(1, "z");
    auto special = File::file("pipe", "");
    special.met.isSpecial = true;
    archives.entries = {more, less, broken, back, special, File::file("good", "whole")};
    write("target/less", "old");
    context.choice = ConflictChoice::overwrite;
    EXPECT_EQ(extract(), PairOutcome::failed);
    EXPECT_THAT(context.errors,
                ElementsAre("„more“: v archivu je víc dat, než kolik uvádí.",
                            "„less“: data v archivu jsou neúplná.",
                            "„broken“ nejde rozbalit: bad checksum", HasSubstr("„back“: "),
                            HasSubstr("„pipe“ nejde rozbalit: není to")));
    EXPECT_EQ(target(), (Tree{{"less", "old"}, {"good", "whole"}}));
    EXPECT_THAT(trashed(), IsEmpty());
    EXPECT_THAT(context.steps,
                ElementsAre(UndoStep(UndoSteps::Created{FileUrl(temp.path("target/good"))})));
}

TEST_F(ArchiveExtractorTest, takesFilesOfUnknownLengthAndWithHoles) {
    auto unknown = File::file("unknown", "content");
    unknown.met.declaresSize = false;
    unknown.met.entry.size = 0;
    auto holes = File::file("holes", "");
    constexpr std::int64_t size = 1LL << 30;
    holes.met.entry.size = size;
    holes.blocks = {{4096, "x"}};
    holes.end = size;
    archives.entries = {unknown, holes};
    EXPECT_EQ(extract(), PairOutcome::done);
    EXPECT_EQ(context.totalBytes, size + 7);
    EXPECT_EQ(context.doneBytes, size + 7);
    const auto status = statusOf(temp.path("target/holes"));
    EXPECT_EQ(status.st_size, size);
    EXPECT_LT(status.st_blocks, 100);
}

TEST_F(ArchiveExtractorTest, settlesClashesAsTheUserSays) {
    archives.entries = {File::file("a.txt", "new"), File::file("d/b", "new")};
    const auto run = [&](ConflictChoice choice) {
        fs::remove_all(temp.path("target"));
        write("target/a.txt", "old");
        write("target/d/b", "old");
        write("target/d/mine", "old");
        context.conflicts.clear();
        context.steps.clear();
        context.choice = choice;
        context.cancelled = false;
        return extract();
    };
    const Tree old{{"a.txt", "old"}, {"d", "folder/"}, {"d/b", "old"}, {"d/mine", "old"}};
    const auto with = [&](const Tree& changes) {
        auto result = changes;
        result.insert(old.begin(), old.end());
        return result;
    };

    EXPECT_EQ(run(ConflictChoice::skip), PairOutcome::skipped);
    EXPECT_EQ(target(), old);
    EXPECT_EQ(context.skipped, 2);
    ASSERT_EQ(context.conflicts.size(), 2U);
    EXPECT_EQ(context.conflicts.front(),
              (Conflict{.source = FileUrl(temp.path("x.tar/a.txt")),
                        .destination = FileUrl(temp.path("target/a.txt")),
                        .sourceSize = 3,
                        .sourceDate = {1'600'000'000, 123'456'789},
                        .destinationSize = 3,
                        .destinationDate = context.conflicts.front().destinationDate,
                        .typeMismatch = false}));

    run(ConflictChoice::overwriteOlder); // those that are there are newer
    EXPECT_EQ(target(), old);

    EXPECT_EQ(run(ConflictChoice::rename), PairOutcome::done);
    EXPECT_EQ(target(), with({{"a 2.txt", "new"}, {"d/b 2", "new"}}));

    EXPECT_EQ(run(ConflictChoice::cancel), PairOutcome::pending);
    EXPECT_EQ(target(), old);
    EXPECT_TRUE(context.cancelled);

    EXPECT_EQ(run(ConflictChoice::overwrite), PairOutcome::done);
    EXPECT_EQ(target(), with({{"a.txt", "new"}, {"d/b", "new"}}));
    EXPECT_THAT(undo(), IsEmpty());
    EXPECT_EQ(target(), old);
}

TEST_F(ArchiveExtractorTest, skipsAllBelowASkippedFolderAsOne) {
    archives.entries = {File::file("d/a", "12345"), File::file("d/sub/b", "1"),
                        File::link("d/link", "a"), File::file("e", "whole")};
    write("target/d", "a file");
    context.choice = ConflictChoice::skip;
    EXPECT_EQ(extract(), PairOutcome::skipped);
    EXPECT_EQ(context.conflicts.size(), 1U);
    EXPECT_EQ(target(), (Tree{{"d", "a file"}, {"e", "whole"}}));
    EXPECT_EQ(context.skipped, 1);
    EXPECT_EQ(context.totalFiles, 2);
    EXPECT_EQ(context.doneFiles, 1);
    EXPECT_EQ(context.doneBytes, context.totalBytes);
}

TEST_F(ArchiveExtractorTest, asksAboutNamesThatTheArchiveHasTwice) {
    archives.entries = {File::file("a", "first"), File::file("a", "second"),
                        File::folder("b"),        File::file("b/x", "in the folder"),
                        File::file("b", "file"),  File::file("b/y", "later")};
    context.choice = ConflictChoice::overwrite;
    EXPECT_EQ(extract(), PairOutcome::done);
    EXPECT_EQ(target(), (Tree{{"a", "second"}, {"b", "folder/"}, {"b/y", "later"}}));
    EXPECT_THAT(undo(), IsEmpty());
    EXPECT_THAT(target(), IsEmpty());
}

TEST_F(ArchiveExtractorTest, doesNotReplaceTheArchiveOrWhatHoldsIt) {
    extraction.archive = FileUrl(temp.path("target/in/x.tar"));
    write("target/in/x.tar", "the archive");
    archives.entries = {File::file("in/x.tar", "new"), File::file("in", "new")};
    context.choice = ConflictChoice::overwrite;
    EXPECT_EQ(extract(), PairOutcome::failed);
    EXPECT_THAT(context.errors, ElementsAre("„x.tar“ nejde přepsat: právě se rozbaluje.",
                                            "„in“ nejde přepsat: obsahuje rozbalovaný archiv."));
    EXPECT_EQ(target(), (Tree{{"in", "folder/"}, {"in/x.tar", "the archive"}}));
}

TEST_F(ArchiveExtractorTest, asksForThePasswordUntilItIsRight) {
    archives.facts.formatFamily = ScriptedArchives::zipFamily;
    archives.password = "right";
    auto secret = File::file("secret", "content");
    secret.met.entry.encrypted = true;
    archives.entries = {File::file("open", "whole"), secret, File::file("last", "whole")};
    passwords = {"wrong", "right"};
    EXPECT_EQ(extract(), PairOutcome::done);
    EXPECT_THAT(asked, ElementsAre(false, true));
    EXPECT_EQ(target(), (Tree{{"open", "whole"}, {"secret", "content"}, {"last", "whole"}}));
    EXPECT_THAT(context.conflicts, IsEmpty());
}

TEST_F(ArchiveExtractorTest, endsQuietlyWithoutAPassword) {
    archives.facts.formatFamily = ScriptedArchives::zipFamily;
    archives.password = "right";
    auto secret = File::file("secret", "content");
    secret.met.entry.encrypted = true;
    archives.entries = {secret};
    EXPECT_EQ(extract(), PairOutcome::pending);
    EXPECT_TRUE(context.cancelled);
    EXPECT_THAT(context.errors, IsEmpty());
    EXPECT_THAT(target(), IsEmpty());
}

TEST_F(ArchiveExtractorTest, saysWhichEncryptionItDoesNotKnow) {
    archives.facts.formatFamily = ScriptedArchives::sevenZipFamily;
    extraction.archive = FileUrl(temp.path("x.7z"));
    archives.entries = {File::file("a", "content")};
    archives.entries.front().met.entry.encrypted = true;
    EXPECT_EQ(extract(), PairOutcome::failed);
    EXPECT_THAT(asked, IsEmpty());
    EXPECT_THAT(context.errors,
                ElementsAre("Šifrovaný archiv 7z Fennik neumí rozbalit (umí jen šifrovaný ZIP)."));
    EXPECT_THAT(target(), IsEmpty());
}

TEST_F(ArchiveExtractorTest, takesNothingOfAnotherArchiveThanTheOneThatWasSeen) {
    archives.entries = {File::file("a", "content")};
    look();
    archives.facts.fileModified.nanoseconds = 1;
    fs::remove(temp.path("target"));
    EXPECT_EQ(extract(), PairOutcome::failed);
    EXPECT_THAT(context.errors,
                ElementsAre("Archiv „x.tar“ se mezitím změnil, nic se z něj nerozbalilo."));
    EXPECT_FALSE(fs::exists(temp.path("target")));
}

TEST_F(ArchiveExtractorTest, keepsWhatCameWholeOfADamagedArchive) {
    auto half = File::file("half", "content");
    half.error = {ArchiveError::Case::damaged, "truncated"};
    archives.entries = {File::file("whole", "content"), File::link("link", "whole"), half};
    archives.error = {ArchiveError::Case::damaged, "truncated"};
    EXPECT_EQ(extract(), PairOutcome::failed);
    EXPECT_EQ(target(), (Tree{{"whole", "content"}, {"link", "-> whole"}}));
    EXPECT_THAT(context.errors, ElementsAre("„half“ nejde rozbalit: truncated",
                                            "Archiv je poškozený nebo nečitelný: truncated"));
}

TEST_F(ArchiveExtractorTest, leavesOutTheFolderThatHoldsTheSelection) {
    archives.entries = {File::file("a/b/one", "1"), File::file("a/b/c/two", "2"),
                        File::file("a/bb", "no"), File::file("a/d", "4"),
                        File::file("a/evil", "x")};
    archives.entries.back().met.isRefused = true;
    look();
    extraction.selection = {{"a/b", "a/d", "a/b/c", "a/missing"}};
    extraction.target = FileUrl(temp.path("target/new/deep"));
    extract();
    EXPECT_THAT(outcomes, ElementsAre(PairOutcome::done, PairOutcome::done, PairOutcome::done,
                                      PairOutcome::failed));
    EXPECT_THAT(context.errors, ElementsAre("„a/missing“ v archivu není."));
    EXPECT_EQ(
        diskTree(temp.path("target/new/deep")),
        (Tree{{"b", "folder/"}, {"b/one", "1"}, {"b/c", "folder/"}, {"b/c/two", "2"}, {"d", "4"}}));
    EXPECT_EQ(context.totalBytes, 3);
    EXPECT_EQ(context.totalFiles, 3);
    EXPECT_THAT(undo(), IsEmpty());
    EXPECT_THAT(target(), IsEmpty());
}

TEST_F(ArchiveExtractorTest, saysWhichOfTheSelectedItemsFailed) {
    auto evil = File::file("bad/evil", "x");
    evil.met.isRefused = true;
    archives.entries = {File::file("good/one", "1"), File::file("bad/two", "2"), evil};
    extraction.selection = {{"good", "bad"}};
    extract();
    EXPECT_THAT(outcomes, ElementsAre(PairOutcome::done, PairOutcome::failed));
    // What ends the archive may have hit them all.
    archives.error = {ArchiveError::Case::damaged, "truncated"};
    extraction.target = FileUrl(temp.path("target/second"));
    extract();
    EXPECT_THAT(outcomes, ElementsAre(PairOutcome::failed, PairOutcome::failed));
}

TEST_F(ArchiveExtractorTest, takesTheDataOfASelectedLinkFromTheEntryItNames) {
    archives.entries = {File::hardLink("d/a", "first"), File::file("first", "content"),
                        File::hardLink("d/b", "first")};
    look();
    extraction.selection = {{"d"}};
    EXPECT_EQ(extract(), PairOutcome::done);
    EXPECT_THAT(context.errors, IsEmpty());
    EXPECT_EQ(target(), (Tree{{"d", "folder/"}, {"d/a", "content"}, {"d/b", "content"}}));
    EXPECT_EQ(statusOf(temp.path("target/d/a")).st_nlink, 2U);
    EXPECT_EQ(context.doneFiles, context.totalFiles);
    EXPECT_EQ(context.doneBytes, context.totalBytes);
}

TEST_F(ArchiveExtractorTest, givesEachArchiveAFolderOfItsOwn) {
    extraction.ownFolder = true;
    extraction.archive = FileUrl(temp.path("target/x.TAR.gz"));
    const auto names = [&] {
        std::vector<std::string> found;
        for (const auto& [name, content] : target())
            found.push_back(name);
        return found;
    };
    const auto start = [&] {
        fs::remove_all(temp.path("target"));
        fs::create_directory(temp.path("target"));
    };
    archives.entries = {File::file("a", "1"), File::file("x/b", "1")};
    extract();
    EXPECT_THAT(names(), ElementsAre("x", "x/a", "x/x", "x/x/b"));

    start();
    archives.entries = {File::file("x/a", "1"), File::folder("x")};
    extract();
    EXPECT_THAT(names(), ElementsAre("x", "x/a"));

    start();
    archives.entries = {File::file("x", "1")};
    extract();
    EXPECT_THAT(names(), ElementsAre("x", "x/x"));
    archives.entries = {File::file("b", "1")}; // into the one that is there
    extract();
    EXPECT_THAT(names(), ElementsAre("x", "x/b", "x/x"));

    start();
    write("target/x", "in the way");
    extract();
    EXPECT_THAT(names(), ElementsAre("x", "x 2", "x 2/b"));

    start();
    extraction.archive = FileUrl(temp.path("target/without"));
    write("target/without", "the archive");
    extract();
    EXPECT_THAT(names(), ElementsAre("without", "without 2", "without 2/b"));

    start();
    extraction.archive = FileUrl(temp.path("target/...zip"));
    extract();
    EXPECT_THAT(names(), ElementsAre("...zip", "...zip/b"));

    start();
    archives.facts.formatFamily = ArchiveFamily::raw;
    extract();
    EXPECT_THAT(names(), ElementsAre("b"));
    EXPECT_THAT(context.conflicts, IsEmpty());
    EXPECT_THAT(context.errors, IsEmpty());
}

TEST_F(ArchiveExtractorTest, givesUpOnAFullDiskWithFewWords) {
    for (int i = 0; i < 50; ++i)
        archives.entries.push_back(File::file("d/" + std::to_string(i), "content"));
    const FaultInjection fault({.calls = {SystemCall::pwrite}, .errorCode = ENOSPC});
    EXPECT_EQ(extract(), PairOutcome::failed);
    ASSERT_EQ(context.errors.size(), 4U);
    EXPECT_EQ(context.errors.back(),
              "Na disku už není místo, zbytek archivu „x.tar“ zůstal nerozbalený.");
    EXPECT_EQ(target(), (Tree{{"d", "folder/"}}));
}

TEST_F(ArchiveExtractorTest, saysWhichNamesTheDiskDoesNotTake) {
    archives.entries = {File::file(std::string(300, 'x'), "a"),
                        File::file(std::string(300, 'y') + "/in", "a"),
                        File::link("link", std::string(5000, 'z')), File::file("good", "whole")};
    EXPECT_EQ(extract(), PairOutcome::failed);
    EXPECT_EQ(context.errors.size(), 3U);
    EXPECT_EQ(target(), (Tree{{"good", "whole"}}));
}

} // namespace fennik::test
