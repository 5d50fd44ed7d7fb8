#include "core/platform/ChildProcess.h"

#include "core/platform/posix/Descriptor.h"
#include "tests/support/Processes.h"
#include "tests/support/TempFolder.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace fennik {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using test::descriptorsOf;
using test::isAlive;
using test::TempFolder;

constexpr auto ages = 10s; // never waited for unless something is broken

ChildProcess shell(const std::string& script, int descriptor = -1) {
    auto started = ChildProcess::start(
        {.program = "/bin/sh", .arguments = {"-c", script}, .descriptor = descriptor});
    EXPECT_TRUE(started);
    return std::move(*started);
}

std::string textOf(std::span<const std::byte> bytes) {
    std::string text(bytes.size(), '\0');
    std::memcpy(text.data(), bytes.data(), bytes.size());
    return text;
}

/// What the process writes until `end`, or until it writes no more.
std::string outputUntil(ChildProcess& child, std::string_view end = {}) {
    std::string output;
    std::array<std::byte, 4096> buffer{};
    while (true) {
        const auto count = child.read(buffer, ages);
        EXPECT_TRUE(count);
        if (!count || *count == 0)
            return output;
        output += textOf(std::span(buffer).first(*count));
        if (!end.empty() && output.ends_with(end))
            return output;
    }
}

void writeText(ChildProcess& child, std::string_view text) {
    const auto written = child.write(std::as_bytes(std::span(text)), ages);
    ASSERT_TRUE(written);
    EXPECT_EQ(*written, text.size());
}

/// One that waits with all that it was given, and its number.
ChildProcess waiting(std::string& process, int descriptor = -1) {
    auto child = shell("echo $$; exec cat", descriptor);
    writeText(child, "ready\n");
    // By then it opens no files of its own any more.
    const auto output = outputUntil(child, "ready\n");
    process = output.substr(0, output.find('\n'));
    return child;
}

} // namespace

TEST(ChildProcessTest, talksToAProgramThroughPipesAndTellsHowItEnds) {
    auto started = ChildProcess::start({.program = "/bin/sh",
                                        .arguments = {"-c", "echo $WHO; cat; exit 7"},
                                        .environment = {{"WHO", "world"}}});
    ASSERT_TRUE(started);
    writeText(*started, "and back\n");
    started->closeInput();
    EXPECT_EQ(outputUntil(*started), "world\nand back\n");
    const auto ending = started->wait(ages);
    ASSERT_TRUE(ending);
    EXPECT_EQ(ending->exitCode, 7);

    auto killed = shell("kill -SEGV $$");
    EXPECT_EQ(outputUntil(killed), "");
    const auto signalled = killed.wait(ages);
    ASSERT_TRUE(signalled);
    EXPECT_EQ(signalled->exitCode, std::nullopt);
    EXPECT_EQ(signalled->signal, SIGSEGV);
}

TEST(ChildProcessTest, saysWhyAProgramCannotBeStarted) {
    const TempFolder folder;
    folder.file("no program");
    EXPECT_EQ(ChildProcess::start({.program = folder.path("nothing")}).error().code, ENOENT);
    EXPECT_EQ(ChildProcess::start({.program = folder.path("no program")}).error().code, EACCES);
}

TEST(ChildProcessTest, waitsNoLongerThanItIsTold) {
    auto silent = shell("exec sleep 1000");
    std::array<std::byte, 16> buffer{};
    const auto begin = steady_clock::now();
    EXPECT_EQ(silent.read(buffer, 20ms).error().code, EAGAIN);
    EXPECT_EQ(silent.wait(20ms), std::nullopt);

    // Nobody reads what is written, and a pipe holds little.
    const std::vector<std::byte> much(std::size_t{4} << 20);
    const auto some = silent.write(much, ages);
    ASSERT_TRUE(some);
    EXPECT_LT(*some, much.size());
    EXPECT_EQ(silent.write(much, 20ms).error().code, EAGAIN);
    EXPECT_LT(steady_clock::now() - begin, 5s);
}

