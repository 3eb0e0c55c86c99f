// Which lines of the mount table are volumes.
#include "file_manager/volumes/mounts.h"

#include <gtest/gtest.h>

namespace {

using carbon::IsOnNetwork;
using carbon::IsVolume;
using carbon::ParseMountInfo;

std::vector<std::string> VolumesIn(const std::string& inText) {
    std::vector<std::string> points;
    for (const auto& mount : ParseMountInfo(inText)) {
        if (IsVolume(mount)) points.push_back(mount.point);
    }
    return points;
}

TEST(Mounts, AreParsedWithTagsEscapesAndOptions) {
    const auto mounts = ParseMountInfo(
        "36 35 98:0 /sub /mnt/My\\040Disk rw,noatime shared:1 master:2 - ext4 /dev/sd\\134a "
        "ro,errors=x\n");
    ASSERT_EQ(mounts.size(), 1u);
    EXPECT_EQ(mounts[0].point, "/mnt/My Disk");
    EXPECT_EQ(mounts[0].root, "/sub");
    EXPECT_EQ(mounts[0].type, "ext4");
    EXPECT_EQ(mounts[0].source, "/dev/sd\\a");
    EXPECT_TRUE(mounts[0].isReadOnly);
}

TEST(Mounts, LeaveOutLinesThatMakeNoSense) {
    EXPECT_TRUE(ParseMountInfo("").empty());
    EXPECT_TRUE(ParseMountInfo("36 35 98:0 / /mnt rw shared:1 ext4 /dev/sda rw\n").empty());
    EXPECT_TRUE(ParseMountInfo("- - - - - -\n\n x\n").empty());
    EXPECT_TRUE(ParseMountInfo("36 35 98:0 / relative rw - ext4 /dev/sda rw\n").empty());
}

TEST(Mounts, OfADesktopAreItsDisksAndNotTheSystemsOwn) {
    EXPECT_EQ(VolumesIn("22 27 0:21 / /proc rw - proc proc rw\n"
                        "23 27 0:22 / /sys rw - sysfs sysfs rw\n"
                        "27 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
                        "28 27 0:25 / /run rw - tmpfs tmpfs rw\n"
                        "29 27 0:26 / /dev/shm rw - tmpfs tmpfs rw\n"
                        "30 27 7:1 / /snap/core/1 ro - squashfs /dev/loop1 ro\n"
                        "31 27 8:3 / /home rw - xfs /dev/sda3 rw\n"
                        "32 27 0:40 / /tmp rw - tmpfs tmpfs rw\n"
                        "33 28 8:17 / /run/media/u/STICK rw - vfat /dev/sdb1 rw\n"
                        "34 27 0:41 / /var/lib/docker/overlay2/x/merged rw - overlay overlay rw\n"
                        "35 27 0:42 / /net rw - nfs4 server:/export rw\n"),
              (std::vector<std::string>{"/", "/home", "/tmp", "/run/media/u/STICK", "/net"}));
}

TEST(Mounts, OfAContainerHaveItsRoot) {
    EXPECT_EQ(VolumesIn("600 500 0:50 / / rw - overlay overlay rw,lowerdir=x\n"
                        "601 600 0:51 / /proc rw - proc proc rw\n"),
              (std::vector<std::string>{"/"}));
}

TEST(Mounts, KnowWhichFileSystemsAreRemote) {
    const auto mounts = ParseMountInfo(
        "1 0 0:1 / /a rw - nfs s:/x rw\n2 0 0:2 / /b rw - fuse.sshfs u@h: rw\n"
        "3 0 8:1 / /c rw - ext4 /dev/sda1 rw\n");
    EXPECT_TRUE(IsOnNetwork(mounts[0]));
    EXPECT_TRUE(IsOnNetwork(mounts[1]));
    EXPECT_FALSE(IsOnNetwork(mounts[2]));
}

TEST(MountWatch, TellsOfTheFirstTimeAndThenOnlyOfChanges) {
    carbon::MountWatch watch;
    EXPECT_TRUE(watch.HasChanged());
    EXPECT_FALSE(watch.HasChanged());
    EXPECT_FALSE(watch.Read().empty());
    watch.Forget();
    EXPECT_TRUE(watch.HasChanged());
}

}  // namespace
