#include "engines/drives/Mounts.h"

#include <catch2/catch.hpp>

namespace trackloom::engines::drives {

namespace {

/// The places of the distinct mounts, each with a semicolon behind it.
std::string placesOf(const std::string& mountinfo) {
  std::string places;
  for (const Mount& mount : distinctMounts(readMounts(mountinfo))) places += mount.place + ";";
  return places;
}

}  // namespace

TEST_CASE("A line of mounts is read with its optional words and its escapes") {
  const std::vector<Mount> mounts = readMounts(
      "22 1 8:2 / / rw,relatime shared:1 master:2 - ext4 /dev/sda2 rw\n"
      "40 22 0:35 /my\\040music /mnt/a\\040b\\134c\\011d rw - btrfs /dev/mapper/a\\040b rw,subvol=/x\n"
      "\n"
      "41 22 0:36 / /short rw\n"
      "x 22 0:37 / /bad rw - ext4 /dev/sdb1 rw\n"
      "44 x 0:40 / /bad/too rw - ext4 /dev/sdd1 rw\n"
      "45 22 0:41 / /early - ext4 /dev/sde1 rw\n"
      "42 22 0:38 / /no/source rw - ext4\n"
      "43 22 0:39 / /odd\\04 rw - ext4 /dev/sdc1");
  REQUIRE(mounts.size() == 3);
  CHECK(mounts[0].id == 22);
  CHECK(mounts[0].parent == Mount::None);
  CHECK(mounts[0].device == "8:2");
  CHECK(mounts[0].top == "/");
  CHECK(mounts[0].place == "/");
  CHECK(mounts[0].kind == "ext4");
  CHECK(mounts[0].source == "/dev/sda2");
  CHECK(mounts[1].parent == 22);
  CHECK(mounts[1].top == "/my music");
  CHECK(mounts[1].place == "/mnt/a b\\c\td");
  CHECK(mounts[1].source == "/dev/mapper/a b");
  CHECK(mounts[2].place == "/odd\\04");
}

TEST_CASE("Plain partitions are a drive each, by their places") {
  CHECK(placesOf("22 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
                 "30 22 8:3 / /home rw - ext4 /dev/sda3 rw\n"
                 "29 22 8:1 / /boot/efi rw - vfat /dev/sda1 rw\n") == "/;/boot/efi;/home;");
}

TEST_CASE("A mount that shows again what another one shows is no drive of its own, in whatever order they came") {
  CHECK(placesOf("22 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
                 "31 22 8:2 /srv/music /mnt/music rw - ext4 /dev/sda2 rw\n"
                 "32 22 8:2 / /mnt/all rw - ext4 /dev/sda2 rw\n") == "/;");
  CHECK(placesOf("22 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
                 "31 22 8:3 /music /mnt/music rw - ext4 /dev/sda3 rw\n"
                 "32 22 8:3 / /mnt/all rw - ext4 /dev/sda3 rw\n"
                 "33 22 8:3 /mus /mnt/mus rw - ext4 /dev/sda3 rw\n") == "/;/mnt/all;");
  CHECK(placesOf("22 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
                 "31 22 8:3 /music /mnt/music rw - ext4 /dev/sda3 rw\n"
                 "33 22 8:3 /music2 /mnt/music2 rw - ext4 /dev/sda3 rw\n") == "/;/mnt/music;/mnt/music2;");
}

TEST_CASE("Of two mounts that show the same the one that came first is the drive") {
  CHECK(placesOf("22 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
                 "31 22 8:3 / /b rw - ext4 /dev/sda3 rw\n"
                 "32 22 8:3 / /a rw - ext4 /dev/sda3 rw\n"
                 "33 22 8:3 / /c rw - ext4 /dev/sda3 rw\n") == "/;/b;");
}

TEST_CASE("A folder that another mount hides there is only reached where it is mounted apart") {
  for (const std::string around : {"", "/@"}) {
    const std::string top = around.empty() ? "/" : around;
    CHECK(placesOf("22 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
                   "31 22 0:30 " +
                   top +
                   " /mnt/all rw - btrfs /dev/sda3 rw\n"
                   "32 22 0:30 " +
                   around +
                   "/music /mnt/music rw - btrfs /dev/sda3 rw\n"
                   "33 31 0:50 / /mnt/all/music rw - tmpfs tmpfs rw\n") == "/;/mnt/all;/mnt/all/music;/mnt/music;");
  }
}

TEST_CASE("The first mount that a system ever made is told from what lies over none") {
  CHECK(placesOf("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                 "2 1 8:2 / /home rw - ext4 /dev/sda2 rw\n") == "/;/home;");
}

TEST_CASE("A folder of a drive that is mounted over itself is only reached as a drive of its own") {
  CHECK(placesOf("22 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
                 "31 22 8:2 /srv /srv rw - ext4 /dev/sda2 rw\n") == "/;/srv;");
}

TEST_CASE("Subvolumes of btrfs that are mounted apart are drives of their own") {
  CHECK(placesOf("22 1 0:30 /@ / rw - btrfs /dev/sda2 rw,subvol=/@\n"
                 "31 22 0:30 /@home /home rw - btrfs /dev/sda2 rw,subvol=/@home\n"
                 "32 22 0:30 /@/var/lib/machines /var/lib/machines rw - btrfs /dev/sda2 rw\n"
                 "33 22 0:30 /@home/u/music /mnt/music rw - btrfs /dev/sda2 rw\n") == "/;/home;/var/lib/machines;");
}

TEST_CASE("The whole of a btrfs that is mounted beside its subvolumes takes their place") {
  CHECK(placesOf("22 1 0:30 /@ / rw - btrfs /dev/mapper/luks rw,subvol=/@\n"
                 "31 22 0:30 /@home /home rw - btrfs /dev/mapper/luks rw,subvol=/@home\n"
                 "32 22 0:30 / /mnt/pool rw - btrfs /dev/mapper/luks rw\n") == "/mnt/pool;");
}

TEST_CASE("Sets of ZFS are file systems of their own") {
  CHECK(placesOf("22 1 0:24 / / rw - zfs rpool/ROOT/debian rw\n"
                 "31 22 0:40 / /home rw - zfs rpool/home rw\n"
                 "32 31 0:41 / /home/u rw - zfs rpool/home/u rw\n"
                 "33 22 0:41 /music /mnt rw - zfs rpool/home/u rw\n") == "/;/home;/home/u;");
}

TEST_CASE("What lies below another mount is no drive, and what lies on top is one") {
  const std::string text =
      "22 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
      "30 22 8:3 / /a rw - ext4 /dev/sda3 rw\n"
      "31 30 8:4 / /a/b rw - ext4 /dev/sda4 rw\n"
      "32 30 8:5 / /a rw - ext4 /dev/sda5 rw\n"
      "33 32 8:6 / /a/c rw - ext4 /dev/sda6 rw\n";
  CHECK(placesOf(text) == "/;/a;/a/c;");
  const std::vector<Mount> mounts = readMounts(text);
  CHECK(mountAt(mounts, "/a/b/x")->id == 32);
  CHECK(mountAt(mounts, "/a/c/x")->id == 33);
  CHECK(mountAt(mounts, "/ab")->id == 22);
  CHECK(mountAt(mounts, "/")->id == 22);
}

TEST_CASE("Mounts over what the process does not see, or over themselves, lie over nothing") {
  CHECK(placesOf("31 7 8:3 / /a rw - ext4 /dev/sda3 rw\n"
                 "32 32 8:4 / /b rw - ext4 /dev/sda4 rw\n") == "/a;/b;");
  CHECK(mountAt(readMounts("31 7 8:3 / /a rw - ext4 /dev/sda3 rw\n"), "/b") == nullptr);
  CHECK(placesOf("").empty());
}

}  // namespace trackloom::engines::drives
