#include "app/model/PathCrumbs.h"

#include <gmock/gmock.h>

namespace fennik::test {

namespace {

using app::PathCrumbs;
using testing::ElementsAre;

const FileUrl home("/home/jana");

std::vector<std::string> titles(const PathCrumbs& crumbs) {
    std::vector<std::string> result;
    for (const auto& crumb : crumbs.crumbs)
        result.push_back(crumb.title);
    return result;
}

} // namespace

TEST(PathCrumbsTest, beginAtTheInnermostKnownPlace) {
    const auto below = PathCrumbs::of(FileUrl("/home/jana/a/b"), home, FileUrl());
    EXPECT_THAT(titles(below), ElementsAre("jana", "a", "b"));
    EXPECT_EQ(below.start, PathCrumbs::Start::home);
    EXPECT_EQ(below.crumbs[1].url.path(), "/home/jana/a");

    const auto beside = PathCrumbs::of(FileUrl("/home/janas"), home, FileUrl());
    EXPECT_THAT(titles(beside), ElementsAre("/", "home", "janas"));
    EXPECT_EQ(beside.start, PathCrumbs::Start::disk);

    const FileUrl volume("/media/jana/Záloha");
    EXPECT_THAT(titles(PathCrumbs::of(volume.appending("x"), home, volume)),
                ElementsAre("Záloha", "x"));
    EXPECT_THAT(titles(PathCrumbs::of(FileUrl("/proc/1"), home, FileUrl("/proc"))),
                ElementsAre("/", "proc", "1"));
    EXPECT_THAT(titles(PathCrumbs::of(FileUrl(), FileUrl(), FileUrl())), ElementsAre("/"));
}

} // namespace fennik::test