TEST(ChildProcessTest, raisesNoSignalWhereNobodyReads) {
    auto deaf = shell("exec <&-; echo deaf; exec sleep 1000");
    outputUntil(deaf, "deaf\n");
    const std::array<std::byte, 1> byte{};
    EXPECT_EQ(deaf.write(byte, ages).error().code, EPIPE);

    // A signal that waits already is somebody else's.
    sigset_t pipes;
    sigset_t before;
    sigemptyset(&pipes);
    sigaddset(&pipes, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipes, &before);
    pthread_kill(pthread_self(), SIGPIPE);
    EXPECT_EQ(deaf.write(byte, ages).error().code, EPIPE);
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 1);
    int taken = 0;
    sigwait(&pipes, &taken);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST(ChildProcessTest, endsTheProgramWithItsObject) {
    std::string process;
    {
        auto stubborn = shell("trap '' TERM HUP INT; echo $$; while :; do :; done");
        process = outputUntil(stubborn, "\n");
        process.pop_back();
        EXPECT_TRUE(isAlive(process));
    }
    EXPECT_FALSE(isAlive(process));
}

TEST(ChildProcessTest, givesTheProgramItsPipesAndOneFileAlone) {
    const TempFolder folder;
    folder.file("given", "content");
    // One that any program would inherit, and one whose number the pipes take in the child.
    const Descriptor inheritable(open("/etc/passwd", O_RDONLY));
    const Descriptor given(open(folder.path("given").c_str(), O_RDONLY | O_CLOEXEC));
    std::string process;
    const auto child = waiting(process, given.number());
    auto found = descriptorsOf(process);
    EXPECT_EQ(found.size(), 4);
    EXPECT_TRUE(found[0].starts_with("pipe:"));
    EXPECT_TRUE(found[1].starts_with("pipe:"));
    EXPECT_EQ(found[2], "/dev/null");
    EXPECT_EQ(found[3], folder.path("given"));
    EXPECT_GE(fcntl(given.number(), F_GETFD), 0) << "it stays open here";
}

TEST(ChildProcessTest, worksInAProcessWithoutStandardStreams) {
    const TempFolder folder;
    folder.file("given", "content");
    // All of the low numbers are free, and so are taken by what is opened first.
    const pid_t process = fork();
    if (process == 0) {
        for (int number = 0; number < 10; ++number)
            close(number);
        const int given = open(folder.path("given").c_str(), O_RDONLY | O_CLOEXEC);
        auto child = ChildProcess::start(
            {.program = "/bin/sh", .arguments = {"-c", "cat; cat <&3"}, .descriptor = given});
        std::string output;
        std::array<std::byte, 64> buffer{};
        if (child) {
            [[maybe_unused]] const auto written =
                child->write(std::as_bytes(std::span("in ", 3)), ages);
            child->closeInput();
            for (auto count = child->read(buffer, ages); count && *count > 0;
                 count = child->read(buffer, ages))
                output += textOf(std::span(buffer).first(*count));
        }
        _exit(given == 0 && output == "in content" ? 0 : 1);
    }
    int status = -1;
    waitpid(process, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST(ChildProcessTest, keepsTheDescriptorsOfOneOutOfTheOthersThatStartAtTheSameTime) {
    constexpr int threads = 4;
    constexpr int rounds = 25;
    std::atomic<int> withOthers = 0;
    {
        std::vector<std::jthread> starters;
        for (int i = 0; i < threads; ++i)
            starters.emplace_back([&] {
                for (int round = 0; round < rounds; ++round) {
                    std::string process;
                    auto child = waiting(process);
                    withOthers += descriptorsOf(process).size() != 3;
                    // It would never come to its end, had another one inherited its input.
                    child.closeInput();
                    withOthers += !child.wait(ages);
                }
            });
    }
    EXPECT_EQ(withOthers, 0);
}

} // namespace fennik
