#include "core/platform/OpenFolder.h"

#include "tests/support/SystemCallFaults.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace fennik::test {

namespace {

std::string contentOf(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

OpenFolder opened(const std::string& path) {
    return OpenFolder::open(path, FollowLinks::no).value();
}

} // namespace

class OpenFolderTest : public testing::Test {
protected:
    TempFolder temp;
};

TEST_F(OpenFolderTest, aNewFileIsCompleteOrNotThereWhateverFails) {
    const std::string content(1000, 'x');
    std::expected<void, PosixError> made;
    const Trial trial{
        .prepare = [&] { std::filesystem::remove(temp.path("new")); },
        .act = [&] { made = opened(temp.url().path()).makeFile("new", content, 0600); },
        .check =
            [&] {
                EXPECT_EQ(std::filesystem::exists(temp.path("new")), made.has_value());
                if (made) {
                    EXPECT_EQ(contentOf(temp.path("new")), content);
                }
            }};
    EXPECT_GE(forEachCall({.calls = {SystemCall::openat, SystemCall::write, SystemCall::fsync,
                                     SystemCall::unlinkat},
                           .errorCode = ENOSPC},
                          trial),
              3);
    // What is small, and what a signal interrupts, goes on.
    const FaultInjection inPieces({.calls = {SystemCall::write}, .mostBytes = 7});
    const FaultInjection interrupted(
        {.calls = {SystemCall::write}, .number = 3, .errorCode = EINTR});
    trial.prepare();
    trial.act();
    ASSERT_TRUE(made);
    EXPECT_EQ(inPieces.calls(), 144);
    trial.check();
}

TEST_F(OpenFolderTest, anEndedProcessLeavesThePartOfAFileUnderItsOwnNameOnly) {
    temp.file("other", "stays");
    const int struck = forEachCall(
        {.endsProcess = true},
        {.prepare = [&] { std::filesystem::remove(temp.path("new")); },
         .act =
             [&] { static_cast<void>(opened(temp.url().path()).makeFile("new", "content", 0600)); },
         .check = [&] { EXPECT_EQ(contentOf(temp.path("other")), "stays"); }});
    EXPECT_GE(struck, 4); // the folder, the file, its data, the disk
    EXPECT_EQ(contentOf(temp.path("new")), "content");
}

} // namespace fennik::test
