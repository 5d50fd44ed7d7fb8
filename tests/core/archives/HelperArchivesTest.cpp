#include "core/archives/helper/HelperArchives.h"

#include "core/archives/ArchiveIndex.h"
#include "core/archives/ArchiveReader.h"
#include "core/archives/helper/ArchiveHelper.h"
#include "core/archives/helper/ArchiveMessages.h"
#include "core/platform/ChildProcess.h"
#include "tests/support/Processes.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestArchives.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace fennik::test {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::ElementsAre;

bool never() {
    return false;
}

std::string textOf(std::span<const std::byte> bytes) {
    std::string text(bytes.size(), '\0');
    std::ranges::transform(bytes, text.begin(), [](std::byte byte) { return char(byte); });
    return text;
}

/// All that is left of the current entry, with zeros in its holes.
EntryStream::Result<std::string> contentOf(EntryStream& stream) {
    std::string content;
    while (true) {
        const auto block = stream.read();
        if (!block)
            return std::unexpected(block.error());
        content.resize(static_cast<std::size_t>(block->offset), '\0');
        if (block->bytes.empty())
            return content;
        content += textOf(block->bytes);
    }
}

} // namespace

class HelperArchivesTest : public testing::Test {
protected:
    EntryStream::Result<std::unique_ptr<EntryStream>>
    open(const std::string& name, const IsCancelled& isCancelled = never,
         std::optional<std::vector<std::string>> wanted = std::nullopt) {
        return archives.open({.url = temp.url().appending(name), .wanted = std::move(wanted)},
                             isCancelled);
    }
    /// An archive that the helper does not read, but knows by its name.
    std::unique_ptr<EntryStream> openMade(const std::string& name,
                                          const IsCancelled& isCancelled = never) {
        temp.file(name);
        return open(name, isCancelled).value();
    }
    /// The first entry of those that misbehave: the number of the helper.
    static std::string processOf(EntryStream& stream) {
        return stream.next().value().value().entry.path;
    }

    TempFolder temp;
    HelperArchives archives{ARCHIVE_HELPER};
};

TEST_F(HelperArchivesTest, readsWhatIsReadWithoutAHelper) {
    temp.file("a.zip", zipOf({{.name = "složka/"},
                              {.name = "složka/ž", .content = "obsah"},
                              {.name = "P\xF8\xEDli\x9A \x9Elu\x9Dou\xE8k\xFD k\xF9\xF2", // cp1250
                               .isUtf8 = false},
                              {.name = "../out"},
                              {.name = "empty"}}));
    const ArchiveRequest request{.url = temp.url().appending("a.zip")};
    const auto direct = DirectArchives().open(request, never).value();
    const auto helped = archives.open(request, never).value();
    int entries = 0;
    while (true) {
        const auto expected = direct->next().value();
        const auto met = helped->next().value();
        ASSERT_EQ(met.has_value(), expected.has_value());
        EXPECT_EQ(helped->facts(), direct->facts());
        if (!met)
            break;
        ++entries;
        EXPECT_EQ(met->entry, expected->entry);
        EXPECT_EQ(met->hasForeignName, expected->hasForeignName);
        EXPECT_EQ(met->declaresSize, expected->declaresSize);
        EXPECT_EQ(met->isSpecial, expected->isSpecial);
        EXPECT_EQ(met->isRefused, expected->isRefused);
        if (!met->isRefused) {
            EXPECT_EQ(contentOf(*helped).value(), contentOf(*direct).value());
        }
    }
    EXPECT_EQ(entries, 5);
    EXPECT_EQ(helped->next().value(), std::nullopt) << "the end stays";
}

TEST_F(HelperArchivesTest, takesPathsThatAreLongerDecodedThanAsTheyAreWritten) {
    std::string name;
    std::string path;
    for (int i = 0; i < 1500; ++i) {
        name += i % 100 == 99 ? "/\xE7" : "\xE7\xB2"; // cp852
        path += i % 100 == 99 ? "/š" : "š▓";
    }
    temp.file("a.zip", zipOf({{.name = name, .content = "x", .isUtf8 = false, .madeBy = 0}}));
    const ArchiveRequest request{.url = temp.url().appending("a.zip"), .charset = "IBM852"};
    const auto stream = archives.open(request, never).value();
    EXPECT_EQ(stream->next().value()->entry.path, path);
    EXPECT_EQ(contentOf(*stream), "x");
}

