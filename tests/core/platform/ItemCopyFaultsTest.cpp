#include "core/platform/ItemCopy.h"
#include "tests/support/DiskTree.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace fennik::test {

namespace {

using Kind = CopyFailure::Kind;
using Result = std::expected<CopiedItem, CopyFailure>;
namespace fs = std::filesystem;

const std::string stranger = "a stranger's";

/// Copies "s" from one folder to "d" in another.
class ItemCopyFaultsTest : public testing::Test {
protected:
    void SetUp() override { start(); }

    void start() {
        fs::remove_all(folder.path("from"));
        fs::remove_all(folder.path("to"));
        folder.folder("from");
        folder.folder("to");
        from = OpenFolder::open(folder.path("from"), FollowLinks::no);
        to = OpenFolder::open(folder.path("to"), FollowLinks::no);
    }
    Result copy(CopyProgress progress = [](std::int64_t) { return CopyStep::goOn; }) const {
        return copyItem(from.value(), "s", listed, to.value(), "d", Cloning::allowed, progress);
    }
    Result copyWith(Fault fault) const {
        const FaultInjection injected(std::move(fault));
        auto copied = copy();
        EXPECT_TRUE(injected.struck());
        return copied;
    }
    std::map<std::string, std::string> target() const { return diskTree(folder.path("to")); }
    void expectNothing() const { EXPECT_TRUE(target().empty()); }
    void expectStranger() const {
        EXPECT_THAT(target(), testing::Contains(testing::Pair("d", stranger)));
    }
    /// Somebody takes the name, whoever has it.
    void takeName() const {
        fs::remove(d);
        folder.file("to/d", stranger);
    }
    void append(const std::string& bytes) const {
        std::ofstream(s, std::ios::binary | std::ios::app) << bytes;
    }

