#include "core/platform/TemporaryPlaces.h"

#include "tests/support/ManualExecutor.h"
#include "tests/support/TempFolder.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <memory>
#include <set>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace fennik::test {

namespace {

using std::filesystem::exists;
using std::filesystem::perms;
using testing::IsEmpty;
using testing::SizeIs;

class TemporaryPlacesTest : public testing::Test {
protected:
    std::unique_ptr<TemporaryPlaces> start() {
        return std::make_unique<TemporaryPlaces>(base, disk, 1000);
    }
    /// The folders of all runs.
    std::set<std::string> runs() const {
        std::set<std::string> found;
        if (exists(base.path())) {
            for (const auto& entry : std::filesystem::directory_iterator(base.path()))
                found.insert(entry.path().filename());
        }
        return found;
    }

    TempFolder temp;
    ManualExecutor disk;
    FileUrl base{temp.path("a/cache")};
};

} // namespace

TEST_F(TemporaryPlacesTest, aPlaceIsTheUsersAloneAndGoesWithTheLastWhoHoldsIt) {
    auto places = start();
    EXPECT_FALSE(exists(base.path())) << "nothing is made before it is needed";
    auto place = places->make().value();
    auto other = places->make().value();
    const auto folder = place->folder().path();
    EXPECT_NE(folder, other->folder().path());
    EXPECT_EQ(std::filesystem::status(folder).permissions(), perms::owner_all);
    EXPECT_EQ(std::filesystem::status(base.path()).permissions(), perms::owner_all);
    std::ofstream(folder + "/x") << "data";
    std::filesystem::permissions(folder + "/x", perms::owner_read);

    auto again = place;
    place.reset();
    disk.runAll();
    EXPECT_TRUE(exists(folder + "/x"));
    again.reset();
    EXPECT_TRUE(exists(folder + "/x")) << "whoever lets go of it must not wait for the disk";
    disk.runAll();
    EXPECT_FALSE(exists(folder));
    EXPECT_TRUE(exists(other->folder().path()));

    places->close();
    EXPECT_THAT(runs(), IsEmpty());
    EXPECT_FALSE(places->make());
}

TEST_F(TemporaryPlacesTest, whatAKilledRunHasLeftIsSweptAwayButNotWhatAnotherOneUses) {
    const auto mine = start();
    const auto kept = mine->make().value();
    const auto child = fork();
    if (child == 0) {
        const auto places = start();
        const auto place = places->make();
        std::ofstream(place.value()->folder().path() + "/x") << "data";
        _exit(0); // as a kill does: nothing is taken down
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    // Killed before it had its lock, and while it was being removed.
    temp.folder("a/cache/run-empty");
    temp.folder("a/cache/run-half/place");
    temp.folder("a/cache/of-somebody-else");
    ASSERT_THAT(runs(), SizeIs(5));

    const auto next = start();
    next->sweep();
    EXPECT_THAT(runs(), SizeIs(5)) << "whoever asks for it does not wait";
    disk.runAll();
    EXPECT_THAT(runs(), SizeIs(2));
    EXPECT_TRUE(exists(kept->folder().path()));
    EXPECT_TRUE(exists(temp.path("a/cache/of-somebody-else")));
}

TEST_F(TemporaryPlacesTest, aBaseThatCannotBeMadeIsAFailure) {
    temp.file("a");
    EXPECT_EQ(start()->make().error().code, ENOTDIR);
}

} // namespace fennik::test
