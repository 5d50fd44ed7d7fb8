#include "core/operations/ItemTransfer.h"
#include "core/operations/Relocation.h"

#include "tests/support/DiskTree.h"
#include "tests/support/RecordingContext.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestTrash.h"
#include "tests/support/TestVolume.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fennik::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using namespace UndoSteps;
using Tree = std::map<std::string, std::string>;

void write(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

/// Makes folders one in the other, deeper than any path can be, and a file in the last one.
void makeDeep(const std::string& top, int levels) {
    int folder = open(top.c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < levels; ++i) {
        ASSERT_EQ(mkdirat(folder, "a folder of 20 bytes", 0755), 0);
        const int next = openat(folder, "a folder of 20 bytes", O_RDONLY | O_DIRECTORY);
        close(folder);
        folder = next;
    }
    const int file = openat(folder, "bottom", O_WRONLY | O_CREAT, 0644);
    EXPECT_EQ(::write(file, "deep", 4), 4);
    close(file);
    close(folder);
}

/// How many levels there are above a file "bottom" of 4 bytes; none where it is not to be found.
std::optional<int> depthOf(const std::string& top) {
    int folder = open(top.c_str(), O_RDONLY | O_DIRECTORY);
    for (int depth = 0; folder >= 0; ++depth) {
        struct stat info{};
        const bool isBottom = fstatat(folder, "bottom", &info, 0) == 0 && info.st_size == 4;
        const int next = openat(folder, "a folder of 20 bytes", O_RDONLY | O_DIRECTORY);
        close(folder);
        if (isBottom)
            return depth;
        folder = next;
    }
    return std::nullopt;
}

} // namespace

/// Moves from a temporary folder to a volume in memory.
class ItemTransferVolumesTest : public testing::Test {
protected:
    void SetUp() override {
        auto made = TestVolume::memory("32m");
        if (!made)
            GTEST_SKIP() << made.error();
        volume.emplace(std::move(*made));
        temp.folder("trash");
    }

    PairOutcome transfer(RecordingContext& context, const std::string& source,
                         const std::string& destination) const {
        const std::vector<TransferPair> pairs{{FileUrl(source), FileUrl(destination)}};
        ItemTransfer transfer(context);
        const auto totals = transfer.count(pairs);
        context.setTotals(totals.bytes, totals.files);
        return transfer.run(pairs).front();
    }
    PairOutcome move(const std::string& name) {
        return transfer(moving, temp.path(name), volume->path(name));
    }
    Tree sources() const {
        auto tree = diskTree(temp.url().path());
        tree.erase("trash");
        return tree;
    }

    TempFolder temp;
    std::optional<TestVolume> volume;
    TestTrash trash{FileUrl(temp.path("trash"))};
    RecordingContext moving{TransferKind::move, trash};
};

TEST_F(ItemTransferVolumesTest, aMovedTreeLeavesNothingBehind) {
    temp.folder("x/sub/empty");
    temp.file("x/sub/file", "file");
    temp.link("x/link", "nowhere");
    mkfifo(temp.path("x/pipe").c_str(), 0600);
    const auto before = sources();
    EXPECT_EQ(move("x"), PairOutcome::done);
    EXPECT_THAT(moving.errors, IsEmpty());
    EXPECT_THAT(sources(), IsEmpty());
    EXPECT_EQ(diskTree(volume->path()), before);
    EXPECT_EQ(moving.totalFiles, 3);
    EXPECT_EQ(moving.doneFiles, 3);
    EXPECT_EQ(moving.doneBytes, 4);
    ASSERT_EQ(moving.steps.size(), 9U);
    EXPECT_EQ(moving.steps.front(), UndoStep(Created{FileUrl(volume->path("x"))}));
    EXPECT_EQ(moving.steps.back(), UndoStep(RemovedEmptyDirectory{FileUrl(temp.path("x"))}));
    EXPECT_THAT(moving.steps, Contains(UndoStep(Moved{FileUrl(temp.path("x/sub/file")),
                                                      FileUrl(volume->path("x/sub/file"))})));
}

