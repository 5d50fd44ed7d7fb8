#include "core/platform/DetachedProgram.h"

#include "tests/support/DiskTree.h"
#include "tests/support/Processes.h"
#include "tests/support/TempFolder.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <string>
#include <thread>
#include <unistd.h>

namespace fennik {

namespace {

using namespace std::chrono_literals;
using test::contentOf;
using test::TempFolder;

constexpr auto ages = 10s; // never waited for unless something is broken

/// A script that is the program `name`.
std::string program(const TempFolder& temp, const std::string& name, const std::string& script) {
    temp.file(name, "#!/bin/sh\n" + script);
    std::filesystem::permissions(temp.path(name), std::filesystem::perms::owner_all);
    return temp.path(name);
}

int exitCodeOf(const DetachedProgram::Start& start) {
    const auto ending = DetachedProgram::start(start, ages);
    return ending && *ending ? (*ending)->exitCode.value_or(-1) : -1;
}

} // namespace

TEST(DetachedProgramTest, getsItsWordsAndFolderAndNothingOfThisProcess) {
    TempFolder temp;
    temp.folder("it's \xff");
    const auto folder = temp.path("it's \xff");
    const auto recorder =
        program(temp, "recorder",
                "exec >\"$1\"\nprintf '%s\\n' \"$2\" \"$PWD\" \"$DESKTOP_STARTUP_ID\" "
                "\"$XDG_ACTIVATION_TOKEN\" \"$FOREIGN\"\nls /proc/$$/fd | tr '\\n' ' '\n"
                // The highest ones belong to the C library.
                "grep SigIgn /proc/$$/status | tail -c 8\n"
                "[ $(cut -d' ' -f6 /proc/$$/stat) = $$ ] && readlink /proc/$$/fd/0\nexit 0");
    const int inheritable = open(temp.path("recorder").c_str(), O_RDONLY);
    setenv("XDG_ACTIVATION_TOKEN", "ours", 1);
    setenv("DESKTOP_STARTUP_ID", "ours", 1);
    setenv("FOREIGN", "theirs", 1);
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(exitCodeOf({.program = recorder,
                          .arguments = {temp.path("record"), "a b\n\xfe*$(id)"},
                          .folder = folder}),
              0);
    std::signal(SIGPIPE, before);
    close(inheritable);
    unsetenv("XDG_ACTIVATION_TOKEN");
    unsetenv("DESKTOP_STARTUP_ID");
    unsetenv("FOREIGN");
    EXPECT_EQ(contentOf(temp.path("record")),
              "a b\n\xfe*$(id)\n" + folder + "\n\n\ntheirs\n0 1 10 2 0000000\n/dev/null\n");
}

TEST(DetachedProgramTest, tellsWhyItDoesNotStart) {
    TempFolder temp;
    const auto script = program(temp, "script", "exit 3");
    EXPECT_EQ(exitCodeOf({.program = script, .folder = temp.url().path()}), 3);
    EXPECT_EQ(
        DetachedProgram::start({.program = script, .folder = temp.path("gone")}, ages).error(),
        PosixError{ENOENT});
    temp.file("data", "no program");
    EXPECT_EQ(
        DetachedProgram::start({.program = temp.path("data"), .folder = temp.url().path()}, ages)
            .error(),
        PosixError{EACCES});
}

TEST(DetachedProgramTest, leavesNothingBehindOnceItEnds) {
    TempFolder temp;
    const auto sleeper = program(temp, "sleeper", "echo $$ >\"$1\"; exec sleep 0.3");
    const auto ending = DetachedProgram::start(
        {.program = sleeper, .arguments = {temp.path("number")}, .folder = temp.url().path()},
        100ms);
    ASSERT_TRUE(ending);
    EXPECT_FALSE(*ending);
    const auto process = std::stoi(contentOf(temp.path("number")));
    const auto end = std::chrono::steady_clock::now() + ages;
    while (kill(process, 0) == 0 && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(10ms);
    EXPECT_EQ(kill(process, 0), -1);
}

TEST(DetachedProgramTest, findsWhatCanBeStarted) {
    TempFolder temp;
    const auto found = program(temp, "found", "");
    temp.file("data", "no program");
    temp.folder("folder");
    const std::string before(getenv("PATH"));
    setenv("PATH", (":.:/nowhere:" + temp.url().path()).c_str(), 1);
    EXPECT_EQ(DetachedProgram::find("found"), found);
    EXPECT_EQ(DetachedProgram::find(found), found);
    for (const auto* name : {"data", "folder", "missing", "", "/nowhere/found"})
        EXPECT_EQ(DetachedProgram::find(name), std::nullopt) << name;
    setenv("PATH", before.c_str(), 1);
}

} // namespace fennik
