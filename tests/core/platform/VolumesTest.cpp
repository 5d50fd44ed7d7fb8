#include "core/platform/Volumes.h"

#include "tests/support/TempFolder.h"

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

/// A description of devices as the kernel gives it.
class AutomaticSizesTest : public testing::Test {
protected:
    /// A device at `place` below "devices", known by its number and its name.
    void device(const std::string& number, const std::string& place) {
        const auto folder = "devices/" + place;
        tree.folder(folder);
        tree.folder("dev/block");
        tree.folder("class/block");
        tree.link("dev/block/" + number, "../../" + folder);
        tree.link("class/block/" + folder.substr(folder.rfind('/') + 1), "../../" + folder);
    }
    /// `upper` is made of the device at `lower`.
    void stack(const std::string& upper, const std::string& lower) {
        const auto slaves = "devices/" + upper + "/slaves";
        tree.folder(slaves);
        tree.link(slaves + "/" + lower.substr(lower.rfind('/') + 1), tree.path("devices/" + lower));
    }
    bool allows(const std::string& number, const std::string& type = "ext4",
                const std::string& source = "none") const {
        return Volumes::allowsAutomaticSizes({"/mnt", type, false, number, source},
                                             tree.url().path());
    }

    TempFolder tree;
    const std::string sata = "pci0000:00/0000:00:17.0/ata1/host0/target0:0:0/0:0:0:0/block/sda";
    const std::string stick = "pci0000:00/0000:00:14.0/usb1/1-2/1-2:1.0/host6/block/sdb";
};

TEST_F(AutomaticSizesTest, builtInDisksAllowThemThroughEveryLayer) {
    device("8:0", sata);
    device("8:2", sata + "/sda2");
    tree.file("devices/" + sata + "/removable", "0\n");
    tree.folder("devices/" + sata + "/slaves"); // there and empty, as for every disk
    EXPECT_TRUE(allows("8:0"));
    EXPECT_TRUE(allows("8:2"));

    device("253:0", "virtual/block/dm-0"); // encryption
    stack("virtual/block/dm-0", sata + "/sda2");
    device("253:1", "virtual/block/dm-1"); // a logical volume in it
    stack("virtual/block/dm-1", "virtual/block/dm-0");
    EXPECT_TRUE(allows("253:1"));
    EXPECT_TRUE(allows("0:30", "btrfs", "/dev/sda2"));
}

TEST_F(AutomaticSizesTest, whatCanBeTakenAwayDoesNotAllowThem) {
    device("8:16", stick);
    device("8:17", stick + "/sdb1");
    tree.file("devices/" + stick + "/removable", "0\n"); // disks in a case say so
    EXPECT_FALSE(allows("8:17"));
    EXPECT_FALSE(allows("0:31", "btrfs", "/dev/sdb1"));

    device("253:2", "virtual/block/dm-2"); // one volume over both disks
    device("8:0", sata);
    stack("virtual/block/dm-2", sata);
    EXPECT_TRUE(allows("253:2"));
    stack("virtual/block/dm-2", stick + "/sdb1");
    EXPECT_FALSE(allows("253:2"));

    device("11:0", "pci0000:00/ata2/block/sr0");
    tree.file("devices/pci0000:00/ata2/block/sr0/removable", "1\n");
    EXPECT_FALSE(allows("11:0"));
    device("179:1", "pci0000:00/mmc0/mmc0:0001/block/mmcblk0/mmcblk0p1");
    EXPECT_TRUE(allows("179:1")) << "soldered in";
    tree.file("devices/pci0000:00/mmc0/mmc0:0001/type", "SD\n");
    EXPECT_FALSE(allows("179:1"));
    device("259:0", "pci0000:00/0000:03:00.0/nvme/nvme0/nvme0n1");
    EXPECT_TRUE(allows("259:0"));
    tree.file("devices/pci0000:00/0000:03:00.0/removable", "removable\n");
    EXPECT_FALSE(allows("259:0")) << "at the end of a cable";
}

TEST_F(AutomaticSizesTest, withoutADiskOnlyMemoryAndLayersAllowThem) {
    device("7:0", "virtual/block/loop0");
    device("43:0", "virtual/block/nbd0");
    device("253:0", "virtual/block/zram0");
    device("8:32", "platform/host3/session1/target3:0:0/3:0:0:1/block/sdc");
    EXPECT_FALSE(allows("7:0"));
    EXPECT_FALSE(allows("43:0"));
    EXPECT_FALSE(allows("8:32"));
    EXPECT_TRUE(allows("253:0"));
    EXPECT_FALSE(allows("8:99")) << "not described at all";
    EXPECT_TRUE(allows("0:40", "tmpfs"));
    EXPECT_TRUE(allows("0:41", "overlay"));
    for (const auto* type : {"proc", "sysfs", "cgroup2", "devtmpfs", "debugfs", ""})
        EXPECT_FALSE(allows("0:42", type)) << type;
    EXPECT_FALSE(Volumes::allowsAutomaticSizes({"/n", "nfs4", true, "0:43", "server:/"}));
}

TEST(VolumesTest, theKernelsOwnFileSystemsAreNotEnteredUnasked) {
    const auto excluded = Volumes::withoutAutomaticSizes(Volumes::mounted());
    EXPECT_TRUE(excluded.contains("/proc"));
    // The upper one of two mounts on the same place counts.
    const Volume memory{"/m", "tmpfs", false, "0:50", "none"};
    const Volume network{"/m", "nfs4", true, "0:51", "server:/"};
    EXPECT_TRUE(Volumes::withoutAutomaticSizes({memory, network}).contains("/m"));
    EXPECT_FALSE(Volumes::withoutAutomaticSizes({network, memory}).contains("/m"));
}

} // namespace fennik::test
