#include "core/platform/Volumes.h"

#include <gtest/gtest.h>

namespace fennik::test {

TEST(VolumesTest, findsTheInnermostVolumeByWholeComponents) {
    const std::vector<Volume> volumes{
        {"/", "ext4", false}, {"/mnt/a", "ext4", false}, {"/mnt/a", "nfs4", true}};
    EXPECT_EQ(Volumes::containing("/mnt/a/x", volumes).type, "nfs4");
    EXPECT_EQ(Volumes::containing("/mnt/a", volumes).type, "nfs4");
    EXPECT_EQ(Volumes::containing("/mnt/ab", volumes).mountPoint, "/");
    EXPECT_EQ(Volumes::containing("/x", {}).mountPoint, "/");
}

TEST(VolumesTest, theKernelsTableHasTheProcessFolder) {
    EXPECT_EQ(Volumes::containing("/proc/self", Volumes::mounted()).type, "proc");
}

} // namespace fennik::test