TEST_F(HelperArchivesTest, givesTheDataOfWhatIsWantedAlone) {
    temp.file("a.tar", tarOf({{.name = "a/b", .content = "1"},
                              {.name = "ab", .content = "2"},
                              {.name = "c", .content = "3"}}));
    const auto stream = open("a.tar", never, std::vector<std::string>{"a", "c"}).value();
    std::vector<std::string> contents;
    while (stream->next().value())
        contents.push_back(contentOf(*stream).value());
    EXPECT_THAT(contents, ElementsAre("1", "", "3"));

    const auto skipping = open("a.tar").value();
    skipping->next().value();
    skipping->next().value();
    EXPECT_EQ(contentOf(*skipping), "2") << "after data that nobody has read";
}

TEST_F(HelperArchivesTest, keepsHolesAndGoesOnAfterAnEntryThatCannotBeRead) {
    const auto stream = openMade("has data");
    EXPECT_EQ(stream->facts().formatName, "made");
    EXPECT_EQ(stream->next().value()->entry.path, "holes");
    const auto piece = std::string(300'000, '\7');
    const auto hole = std::string(700'000, '\0');
    EXPECT_EQ(contentOf(*stream), piece + hole + piece + hole);
    EXPECT_EQ(stream->next().value()->entry.path, "broken");
    EXPECT_EQ(contentOf(*stream).error().kind, ArchiveError::Case::wrongPassword);
    EXPECT_EQ(stream->next().value()->entry.path, "empty");
    EXPECT_EQ(contentOf(*stream), "");
    EXPECT_EQ(stream->next().value()->entry.path, "backwards");
    EXPECT_EQ(contentOf(*stream).error(),
              (ArchiveError{ArchiveError::Case::damaged, "čtení nedává smysl"}));
}

TEST_F(HelperArchivesTest, saysWhyAnArchiveCannotBeOpened) {
    EXPECT_EQ(open("missing").error().kind, ArchiveError::Case::cannotOpen);
    temp.file("text.zip", "no archive at all");
    EXPECT_EQ(open("text.zip").error(),
              (ArchiveError{ArchiveError::Case::cannotOpen, "neznámý formát"}));
    temp.folder("folder");
    EXPECT_EQ(open("folder").error().kind, ArchiveError::Case::cannotOpen);

    temp.file("a.zip", zipOf({{.name = "a"}}));
    const HelperArchives without(temp.path("no program"));
    EXPECT_EQ(without.open({.url = temp.url().appending("a.zip")}, never).error().kind,
              ArchiveError::Case::cannotOpen);
}

TEST_F(HelperArchivesTest, takesAHelperThatFailsForADamagedArchive) {
    const std::vector<std::pair<std::string, std::string>> faults{
        {"aborts", "čtení skončilo chybou"},
        {"crashes", "čtení skončilo chybou"},
        {"ends early", "čtení skončilo chybou"},
        {"closes its output", "čtení skončilo chybou"},
        {"eats memory", "čtení chtělo příliš mnoho paměti"},
        {"spins", "čtení se zastavilo"},
        {"writes garbage", "čtení nedává smysl"}};
    for (const auto& [name, reason] : faults) {
        SCOPED_TRACE(name);
        const auto stream = openMade(name);
        const auto process = processOf(*stream);
        const auto met = stream->next();
        ASSERT_FALSE(met);
        EXPECT_EQ(met.error(), (ArchiveError{ArchiveError::Case::damaged, reason}));
        EXPECT_EQ(stream->next().error(), met.error()) << "the failure stays";
        EXPECT_FALSE(isAlive(process));
    }
}

TEST_F(HelperArchivesTest, believesNoEntryThatCannotBe) {
    constexpr int lies = 15;
    for (int i = 0; i < lies; ++i) {
        SCOPED_TRACE(i);
        const auto stream = openMade("lies " + std::to_string(i));
        EXPECT_EQ(stream->next().error(),
                  (ArchiveError{ArchiveError::Case::damaged, "čtení nedává smysl"}));
    }
}

TEST_F(HelperArchivesTest, takesNoPartOfAMessageForAWholeOne) {
    MessageWriter writer;
    const auto fieldsOf = [&](const auto& put) {
        writer.clear();
        writer.begin(MessageKind::entry);
        put();
        writer.finish();
        return writer.bytes().subspan(sizeof(MessageHead));
    };
    const auto checkParts = [](std::span<const std::byte> fields, const auto& take) {
        ASSERT_TRUE(take(MessageReader(fields)));
        for (std::size_t size = 0; size < fields.size(); ++size)
            EXPECT_FALSE(take(MessageReader(fields.first(size)))) << size;
        std::vector<std::byte> longer(fields.begin(), fields.end());
        longer.push_back({});
        EXPECT_FALSE(take(MessageReader(longer)));
    };
    namespace Messages = ArchiveMessages;
    const StreamEntry link{
        .entry = {.path = "a/b", .kind = ArchiveEntry::Kind::symlink, .linkTarget = "target"}};
    checkParts(fieldsOf([&] { Messages::put(writer, link, FollowedBy::data); }), Messages::entry);
    checkParts(fieldsOf([&] { Messages::put(writer, ArchiveFacts{.formatName = "made"}); }),
               Messages::facts);
    checkParts(fieldsOf([&] {
                   Messages::put(writer,
                                 ArchiveError{ArchiveError::Case::wrongPassword, "", "AES-256"});
               }),
               Messages::error);
    const ArchiveRequest request{.url = temp.url(), .wanted = std::vector<std::string>{"a", "b"}};
    checkParts(fieldsOf([&] { Messages::put(writer, request); }), Messages::archiveRequest);
}

TEST_F(HelperArchivesTest, letsWorkTakeLongThatGetsOn) {
    const auto stream = openMade("works long");
    int entries = 0;
    for (auto met = stream->next(); met.value(); met = stream->next())
        ++entries;
    EXPECT_EQ(entries, 6);
}

TEST_F(HelperArchivesTest, endsTheHelperAtOnceWhenItIsCancelled) {
    for (const std::string name : {"hangs", "spins", "is endless"}) {
        SCOPED_TRACE(name);
        std::atomic<bool> isCancelled = false;
        const auto stream = openMade(name, [&] { return isCancelled.load(); });
        const auto process = name == "is endless" ? "none" : processOf(*stream);
        steady_clock::time_point cancelled;
        const std::jthread user([&] {
            std::this_thread::sleep_for(50ms);
            cancelled = steady_clock::now();
            isCancelled = true;
        });
        auto met = stream->next();
        while (met)
            met = stream->next();
        const auto end = steady_clock::now();
        EXPECT_EQ(met.error().kind, ArchiveError::Case::cancelled);
        EXPECT_FALSE(isAlive(process));
        EXPECT_LT(end - cancelled, 2s); // also on a busy machine
    }
    EXPECT_EQ(open("hangs", [] { return true; }).error().kind, ArchiveError::Case::cancelled);
}

TEST_F(HelperArchivesTest, endsTheHelperWithTheStream) {
    auto stream = openMade("hangs");
    const auto process = processOf(*stream);
    EXPECT_TRUE(isAlive(process));
    stream.reset();
    EXPECT_FALSE(isAlive(process));
}

TEST_F(HelperArchivesTest, endsTheHelperWithItsParent) {
    for (const std::string name : {"hangs", "spins"}) {
        SCOPED_TRACE(name);
        std::array<int, 2> ends{};
        ASSERT_EQ(pipe(ends.data()), 0);
        const pid_t parent = fork();
        if (parent == 0) {
            const auto stream = openMade(name);
            const auto process = processOf(*stream);
            [[maybe_unused]] const auto told = write(ends[1], process.data(), process.size());
            while (true)
                pause();
        }
        close(ends[1]);
        std::array<char, 32> told{};
        const auto count = read(ends[0], told.data(), told.size());
        ASSERT_GT(count, 0);
        const std::string process(told.data(), static_cast<std::size_t>(count));
        EXPECT_TRUE(isAlive(process));
        kill(parent, SIGKILL);
        waitpid(parent, nullptr, 0);
        close(ends[0]);
        EXPECT_TRUE(endsSoon(process));
    }
}

TEST_F(HelperArchivesTest, givesTheHelperNoOtherDescriptorsAndNoImageOfItsMemory) {
    const auto stream = openMade("tells of itself");
    std::vector<std::string> told;
    while (const auto met = stream->next().value())
        told.push_back(met->entry.linkTarget.value());
    // The last one is the folder that it reads to tell this.
    EXPECT_THAT(told, ElementsAre("core 0", "0 pipe:", "1 pipe:", "2 /dev/", "3 /tmp/", "4 /proc"));
}

TEST_F(HelperArchivesTest, servesSeveralThreadsAtOnce) {
    std::vector<TarEntry> entries;
    for (int i = 0; i < 300; ++i)
        entries.push_back({.name = std::to_string(i), .content = std::string(10'000, 'x')});
    temp.file("a.tar", tarOf(entries));
    std::atomic<int> read = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] {
                const auto stream = open("a.tar").value();
                while (stream->next().value())
                    read += contentOf(*stream).value().size() == 10'000;
            });
    }
    EXPECT_EQ(read, 4 * 300);
}

TEST_F(HelperArchivesTest, isNoHelperWhenStartedByHand) {
    const std::string command = ARCHIVE_HELPER " < /dev/null > /dev/null";
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), HelperExit::noHelper);
}

} // namespace fennik::test
