#include "core/archives/helper/HelperPacker.h"

#include "core/archives/ArchiveReader.h"
#include "tests/support/DiskTree.h"
#include "tests/support/Processes.h"
#include "tests/support/RecordingContext.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestTrash.h"

#include <array>
#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <random>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace fennik::test {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto ended = "Archiv nejde zapsat: balení skončilo chybou";

/// That no compression makes shorter.
std::string noise(std::size_t size) {
    std::mt19937 random; // NOLINT(cert-msc51-cpp): the same each time
    std::string bytes(size, '\0');
    for (auto& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

/// Paths in a whole archive.
std::vector<std::string> entriesOf(const FileUrl& archive) {
    const auto stream = DirectArchives().open({.url = archive}, [] { return false; }).value();
    std::vector<std::string> paths;
    while (const auto met = stream->next().value()) {
        paths.push_back(met->entry.path);
        while (!stream->read().value().bytes.empty()) {
        }
    }
    return paths;
}

} // namespace

class HelperPackerTest : public testing::Test {
protected:
    HelperPackerTest() {
        temp.folder("target");
        temp.folder("trash");
        temp.folder("source");
        temp.file("source/a", noise(100'000));
        temp.file("source/b", noise(100'000));
    }

    bool pack(const std::string& name, const PackOptions& options = {}) {
        return packer.pack({temp.url().appending("source")}, archive(name), options, context);
    }
    FileUrl archive(const std::string& name) const {
        return temp.url().appending("target").appending(name);
    }
    std::map<std::string, std::string> target() const { return diskTree(temp.path("target")); }

    TempFolder temp;
    TestTrash trash{temp.url().appending("trash")};
    RecordingContext context{TransferKind::pack, trash};
    HelperPacker packer{ARCHIVE_HELPER};
};

TEST_F(HelperPackerTest, makesTheArchiveAndTellsTheJobOfIt) {
    for (const auto format : allArchiveFormats) {
        const auto name = "x." + std::string(extensionOf(format));
        SCOPED_TRACE(name);
        std::vector<std::string> names;
        RecordingContext job(TransferKind::pack, trash);
        job.onName = [&](const std::string& current) { names.push_back(current); };
        EXPECT_TRUE(packer.pack({temp.url().appending("source")}, archive(name),
                                {.format = format, .level = 1}, job));
        EXPECT_THAT(entriesOf(archive(name)),
                    testing::UnorderedElementsAre("source", "source/a", "source/b"));
        EXPECT_THAT(names, testing::UnorderedElementsAre("source", "a", "b"));
        EXPECT_EQ(job.totalBytes, 200'000);
        EXPECT_EQ(job.doneBytes, 200'000);
        EXPECT_EQ(job.totalFiles, 3);
        EXPECT_EQ(job.doneFiles, 3);
        EXPECT_THAT(job.errors, IsEmpty());
        EXPECT_EQ(job.steps, (std::vector<UndoStep>{UndoSteps::Created{archive(name)}}));
    }
    EXPECT_EQ(target().size(), allArchiveFormats.size());
}

TEST_F(HelperPackerTest, passesOnWhatIsRefusedAndLeftOut) {
    EXPECT_FALSE(pack("x.7z", {.format = ArchiveFormat::sevenZip, .password = "tajné"}));
    EXPECT_EQ(context.failure, "Heslo umí jen formát ZIP.");
    EXPECT_THAT(target(), IsEmpty());

    ASSERT_EQ(mkfifo(temp.path("source/pipe").c_str(), 0600), 0);
    EXPECT_TRUE(pack("x.zip"));
    EXPECT_THAT(context.errors,
                ElementsAre(context.failure, testing::HasSubstr("„pipe“ nejde zabalit")));
}

TEST_F(HelperPackerTest, saysWhyTheHelperCannotBeStarted) {
    const HelperPacker without(temp.path("no program"));
    EXPECT_FALSE(without.pack({temp.url().appending("source")}, archive("x.zip"), {}, context));
    EXPECT_TRUE(context.failure.starts_with("Archiv nejde zapsat: "));
    EXPECT_THAT(target(), IsEmpty());
}

TEST_F(HelperPackerTest, givesTheHelperTheVolumeOfTheArchiveForWhatItNeedsBesides) {
    EXPECT_TRUE(pack("tells of itself"));
    EXPECT_THAT(context.errors, ElementsAre("TMPDIR " + temp.path("target"),
                                            "0 pipe:", "1 pipe:", "2 /dev/", "3 /proc"));
}

TEST_F(HelperPackerTest, leavesNothingOfAHelperThatFails) {
    EXPECT_FALSE(pack("crashes"));
    EXPECT_EQ(context.failure, ended);
    EXPECT_THAT(target(), IsEmpty());
    EXPECT_THAT(context.steps, IsEmpty());
}

TEST_F(HelperPackerTest, keepsTheArchiveThatWasThereBeforeItsHelperFailed) {
    EXPECT_TRUE(pack("crashes at the end"));
    EXPECT_EQ(context.failure, "");
    EXPECT_EQ(context.steps.size(), 1U);
}

TEST_F(HelperPackerTest, believesNothingThatCannotBe) {
    for (const std::string name : {"lies", "counts down"}) {
        SCOPED_TRACE(name);
        RecordingContext job(TransferKind::pack, trash);
        EXPECT_FALSE(packer.pack({}, archive(name), {}, job));
        EXPECT_EQ(job.failure, ended);
        EXPECT_THAT(job.steps, IsEmpty());
        EXPECT_EQ(job.doneBytes, 0);
    }
}

TEST_F(HelperPackerTest, stopsWithTheJobWhetherTheHelperListensOrNot) {
    for (const std::string name : {"goes on and on", "spins"}) {
        SCOPED_TRACE(name);
        std::string process;
        steady_clock::time_point cancelled;
        RecordingContext job(TransferKind::pack, trash);
        job.onName = [&](const std::string& number) {
            process = number;
            EXPECT_FALSE(target().empty()) << "it has begun";
            job.cancelled = true;
            cancelled = steady_clock::now();
        };
        EXPECT_FALSE(packer.pack({}, archive(name), {}, job));
        EXPECT_LT(steady_clock::now() - cancelled, 5s); // also on a busy machine
        EXPECT_EQ(job.failure, "");
        EXPECT_THAT(target(), IsEmpty());
        EXPECT_TRUE(endsSoon(process));
    }
}

TEST_F(HelperPackerTest, waitsWhileTheJobIsPaused) {
    std::string process;
    context.onName = [&](const std::string& number) { process = number; };
    int checkpoints = 0;
    context.onCheckpoint = [&] {
        std::this_thread::sleep_for(50ms); // as a paused job does
        EXPECT_EQ(stateOf(process), 'S');
        context.cancelled = ++checkpoints == 3;
    };
    EXPECT_FALSE(pack("goes on and on"));
    EXPECT_EQ(checkpoints, 3);
    EXPECT_GT(context.doneBytes, 0);
}

TEST_F(HelperPackerTest, leavesAllOrNothingWhereverItIsKilled) {
    temp.file("source/c", noise(2'000'000));
    int kills = 0;
    for (int i = 0; i < 30; ++i) {
        const auto format = i % 2 == 0 ? ArchiveFormat::sevenZip : ArchiveFormat::zip;
        const auto name = std::to_string(i);
        SCOPED_TRACE(name);
        RecordingContext job(TransferKind::pack, trash);
        bool isPacked = false;
        {
            const std::jthread worker([&] {
                isPacked = packer.pack({temp.url().appending("source")}, archive(name),
                                       {.format = format, .level = 1}, job);
            });
            std::this_thread::sleep_for(i * 7ms);
            for (const auto& process : childProcesses())
                kill(std::stoi(process), SIGKILL);
        }
        kills += !isPacked;
        EXPECT_EQ(job.failure, isPacked ? "" : ended);
        const auto left = target();
        EXPECT_TRUE(!isPacked || !left.empty());
        if (!left.empty()) {
            EXPECT_EQ(entriesOf(archive(name)).size(), 4U);
        }
        EXPECT_LE(left.size(), 1U);
        unlink(archive(name).path().c_str());
    }
    EXPECT_GT(kills, 0);
}

TEST_F(HelperPackerTest, removesWhatIsHalfDoneWhenItsParentIsKilled) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const pid_t parent = fork();
    if (parent == 0) {
        context.onName = [&](const std::string& process) {
            [[maybe_unused]] const auto told = write(ends[1], process.data(), process.size());
        };
        pack("goes on and on");
        _exit(0);
    }
    close(ends[1]);
    std::array<char, 32> told{};
    const auto count = read(ends[0], told.data(), told.size());
    close(ends[0]);
    ASSERT_GT(count, 0);
    EXPECT_FALSE(target().empty());
    kill(parent, SIGKILL);
    waitpid(parent, nullptr, 0);
    EXPECT_TRUE(endsSoon(std::string(told.data(), static_cast<std::size_t>(count))));
    EXPECT_THAT(target(), IsEmpty());
}

} // namespace fennik::test
