#include "core/operations/ItemTransfer.h"

#include "tests/support/RecordingContext.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestTrash.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace fennik::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace UndoSteps;

std::string contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

bool isThere(const std::string& path) {
    struct stat info{};
    return lstat(path.c_str(), &info) == 0;
}

struct stat statusOf(const std::string& path) {
    struct stat info{};
    EXPECT_EQ(lstat(path.c_str(), &info), 0) << path;
    return info;
}

} // namespace

class ItemTransferTest : public testing::Test {
protected:
    ItemTransferTest() {
        temp.folder("trash");
        temp.folder("to");
    }

    /// Transfers the named items to the given places, after counting.
    std::vector<PairOutcome>
    transfer(RecordingContext& context,
             const std::vector<std::pair<std::string, std::string>>& pairs) const {
        std::vector<TransferPair> urls;
        for (const auto& [source, destination] : pairs)
            urls.push_back({FileUrl(temp.path(source)), FileUrl(temp.path(destination))});
        ItemTransfer transfer(context);
        const auto totals = transfer.count(urls);
        context.setTotals(totals.bytes, totals.files);
        return transfer.run(urls);
    }
    PairOutcome transfer(RecordingContext& context, const std::string& source,
                         const std::string& destination) const {
        return transfer(context, {{source, destination}}).front();
    }
    FileUrl url(std::string_view name) const { return FileUrl(temp.path(name)); }

    TempFolder temp;
    TestTrash trash{FileUrl(temp.path("trash"))};
    RecordingContext copying{TransferKind::copy, trash};
    RecordingContext moving{TransferKind::move, trash};
};

TEST_F(ItemTransferTest, copiesATreeWithItsLinksPipesModesAndTimes) {
    temp.folder("tree/sub/empty");
    temp.file("tree/a.txt", "hello");
    temp.file("tree/sub/b", std::string(3000, 'b'));
    temp.link("tree/link", "..");
    mkfifo(temp.path("tree/pipe").c_str(), 0640);
    chmod(temp.path("tree/sub").c_str(), 0555);
    const timespec times[2] = {{1, 2}, {3, 4}};
    utimensat(AT_FDCWD, temp.path("tree/sub").c_str(), times, 0);
    EXPECT_EQ(transfer(copying, "tree", "to/tree"), PairOutcome::done);
    EXPECT_THAT(copying.errors, IsEmpty());
    EXPECT_EQ(contentOf(temp.path("to/tree/a.txt")), "hello");
    EXPECT_EQ(contentOf(temp.path("to/tree/sub/b")), std::string(3000, 'b'));
    EXPECT_EQ(std::filesystem::read_symlink(temp.path("to/tree/link")), "..");
    EXPECT_TRUE(S_ISFIFO(statusOf(temp.path("to/tree/pipe")).st_mode));
    const auto sub = statusOf(temp.path("to/tree/sub"));
    EXPECT_EQ(sub.st_mode & 07777, 0555);
    EXPECT_EQ(sub.st_mtim.tv_sec, 3);
    EXPECT_EQ(copying.totalFiles, 4);
    EXPECT_EQ(copying.doneFiles, 4);
    EXPECT_EQ(copying.totalBytes, 3005);
    EXPECT_GE(copying.doneBytes, 3005);
    ASSERT_EQ(copying.steps.size(), 7U);
    EXPECT_EQ(copying.steps.front(), UndoStep(Created{url("to/tree")}));
}

TEST_F(ItemTransferTest, movesWithinAVolumeByOneRename) {
    temp.folder("tree/sub");
    temp.file("tree/sub/b", "b");
    const auto inode = statusOf(temp.path("tree")).st_ino;
    EXPECT_EQ(transfer(moving, "tree", "to/new/tree"), PairOutcome::done);
    EXPECT_EQ(statusOf(temp.path("to/new/tree")).st_ino, inode);
    EXPECT_FALSE(isThere(temp.path("tree")));
    EXPECT_THAT(moving.steps,
                ElementsAre(Created{url("to/new")}, Moved{url("tree"), url("to/new/tree")}));
    EXPECT_EQ(moving.doneFiles, moving.totalFiles);
}

} // namespace fennik::test