    TempFolder folder;
    FileType listed = FileType::other;
    OpenFolder::Result<OpenFolder> from = std::unexpected(PosixError{});
    OpenFolder::Result<OpenFolder> to = std::unexpected(PosixError{});
    const std::string s = folder.path("from/s");
    const std::string d = folder.path("to/d");
    const std::string large = std::string(150'000, 'a') + std::string(150'000, 'b');
};

struct Source {
    std::string name;
    std::function<void(const TempFolder&)> make;
    int calls = 0; ///< that a copy takes at least
    FileType listed = FileType::other;
};

void PrintTo(const Source& source, std::ostream* stream) {
    *stream << source.name;
}

void makeWithHoles(const TempFolder& folder) {
    const auto path = folder.path("from/s");
    folder.file("from/s", std::string(100'000, 'x'));
    ASSERT_EQ(0, truncate(path.c_str(), 1'000'000));
    std::ofstream(path, std::ios::app) << std::string(100'000, 'y');
    ASSERT_EQ(0, truncate(path.c_str(), 2'000'000));
    ASSERT_EQ(0, setxattr(path.c_str(), "user.note", "x", 1, 0));
}

const Source sources[] = {
    {"small", [](const TempFolder& folder) { folder.file("from/s", "obsah"); }, 13},
    {"withHoles", makeWithHoles, 20},
    {"link", [](const TempFolder& folder) { folder.link("from/s", "nowhere"); }, 6},
    {"pipe", [](const TempFolder& folder) { mkfifo(folder.path("from/s").c_str(), 0600); }, 6},
    {"listed", [](const TempFolder& folder) { folder.file("from/s", "obsah"); }, 12,
     FileType::regular},
};

class EveryCallTest : public ItemCopyFaultsTest, public testing::WithParamInterface<Source> {
protected:
    Trial trial() {
        return {.prepare =
                    [this] {
                        start();
                        listed = GetParam().listed;
                        GetParam().make(folder);
                    },
                .act = [this] { copied = copy(); },
                .check =
                    [this] {
                        const auto source = diskTree(folder.path("from"));
                        EXPECT_TRUE(source.contains("s"));
                        if (copied->has_value())
                            EXPECT_TRUE(source.at("s") == target().at("d"));
                        else
                            expectNothing();
                    }};
    }

    std::optional<Result> copied;
};

} // namespace

TEST_P(EveryCallTest, leavesAWholeCopyOrNothingWhicheverFails) {
    for (const int code : {EIO, ENOSPC, EINTR})
        EXPECT_GE(forEachCall({.errorCode = code}, trial()), GetParam().calls);
}

TEST_P(EveryCallTest, leavesTheSourceWhereverTheProcessEnds) {
    auto ended = trial();
    ended.check = [this] {
        const auto source = diskTree(folder.path("from"));
        start();
        GetParam().make(folder);
        EXPECT_TRUE(source == diskTree(folder.path("from")));
    };
    EXPECT_GE(forEachCall({.endsProcess = true}, ended), GetParam().calls);
}

TEST_P(EveryCallTest, leavesWhatAStrangerPutsThereAtAnyTime) {
    auto taken = trial();
    taken.check = [this] { expectStranger(); };
    // Past the last call nobody has taken the name.
    int number = 1;
    for (;; ++number) {
        taken.prepare();
        const FaultInjection injected(
            {.number = number, .errorCode = EIO, .before = [this] { takeName(); }});
        taken.act();
        if (!injected.struck())
            break;
        taken.check();
    }
    EXPECT_GT(number, GetParam().calls);
}

INSTANTIATE_TEST_SUITE_P(ItemCopy, EveryCallTest, testing::ValuesIn(sources),
                         [](const auto& test) { return test.param.name; });

TEST_F(ItemCopyFaultsTest, saysThatTheNameWasTakenMeanwhile) {
    for (const auto& [make, call] :
         {std::pair{sources[0].make, Fault{.calls = {SystemCall::openat}, .number = 2}},
          std::pair{sources[2].make, Fault{.calls = {SystemCall::symlinkat}, .number = 1}},
          std::pair{sources[3].make, Fault{.calls = {SystemCall::mkfifoat}, .number = 1}}}) {
        start();
        make(folder);
        auto fault = call;
        fault.before = [this] { takeName(); };
        EXPECT_EQ(Kind::exists, copyWith(fault).error().kind);
        expectStranger();
    }
}

TEST_F(ItemCopyFaultsTest, readsNothingElseInPlaceOfTheSource) {
    const std::vector<std::function<void()>> swaps{
        [this] { fs::create_symlink("other", s); },
        [this] { EXPECT_EQ(0, mkfifo(s.c_str(), 0600)); },
        [this] { fs::rename(folder.path("from/other"), s); },
        [this] { folder.folder("from/s"); },
    };
    for (const auto& swap : swaps) {
        start();
        folder.file("from/s", "mine");
        folder.file("from/other", "secret");
        const auto failed = copyWith({.calls = {SystemCall::openat}, .number = 1, .before = [&] {
                                          fs::remove(s);
                                          swap();
                                      }});
        EXPECT_EQ(ESTALE, failed.error().error.code);
        expectNothing();
    }
}

TEST_F(ItemCopyFaultsTest, copiesWhatTookThePlaceOfAListedFileAsWhatItIs) {
    listed = FileType::regular;
    const auto copiedAfter = [this](const std::function<void()>& swap) {
        start();
        folder.file("from/s", "mine");
        folder.file("from/other", "secret");
        return copyWith({.calls = {SystemCall::openat}, .number = 1, .before = [&] {
                             fs::remove(s);
                             swap();
                         }});
    };
    EXPECT_TRUE(copiedAfter([this] { fs::create_symlink("other", s); }));
    EXPECT_EQ("other", fs::read_symlink(d));
    EXPECT_TRUE(copiedAfter([this] { EXPECT_EQ(0, mkfifo(s.c_str(), 0600)); }));
    EXPECT_TRUE(fs::is_fifo(d));
    EXPECT_EQ(EISDIR, copiedAfter([this] { folder.folder("from/s"); }).error().error.code);
    EXPECT_EQ(ENOENT, copiedAfter([] {}).error().error.code);
    expectNothing();
}

TEST_F(ItemCopyFaultsTest, takesTheNextMethodWhereOneDoesNotServe) {
    folder.file("from/s", large);
    for (const int code : {EXDEV, EINVAL, EOPNOTSUPP, ENOSYS}) {
        EXPECT_TRUE(copyWith({.calls = {SystemCall::copy_file_range}, .errorCode = code}));
        EXPECT_TRUE(target().at("d") == large);
        fs::remove(d);
    }
    EXPECT_TRUE(copyWith({.calls = {SystemCall::copy_file_range}, .mostBytes = 0}));
    EXPECT_TRUE(target().at("d") == large);
    fs::remove(d);
    const auto failed = copyWith({.calls = {SystemCall::copy_file_range}, .errorCode = EIO});
    EXPECT_EQ(EIO, failed.error().error.code);
    expectNothing();
}

TEST_F(ItemCopyFaultsTest, goesOnAfterShortCallsAndInterruptions) {
    folder.file("from/s", large);
    const FaultInjection read({.calls = {SystemCall::pread}, .mostBytes = 70'000});
    const FaultInjection interrupted(
        {.calls = {SystemCall::pwrite}, .number = 2, .errorCode = EINTR});
    const FaultInjection written({.calls = {SystemCall::pwrite}, .mostBytes = 33'333});
    const FaultInjection kernel({.calls = {SystemCall::copy_file_range}, .mostBytes = 100'000});
    EXPECT_TRUE(copy());
    EXPECT_TRUE(target().at("d") == large);
    fs::remove(d);
    EXPECT_TRUE(copyWith({.calls = {SystemCall::copy_file_range}, .errorCode = EXDEV}));
    EXPECT_TRUE(target().at("d") == large);
    EXPECT_TRUE(interrupted.struck());
}

TEST_F(ItemCopyFaultsTest, waitsForDataButNotForEver) {
    folder.file("from/s", "obsah");
    EXPECT_TRUE(copyWith({.calls = {SystemCall::pread}, .number = 1, .errorCode = EAGAIN}));
    EXPECT_EQ("obsah", target().at("d"));
    fs::remove(d);
    const FaultInjection always({.calls = {SystemCall::pread}, .errorCode = EAGAIN});
    EXPECT_EQ(EAGAIN, copy().error().error.code);
    int asked = 0;
    const auto stopped =
        copy([&asked](std::int64_t) { return ++asked < 3 ? CopyStep::goOn : CopyStep::stop; });
    EXPECT_EQ(Kind::stopped, stopped.error().kind);
    expectNothing();
}

TEST_F(ItemCopyFaultsTest, waitsForWhoeverHoldsALease) {
    folder.file("from/s", "obsah");
    const int held = open(s.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(held, 0);
    if (fcntl(held, F_SETLEASE, F_WRLCK) != 0)
        GTEST_SKIP() << "no leases here";
    const auto previous = signal(SIGIO, SIG_IGN); // tells the holder
    int asked = 0;
    const auto stopped =
        copy([&asked](std::int64_t) { return ++asked < 3 ? CopyStep::goOn : CopyStep::stop; });
    EXPECT_EQ(Kind::stopped, stopped.error().kind);
    EXPECT_EQ(EAGAIN, copy().error().error.code);
    expectNothing();
    asked = 0;
    EXPECT_TRUE(copy([&asked, held](std::int64_t) {
        if (++asked == 3)
            fcntl(held, F_SETLEASE, F_UNLCK);
        return CopyStep::goOn;
    }));
    EXPECT_EQ("obsah", target().at("d"));
    close(held);
    signal(SIGIO, previous);
}

TEST_F(ItemCopyFaultsTest, believesTheAnswerToClosing) {
    folder.file("from/s", "obsah");
    const auto failed = copyWith({.calls = {SystemCall::close}, .number = 1, .errorCode = EDQUOT});
    EXPECT_EQ(EDQUOT, failed.error().error.code);
    expectNothing();
}

TEST_F(ItemCopyFaultsTest, copiesAGrowingFileUpToTheSizeItHad) {
    for (const auto& [content, call] : {std::pair{std::string("small"), SystemCall::pread},
                                        std::pair{std::string(), SystemCall::pread},
                                        std::pair{large, SystemCall::copy_file_range}}) {
        start();
        folder.file("from/s", content);
        const auto copied =
            copyWith({.calls = {call}, .number = 1, .before = [this] { append("more"); }});
        ASSERT_TRUE(copied);
        EXPECT_TRUE(target().at("d") == content);
        // So that nobody takes it for the whole.
        EXPECT_EQ(std::ssize(content), copied->source.size);
    }
}

TEST_F(ItemCopyFaultsTest, copiesAShrinkingFileUpToItsEnd) {
    const auto shrink = [this] { fs::resize_file(s, 1000); };
    for (const auto call : {SystemCall::copy_file_range, SystemCall::lseek}) {
        start();
        makeWithHoles(folder);
        ASSERT_TRUE(copyWith({.calls = {call}, .number = 1, .before = shrink}));
        EXPECT_EQ(std::string(1000, 'x'), target().at("d"));
    }
    start();
    folder.file("from/s", large);
    ASSERT_TRUE(copyWith({.calls = {SystemCall::copy_file_range}, .number = 1, .before = shrink}));
    EXPECT_EQ(std::string(1000, 'a'), target().at("d"));
}

} // namespace fennik::test
