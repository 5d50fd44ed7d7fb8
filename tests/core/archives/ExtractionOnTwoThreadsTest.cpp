#include "tests/core/archives/ExtractionFixture.h"

#include "tests/support/SystemCallFaults.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace fennik::test {

namespace {

using testing::IsEmpty;
using File = ScriptedEntry;

/// As long as it lives, data is written slowly, and by the job's thread only once another one has
/// written some.
class SlowHand {
public:
    SlowHand() : injection_({.calls = {SystemCall::pwrite}, .before = [this] { wait(); }}) {}

    /// Each of the threads has.
    bool haveBothWritten() const {
        const std::scoped_lock lock(mutex_);
        return hasJobWritten_ && hasOtherWritten_;
    }

private:
    void wait() {
        using namespace std::chrono_literals;
        std::unique_lock lock(mutex_);
        if (std::this_thread::get_id() == job_) {
            hasJobWritten_ = isWritten_.wait_until(lock, end_, [this] { return hasOtherWritten_; });
            return;
        }
        lock.unlock();
        std::this_thread::sleep_for(1ms);
        lock.lock();
        hasOtherWritten_ = true;
        isWritten_.notify_all();
    }

    const std::thread::id job_ = std::this_thread::get_id();
    const std::chrono::steady_clock::time_point end_ =
        std::chrono::steady_clock::now() + std::chrono::seconds(10);
    mutable std::mutex mutex_;
    std::condition_variable isWritten_;
    bool hasJobWritten_ = false;
    bool hasOtherWritten_ = false;
    FaultInjection injection_;
};

/// This process may have some files open, but most of them are open already.
class FewDescriptors {
public:
    FewDescriptors(rlim_t most, std::size_t free) {
        getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit few{.rlim_cur = most, .rlim_max = before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
        for (int copy = dup(STDERR_FILENO); copy >= 0; copy = dup(STDERR_FILENO))
            taken_.push_back(copy);
        for (; free > 0 && !taken_.empty(); --free) {
            close(taken_.back());
            taken_.pop_back();
        }
    }
    ~FewDescriptors() {
        for (const int descriptor : taken_)
            close(descriptor);
        setrlimit(RLIMIT_NOFILE, &before_);
    }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

private:
    rlimit before_{};
    std::vector<int> taken_;
};

/// As long as it lives, all data of other threads waits so long that the job's has come to its end.
class LateHand {
public:
    LateHand()
        : injection_({.calls = {SystemCall::pwrite}, .before = [job = std::this_thread::get_id()] {
                          if (std::this_thread::get_id() != job)
                              std::this_thread::sleep_for(std::chrono::milliseconds(50));
                      }}) {}

private:
    FaultInjection injection_;
};

} // namespace

/// Small files are completed on another thread than the one that makes them.
class ExtractionOnTwoThreadsTest : public ExtractionFixture {
protected:
    /// Each file in a folder of its own.
    static std::string folderOf(int number) { return std::to_string(number); }
    static std::string nameOf(int number) { return "f" + std::to_string(number); }
    static std::string pathOf(int number) { return folderOf(number) + "/" + nameOf(number); }
    void fillArchive(int files) {
        archives.entries.clear();
        for (int i = 0; i < files; ++i)
            archives.entries.push_back(File::file(pathOf(i), "content " + std::to_string(i)));
    }
    static Tree wholeTarget(int files) {
        Tree whole;
        for (int i = 0; i < files; ++i) {
            whole.emplace(folderOf(i), "folder/");
            whole.emplace(pathOf(i), "content " + std::to_string(i));
        }
        return whole;
    }
};

TEST_F(ExtractionOnTwoThreadsTest, bothCompleteFilesAndAllAreTold) {
    constexpr int files = 300;
    fillArchive(files);
    const SlowHand hand;
    EXPECT_EQ(extract(), PairOutcome::done);
    EXPECT_TRUE(hand.haveBothWritten());
    EXPECT_THAT(context.errors, IsEmpty());
    EXPECT_EQ(target(), wholeTarget(files));
    EXPECT_EQ(context.doneFiles, files);
    EXPECT_EQ(context.doneBytes, context.totalBytes);
    EXPECT_THAT(undo(), IsEmpty());
    EXPECT_THAT(target(), IsEmpty());
}

TEST_F(ExtractionOnTwoThreadsTest, whatGivesWayIsWhole) {
    archives.entries = {File::file("a", "first"),   File::file("a", "second"),
                        File::file("x/1", "first"), File::file("x/2", "first"),
                        File::file("x", "second"),  File::file("y", "first"),
                        File::file("y/1", "second")};
    context.choice = ConflictChoice::overwrite;
    const FaultInjection slow({.calls = {SystemCall::pwrite}, .before = [] {
                                   std::this_thread::sleep_for(std::chrono::milliseconds(2));
                               }});
    EXPECT_EQ(extract(), PairOutcome::done);
    EXPECT_EQ(target(),
              (Tree{{"a", "second"}, {"x", "second"}, {"y", "folder/"}, {"y/1", "second"}}));
    EXPECT_EQ(std::ranges::count(trashed(), "first", &Tree::value_type::second), 4);
    EXPECT_THAT(undo(), IsEmpty());
    EXPECT_THAT(target(), IsEmpty());
}

TEST_F(ExtractionOnTwoThreadsTest, whatGaveWayComesBackWhenTheFileFailsAtItsEnd) {
    archives.entries = {File::file("a", "new")};
    write("target/a", "old");
    context.choice = ConflictChoice::overwrite;
    const FaultInjection fault({.calls = {SystemCall::futimens}, .errorCode = EIO});
    EXPECT_EQ(extract(), PairOutcome::failed);
    EXPECT_EQ(context.errors.size(), 1U);
    EXPECT_EQ(target(), (Tree{{"a", "old"}}));
    EXPECT_THAT(context.steps, IsEmpty());
}

TEST_F(ExtractionOnTwoThreadsTest, aFailureIsThatOfItsFile) {
    constexpr int files = 60;
    for (int number = 1; number <= files; number += 7) {
        std::filesystem::remove_all(temp.path("target"));
        fillArchive(files);
        extraction.selection.emplace();
        for (int i = 0; i < files; ++i)
            extraction.selection->push_back(folderOf(i));
        context.errors.clear();
        const SlowHand hand;
        const FaultInjection fault(
            {.calls = {SystemCall::pwrite}, .number = number, .errorCode = EIO});
        extract();
        const auto extracted = target();
        ASSERT_EQ(context.errors.size(), 1U);
        ASSERT_EQ(outcomes.size(), std::size_t{files});
        for (int i = 0; i < files; ++i) {
            const bool isThere = extracted.contains(pathOf(i));
            EXPECT_EQ(outcomes.at(static_cast<std::size_t>(i)),
                      isThere ? PairOutcome::done : PairOutcome::failed)
                << i;
            EXPECT_EQ(context.errors.front().starts_with("„" + nameOf(i) + "“"), !isThere) << i;
        }
    }
}

TEST_F(ExtractionOnTwoThreadsTest, aFailureIsToldBeforeTheNextLargeFile) {
    archives.entries = {File::file("small", "x"), File::file("large", std::string(100'000, 'x'))};
    const FaultInjection fault({.calls = {SystemCall::pwrite}, .number = 1, .errorCode = EIO});
    std::size_t toldBefore = 0;
    context.onBytes = [&](std::int64_t count) {
        if (count > 1)
            toldBefore = context.errors.size();
    };
    extract();
    EXPECT_EQ(toldBefore, 1U);
    EXPECT_EQ(context.errors.size(), 1U);
}

TEST_F(ExtractionOnTwoThreadsTest, whatCannotBeRemovedIsToldAndUndone) {
    fillArchive(2);
    {
        const FaultInjection fault({.calls = {SystemCall::pwrite}, .number = 1, .errorCode = EIO});
        const FaultInjection stuck({.calls = {SystemCall::unlinkat}, .errorCode = EIO});
        EXPECT_EQ(extract(), PairOutcome::failed);
    }
    ASSERT_EQ(context.errors.size(), 2U);
    EXPECT_TRUE(context.errors.front().starts_with("Rozpracovaný soubor „f"));
    EXPECT_EQ(target().size(), 4U);
    EXPECT_THAT(undo(), IsEmpty());
    EXPECT_THAT(target(), IsEmpty());
}

TEST_F(ExtractionOnTwoThreadsTest, aFullDiskIsToldWhateverFitsAndWhateverElseEndsTheArchive) {
    for (const bool isUnknownEncryption : {false, true}) {
        std::filesystem::remove_all(temp.path("target"));
        context.errors.clear();
        fillArchive(7);
        auto& last = archives.entries.back();
        last.blocks.clear();
        last.met.entry.size = 0; // an empty file needs no room
        if (isUnknownEncryption)
            last.error = {ArchiveError::Case::unsupportedEncryption, "x"};
        extraction.selection.emplace();
        for (int i = 0; i < 7; ++i)
            extraction.selection->push_back(folderOf(i));
        const LateHand hand;
        const FaultInjection fault({.calls = {SystemCall::pwrite}, .errorCode = ENOSPC});
        extract();
        EXPECT_THAT(context.errors, testing::Contains(testing::StartsWith("Na disku už není")));
        for (int i = 0; i < 6; ++i)
            EXPECT_EQ(outcomes.at(static_cast<std::size_t>(i)), PairOutcome::failed) << i;
    }
}

TEST_F(ExtractionOnTwoThreadsTest, stopsSoonAndKeepsAccountOfWhatIsThere) {
    constexpr int files = 300;
    fillArchive(files);
    int left = 100;
    context.onCheckpoint = [&] { context.cancelled = context.cancelled || --left == 0; };
    const SlowHand hand;
    EXPECT_EQ(extract(), PairOutcome::pending);
    const auto extracted = target();
    const auto whole = wholeTarget(files);
    EXPECT_TRUE(std::ranges::includes(whole, extracted));
    EXPECT_GT(extracted.size(), 1U);
    EXPECT_LT(extracted.size(), whole.size());
    context.cancelled = false;
    EXPECT_THAT(undo(), IsEmpty());
    EXPECT_THAT(target(), IsEmpty());
}

TEST_F(ExtractionOnTwoThreadsTest, doesWithFewOpenFiles) {
    constexpr int files = 200;
    fillArchive(files);
    {
        const SlowHand hand;
        const FewDescriptors few(100, 26);
        EXPECT_EQ(extract(), PairOutcome::done);
    }
    EXPECT_THAT(context.errors, IsEmpty());
    EXPECT_EQ(target(), wholeTarget(files));
}

} // namespace fennik::test