TEST_F(ItemTransferVolumesTest, nothingGoesBeforeItsCopyIsOnTheDisk) {
    temp.folder("x");
    for (int i = 0; i < 20; ++i)
        temp.file("x/" + std::to_string(i), "data");
    const auto before = sources();
    bool isSynced = false;
    const FaultInjection syncs(
        {.calls = {SystemCall::syncfs, SystemCall::fsync}, .before = [&] { isSynced = true; }});
    const FaultInjection removals(
        {.calls = {SystemCall::unlinkat}, .before = [&] { EXPECT_TRUE(isSynced); }});
    EXPECT_EQ(move("x"), PairOutcome::done);
    EXPECT_EQ(removals.calls(), 21);
    EXPECT_EQ(syncs.calls(), 1) << "for all of them";
    EXPECT_EQ(diskTree(volume->path()), before);
}

TEST_F(ItemTransferVolumesTest, whatDoesNotReachTheDiskStays) {
    for (const auto* name : {"one", "x/1", "x/2", "x/3", "x/4", "x/5"}) {
        temp.folder("x");
        temp.file(name, name);
    }
    const auto before = sources();
    const FaultInjection fault(
        {.calls = {SystemCall::syncfs, SystemCall::fsync}, .errorCode = EDQUOT});
    EXPECT_EQ(move("one"), PairOutcome::failed);
    EXPECT_EQ(move("x"), PairOutcome::failed);
    EXPECT_EQ(sources(), before);
    EXPECT_EQ(diskTree(volume->path()), before);
    EXPECT_EQ(moving.errors.size(), 6U);
    EXPECT_EQ(moving.errors.front(), "„one“ se zkopíroval, ale originál nejde odstranit.");
    EXPECT_EQ(moving.steps.front(), UndoStep(Created{FileUrl(volume->path("one"))}));
}

TEST_F(ItemTransferVolumesTest, aVolumeThatCannotBeSyncedIsSyncedFileByFile) {
    temp.folder("x");
    for (int i = 0; i < 20; ++i)
        temp.file("x/" + std::to_string(i), "data");
    const FaultInjection fault({.calls = {SystemCall::syncfs}, .errorCode = ENOSYS});
    const FaultInjection syncs({.calls = {SystemCall::fsync}});
    EXPECT_EQ(move("x"), PairOutcome::done);
    EXPECT_EQ(syncs.calls(), 22) << "files, their folder, and the one above it";
}

