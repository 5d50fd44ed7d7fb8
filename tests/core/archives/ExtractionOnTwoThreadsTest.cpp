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

namespace fennik::test {

namespace {

using testing::IsEmpty;
using File = ScriptedEntry;

/// As long as it lives, the data of small files is written only by the other thread, and slowly.
class SlowHand {
public:
    SlowHand() : injection_({.calls = {SystemCall::pwrite}, .before = [this] { wait(); }}) {}

    bool hasWritten() const {
        const std::scoped_lock lock(mutex_);
        return hasWritten_;
    }

private:
    void wait() {
        using namespace std::chrono_literals;
        std::unique_lock lock(mutex_);
        if (std::this_thread::get_id() == job_) {
            isWritten_.wait_for(lock, 10s, [this] { return hasWritten_; });
            return;
        }
        lock.unlock();
        std::this_thread::sleep_for(1ms);
        lock.lock();
        hasWritten_ = true;
        isWritten_.notify_all();
    }

    const std::thread::id job_ = std::this_thread::get_id();
    mutable std::mutex mutex_;
    std::condition_variable isWritten_;
    bool hasWritten_ = false;
    FaultInjection injection_;
};

/// So that hardly any file of many may be open at once.
class FewDescriptors {
public:
    explicit FewDescriptors(rlim_t most) {
        getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit few{.rlim_cur = most, .rlim_max = before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
    }
    ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

private:
    rlimit before_{};
};

} // namespace

/// Small files are completed on another thread than the one that makes them.
class ExtractionOnTwoThreadsTest : public ExtractionFixture {
protected:
    static std::string nameOf(int number) { return "d/" + std::to_string(number); }
    void fillArchive(int files) {
        archives.entries.clear();
        for (int i = 0; i < files; ++i)
            archives.entries.push_back(File::file(nameOf(i), "content " + std::to_string(i)));
    }
    static Tree wholeTarget(int files) {
        Tree whole{{"d", "folder/"}};
        for (int i = 0; i < files; ++i)
            whole.emplace(nameOf(i), "content " + std::to_string(i));
        return whole;
    }
};

TEST_F(ExtractionOnTwoThreadsTest, bothCompleteFilesAndAllAreTold) {
    constexpr int files = 300;
    fillArchive(files);
    const SlowHand hand;
    EXPECT_EQ(extract(), PairOutcome::done);
    EXPECT_TRUE(hand.hasWritten());
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
    for (const auto& [path, content] : trashed())
        EXPECT_THAT(content, testing::AnyOf("first", "folder/")) << path;
    EXPECT_EQ(std::ranges::count(trashed(), "first", &Tree::value_type::second), 4);
    EXPECT_THAT(undo(), IsEmpty());
    EXPECT_THAT(target(), IsEmpty());
}

TEST_F(ExtractionOnTwoThreadsTest, aFailureIsThatOfItsFile) {
    constexpr int files = 60;
    for (int number = 1; number <= files; number += 7) {
        std::filesystem::remove_all(temp.path("target"));
        fillArchive(files);
        extraction.selection.emplace();
        for (int i = 0; i < files; ++i)
            extraction.selection->push_back(nameOf(i));
        context.errors.clear();
        const SlowHand hand;
        const FaultInjection fault(
            {.calls = {SystemCall::pwrite}, .number = number, .errorCode = EIO});
        extract();
        const auto extracted = target();
        ASSERT_EQ(context.errors.size(), 1U);
        ASSERT_EQ(outcomes.size(), std::size_t{files});
        for (int i = 0; i < files; ++i) {
            const auto name = std::to_string(i);
            const bool isThere = extracted.contains(name);
            EXPECT_EQ(outcomes.at(static_cast<std::size_t>(i)),
                      isThere ? PairOutcome::done : PairOutcome::failed)
                << name;
            EXPECT_EQ(context.errors.front().starts_with("„" + name + "“"), !isThere) << name;
        }
    }
}

TEST_F(ExtractionOnTwoThreadsTest, stopsAtOnceAndKeepsAccountOfWhatIsThere) {
    fillArchive(300);
    int left = 100;
    context.onCheckpoint = [&] { context.cancelled = context.cancelled || --left == 0; };
    const SlowHand hand;
    EXPECT_EQ(extract(), PairOutcome::pending);
    const auto extracted = target();
    const auto whole = wholeTarget(300);
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
        const FewDescriptors few(32);
        EXPECT_EQ(extract(), PairOutcome::done);
    }
    EXPECT_THAT(context.errors, IsEmpty());
    EXPECT_EQ(target(), wholeTarget(files));
}

} // namespace fennik::test
