#include "platform/linux/mounted_volumes.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace quorrix {
namespace {

using Paths = std::vector<Path>;

Paths volumesOf(const std::string& mountinfo) {
  std::istringstream mounts(mountinfo);
  return mountedVolumes(mounts);
}

TEST(MountedVolumes, AreTheRootAtLeast) {
  EXPECT_EQ(volumesOf(""), Paths{"/"});
  EXPECT_EQ(volumesOf("23 1 0:22 / / rw - overlay overlay rw,lowerdir=/a\n"), Paths{"/"});
}

TEST(MountedVolumes, AreDisksAndSticks) {
  EXPECT_EQ(
      volumesOf("27 1 254:0 / / rw,relatime - ext4 /dev/vda rw\n"
                "40 27 8:17 / /media/ann/STICK rw shared:5 - vfat /dev/sdb1 rw\n"
                "41 27 8:18 / /run/media/ann/disc ro shared:6 master:1 - iso9660 /dev/sr0 ro\n"
                "42 27 0:44 /@home /home rw - btrfs /dev/sda2 rw,subvol=/@home\n"
                "43 27 8:19 / /data rw - fuseblk /dev/sdc1 rw\n"),
      (Paths{"/", "/data", "/home", "/media/ann/STICK", "/run/media/ann/disc"}));
}

TEST(MountedVolumes, AreSharesAndPools) {
  EXPECT_EQ(volumesOf("50 27 0:50 / /srv/team rw - nfs4 server:/team rw\n"
                      "51 27 0:51 / /home/ann/remote rw - fuse.sshfs ann@host: rw\n"
                      "52 27 0:52 / /mnt/share rw - cifs //host/share rw\n"
                      "53 27 0:53 / /tank rw - zfs tank rw\n"),
            (Paths{"/", "/home/ann/remote", "/mnt/share", "/srv/team", "/tank"}));
}

TEST(MountedVolumes, AreMemoryOnlyWhereUsersMount) {
  EXPECT_EQ(volumesOf("60 27 0:60 / /tmp rw - tmpfs tmpfs rw\n"
                      "61 27 0:61 / /mnt/fast rw - tmpfs tmpfs rw\n"
                      "62 27 0:62 / /media rw - tmpfs tmpfs rw\n"
                      "63 27 0:63 / /run/user/1000 rw - tmpfs tmpfs rw\n"
                      "64 27 0:64 / /mnty rw - tmpfs tmpfs rw\n"),
            (Paths{"/", "/media", "/mnt/fast"}));
}

TEST(MountedVolumes, AreNothingThatBelongsToTheSystem) {
  EXPECT_EQ(volumesOf("22 27 0:21 / /proc rw - proc proc rw\n"
                      "23 27 0:22 / /sys rw - sysfs sysfs rw\n"
                      "24 27 0:6 / /dev rw - devtmpfs devtmpfs rw\n"
                      "25 24 0:23 / /dev/shm rw - tmpfs tmpfs rw\n"
                      "26 23 0:24 / /sys/fs/cgroup rw - cgroup2 cgroup2 rw\n"
                      "27 27 8:1 / /boot/efi rw - vfat /dev/sda1 rw\n"
                      "28 27 7:1 / /snap/core/1 ro - squashfs /dev/loop1 ro\n"
                      "29 27 0:30 / /var/lib/docker/overlay2/x/merged rw - overlay overlay rw\n"
                      "30 27 8:2 /hosts /etc/hosts rw - ext4 /dev/sda2 rw\n"
                      "31 27 0:31 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw\n"
                      "32 27 0:32 / /home/ann/doc rw - fuse.portal portal rw\n"),
            Paths{"/"});
}

TEST(MountedVolumes, AreListedOnceEach) {
  EXPECT_EQ(volumesOf("50 27 0:50 / /mnt/a rw - nfs one:/ rw\n"
                      "51 50 0:51 / /mnt/a rw - nfs two:/ rw\n"),
            (Paths{"/", "/mnt/a"}));
}

TEST(MountedVolumes, KeepTheBytesOfTheirNames) {
  EXPECT_EQ(volumesOf("50 27 8:17 / /media/My\\040Disk\\134x\\011y\\012z rw - vfat /dev/sdb1 rw\n"
                      "51 27 8:18 / /media/caf\xE9 rw - vfat /dev/sdb2 rw\n"
                      "52 27 8:19 / /media/\\9 rw - vfat /dev/sdb3 rw\n"),
            (Paths{"/", "/media/My Disk\\x\ty\nz", "/media/\\9", "/media/caf\xE9"}));
}

TEST(MountedVolumes, SkipWhatIsNoMount) {
  EXPECT_EQ(volumesOf("\n"
                      "50 27 8:17 / /mnt/cut\n"
                      "51 27 8:18 / /mnt/cut rw -\n"
                      "52 27 8:19 / /mnt/whole rw - ext4 /dev/sdb1 rw"),
            (Paths{"/", "/mnt/whole"}));
}

}  // namespace
}  // namespace quorrix