TEST_F(ItemTransferVolumesTest, aSourceThatChangesMeanwhileStays) {
    const auto changes = {
        +[](const std::string& path) { std::ofstream(path, std::ios::app) << "more"; },
        +[](const std::string& path) { write(path, "othr"); },
        +[](const std::string& path) { truncate(path.c_str(), 0); },
        +[](const std::string& path) {
            write(path + ".new", "data");
            std::filesystem::rename(path + ".new", path);
        },
    };
    const std::vector reading{SystemCall::read, SystemCall::pread, SystemCall::copy_file_range};
    const auto path = temp.path("file");
    for (const auto change : changes) {
        for (const auto& calls : {reading, std::vector{SystemCall::fsync}}) {
            write(path, "data");
            std::filesystem::remove(volume->path("file"));
            const FaultInjection race(
                {.calls = calls, .number = 1, .before = [&] { change(path); }});
            const auto outcome = move("file");
            EXPECT_TRUE(race.struck());
            EXPECT_EQ(outcome, PairOutcome::failed);
            EXPECT_TRUE(std::filesystem::exists(path));
            EXPECT_TRUE(std::filesystem::exists(volume->path("file")));
        }
    }
    // A copy that somebody has taken away is no copy.
    write(path, "data");
    std::filesystem::remove(volume->path("file"));
    const FaultInjection race({.calls = {SystemCall::fsync}, .number = 2, .before = [&] {
                                   std::filesystem::remove(volume->path("file"));
                               }});
    EXPECT_EQ(move("file"), PairOutcome::failed);
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST_F(ItemTransferVolumesTest, aSourceStaysWhoseCopyIsNotOursOrNotWhole) {
    temp.file("x", "data");
    const auto atSync = [this](const std::function<void()>& act) {
        const FaultInjection race({.calls = {SystemCall::fsync}, .number = 1, .before = act});
        return move("x");
    };
    // Another file with the same size and time in the place of the copy.
    EXPECT_EQ(atSync([this] {
                  const auto copy = volume->path("x");
                  const auto time = std::filesystem::last_write_time(copy);
                  std::filesystem::rename(copy, volume->path("taken away"));
                  write(copy, "DATA");
                  std::filesystem::last_write_time(copy, time);
              }),
              PairOutcome::failed);
    EXPECT_EQ(sources(), (Tree{{"x", "data"}}));
    EXPECT_EQ(diskTree(volume->path()), (Tree{{"x", "DATA"}, {"taken away", "data"}}));

    std::filesystem::remove(volume->path("x"));
    // The disk says that the file ends earlier than it does.
    const FaultInjection shortRead({.calls = {SystemCall::pread}, .number = 1, .mostBytes = 2});
    const FaultInjection end({.calls = {SystemCall::pread}, .number = 2, .mostBytes = 0});
    EXPECT_EQ(move("x"), PairOutcome::failed);
    EXPECT_EQ(sources(), (Tree{{"x", "data"}}));
}

TEST_F(ItemTransferVolumesTest, whatCannotBeRemovedIsSaidAndCanBeUndone) {
    temp.folder("x");
    temp.file("x/file", "data");
    const FaultInjection fault({.calls = {SystemCall::unlinkat}, .errorCode = EROFS});
    EXPECT_EQ(move("x"), PairOutcome::failed);
    EXPECT_THAT(moving.errors, ElementsAre("„file“ se zkopíroval, ale originál nejde odstranit."));
    EXPECT_THAT(moving.steps, ElementsAre(Created{FileUrl(volume->path("x"))},
                                          Created{FileUrl(volume->path("x/file"))}));
    EXPECT_EQ(sources(), diskTree(volume->path()));
}

TEST_F(ItemTransferVolumesTest, aFullVolumeKeepsTheRestWhereItWas) {
    const auto small = TestVolume::memory("1m");
    ASSERT_TRUE(small) << small.error();
    temp.folder("x");
    temp.file("x/big", std::string(3 << 20, 'b'));
    temp.file("x/small", "fits");
    EXPECT_EQ(transfer(moving, temp.path("x"), small->path("x")), PairOutcome::failed);
    EXPECT_THAT(moving.errors, ElementsAre("„big“: No space left on device"));
    EXPECT_EQ(diskTree(small->path()), (Tree{{"x", "folder/"}, {"x/small", "fits"}}));
    EXPECT_EQ(std::filesystem::file_size(temp.path("x/big")), 3U << 20);
    EXPECT_EQ(moving.doneFiles, 1);
    EXPECT_EQ(moving.doneBytes, moving.totalBytes);
}

TEST_F(ItemTransferVolumesTest, theOldItemComesBackFromATrashOnAnotherVolume) {
    mknod(temp.path("item").c_str(), S_IFSOCK | 0600, 0);
    std::filesystem::create_directory(volume->path("item"));
    write(volume->path("item/file"), "old");
    moving.choice = ConflictChoice::overwrite;
    EXPECT_EQ(move("item"), PairOutcome::failed);
    EXPECT_THAT(moving.errors, ElementsAre("„item“ nejde kopírovat: není to soubor ani složka."));
    EXPECT_EQ(diskTree(volume->path()), (Tree{{"item", "folder/"}, {"item/file", "old"}}));
    EXPECT_THAT(diskTree(temp.path("trash")), IsEmpty());
    EXPECT_THAT(moving.steps, IsEmpty());
}

TEST_F(ItemTransferVolumesTest, boundFoldersAreVolumesAndLeadIntoNoCircle) {
    temp.folder("x/y");
    temp.folder("elsewhere");
    temp.file("x/y/file", "data");
    temp.file("x/other", "more");
    const auto bound = TestVolume::boundTo(temp.path("elsewhere"));
    const auto part = TestVolume::boundTo(temp.path("x/y"));
    ASSERT_TRUE(bound && part);
    EXPECT_EQ(transfer(moving, temp.path("x/other"), bound->path("other")), PairOutcome::done);
    EXPECT_EQ(diskTree(temp.path("elsewhere")), (Tree{{"other", "more"}}));

    RecordingContext copying(TransferKind::copy, trash);
    EXPECT_EQ(transfer(copying, temp.path("x"), part->path("x")), PairOutcome::failed);
    EXPECT_THAT(copying.errors, ElementsAre("„y“ nejde kopírovat do sebe sama."));
    EXPECT_EQ(diskTree(part->path()), (Tree{{"file", "data"}, {"x", "folder/"}}));
}

TEST_F(ItemTransferVolumesTest, deepTreesNeedFewDescriptorsAndNoPaths) {
    constexpr int depth = 300;
    makeDeep(temp.url().path(), depth);
    const auto top = temp.path("a folder of 20 bytes");
    const auto child = fork();
    if (child == 0) {
        const rlimit few{64, 64};
        setrlimit(RLIMIT_NOFILE, &few);
        RecordingContext copying(TransferKind::copy, trash);
        bool isRight = transfer(copying, top, temp.path("copy")) == PairOutcome::done;
        isRight = isRight && depthOf(temp.path("copy")) == depth - 1;
        isRight = isRight &&
                  transfer(moving, temp.path("copy"), volume->path("copy")) == PairOutcome::done;
        isRight = isRight && depthOf(volume->path("copy")) == depth - 1;
        isRight = isRight && !std::filesystem::exists(temp.path("copy"));
        isRight = isRight && copying.totalFiles == 1 && copying.totalBytes == 4;
        isRight =
            isRight && Relocation::move(FileUrl(volume->path("copy")), FileUrl(temp.path("back")));
        isRight = isRight && depthOf(temp.path("back")) == depth - 1;
        _exit(isRight ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST_F(ItemTransferVolumesTest, aRelocationIsWholeOrNotAtAll) {
    temp.folder("x/sub");
    temp.file("x/sub/file", "data");
    temp.file("x/last", "more");
    const auto before = sources();
    const FileUrl from(temp.path("x"));
    const FileUrl to(volume->path("new/way/x"));
    const auto isUntouched = [&] {
        EXPECT_EQ(sources(), before);
        EXPECT_THAT(diskTree(volume->path()), IsEmpty());
    };
    // The second one to be removed makes trouble: the first one has to come back.
    for (int number = 1; number <= 4; ++number) {
        const FaultInjection fault(
            {.calls = {SystemCall::unlinkat}, .number = number, .errorCode = EPERM});
        const auto moved = Relocation::move(from, to);
        ASSERT_FALSE(moved);
        EXPECT_EQ(moved.error(), "originál nejde odstranit.");
        isUntouched();
    }
    {
        // What came back must not be in memory alone once its copy goes.
        bool isSynced = false;
        bool isRefused = false;
        const FaultInjection syncs(
            {.calls = {SystemCall::syncfs, SystemCall::fsync}, .before = [&] { isSynced = true; }});
        const FaultInjection removals({.calls = {SystemCall::unlinkat},
                                       .before = [&] { EXPECT_TRUE(!isRefused || isSynced); }});
        const FaultInjection fault(
            {.calls = {SystemCall::unlinkat}, .number = 2, .errorCode = EPERM, .before = [&] {
                 isRefused = true, isSynced = false;
             }});
        EXPECT_FALSE(Relocation::move(from, to));
        isUntouched();
    }
    {
        const FaultInjection race({.calls = {SystemCall::syncfs, SystemCall::fsync},
                                   .number = 1,
                                   .before = [&] { temp.file("x/sub/file", "changed"); }});
        EXPECT_FALSE(Relocation::move(from, to));
        temp.file("x/sub/file", "data");
        isUntouched();
    }
    chmod(temp.path("x/sub").c_str(), 0555);
    chmod(volume->path().c_str(), 0777);
    EXPECT_TRUE(asOrdinaryUser([&] { return !Relocation::move(from, to); }));
    isUntouched();

    EXPECT_TRUE(Relocation::move(from, to));
    EXPECT_THAT(sources(), IsEmpty());
    EXPECT_TRUE(std::filesystem::exists(to.path() + "/sub/file"));
    temp.file("x", "another");
    const auto taken = Relocation::move(from, to);
    ASSERT_FALSE(taken);
    EXPECT_EQ(taken.error(), "File exists");
    EXPECT_TRUE(std::filesystem::exists(to.path() + "/sub/file"));
}

} // namespace fennik::test
