#include "engines/drives/LinuxDrives.h"

#include <catch2/catch.hpp>

#include "fakes/FakePatience.h"
#include "fakes/TempFolder.h"

namespace trackloom::engines::drives {

namespace {

/// A system of the test's own, with the block devices and the mounts that it is told to have.
class System {
 public:
  /// A disk in sys, below it a partition; both known by number and name.
  void addDisk(const std::string& disk, const std::string& partition, const std::string& number, bool removable) {
    const std::string home = "devices/pci/block/" + disk;
    folder.write("sys/" + home + "/removable", removable ? "1\n" : "0\n");
    know(home, disk, "");
    if (!partition.empty()) know(home + "/" + partition, partition, number);
    if (partition.empty()) know(home, disk, number);
  }
  /// A device that is made of others, as LVM and LUKS make them.
  void addMapped(const std::string& name, const std::string& number, const std::string& slave) {
    const std::string home = "devices/virtual/block/" + name;
    folder.write("sys/" + home + "/removable", "0\n");
    std::filesystem::create_directories(folder / ("sys/" + home + "/slaves"));
    std::filesystem::create_symlink(std::filesystem::canonical(folder / ("sys/class/block/" + slave)),
                                    folder / ("sys/" + home + "/slaves/" + slave));
    know(home, name, number);
  }
  void mount(const std::string& place, const std::string& device, const std::string& kind, const std::string& source) {
    const std::string ids = place == "/" ? "10 1 " : std::to_string(++id_) + " 10 ";
    mounts_ += ids + device + " / " + place + " rw - " + kind + " " + source + " rw\n";
    folder.write("proc/self/mountinfo", mounts_);
  }
  int typeOf(const std::string& place) {
    drives.LogicalDriveRoots();
    return drives.DriveType(place);
  }

  fakes::TempFolder folder;
  fakes::FakePatience patience;
  LinuxDrives drives{patience, HostPath(folder.path())};

 private:
  void know(const std::string& home, const std::string& name, const std::string& number) {
    for (const std::string& at : {home, std::string("class/block"), std::string("dev/block")})
      std::filesystem::create_directories(folder / ("sys/" + at));
    link(home, "class/block/" + name);
    if (!number.empty()) link(home, "dev/block/" + number);
  }
  void link(const std::string& home, const std::string& name) {
    const std::string path = folder / ("sys/" + name);
    if (!std::filesystem::is_symlink(path)) std::filesystem::create_symlink(folder / ("sys/" + home), path);
  }

  std::string mounts_;
  int id_ = 20;
};

}  // namespace

TEST_CASE("The roots of all drives stand in one text, each with its NUL, and one more at the end") {
  using namespace std::string_literals;
  System system;
  CHECK(system.drives.LogicalDriveRoots() == "\0"s);
  system.mount("/", "8:2", "ext4", "/dev/sda2");
  system.mount("/home", "8:3", "ext4", "/dev/sda3");
  CHECK(system.drives.LogicalDriveRoots() == "/\0/home\0\0"s);
}

TEST_CASE("Partitions of a fixed disk are fixed, those of a removable one are removable") {
  System system;
  system.addDisk("sda", "sda1", "8:1", false);
  system.addDisk("sdb", "sdb1", "8:17", true);
  system.addDisk("sdc", "", "8:32", true);
  system.mount("/", "8:1", "ext4", "/dev/sda1");
  system.mount("/media/stick", "8:17", "vfat", "/dev/sdb1");
  system.mount("/media/whole", "8:32", "exfat", "/dev/sdc");
  CHECK(system.typeOf("/") == 3);
  CHECK(system.typeOf("/media/stick") == 2);
  CHECK(system.typeOf("/media/whole") == 2);
  CHECK(system.typeOf("/media") == 1);
}

TEST_CASE("LVM and LUKS are fixed over a fixed disk and removable over a removable one, through any number of them") {
  System system;
  system.addDisk("sda", "sda1", "8:1", false);
  system.addDisk("sdb", "sdb1", "8:17", true);
  system.addMapped("dm-0", "253:0", "sda1");
  system.addMapped("dm-1", "253:1", "dm-0");
  system.addMapped("dm-2", "253:2", "sdb1");
  system.addMapped("dm-3", "253:3", "dm-2");
  system.mount("/", "253:1", "ext4", "/dev/mapper/vg-root");
  system.mount("/media/locked", "253:3", "ext4", "/dev/mapper/luks-stick");
  CHECK(system.typeOf("/") == 3);
  CHECK(system.typeOf("/media/locked") == 2);
}

TEST_CASE("A device is fixed where the disk below it has gone") {
  System system;
  system.addDisk("sdb", "sdb1", "8:17", true);
  system.addMapped("dm-0", "253:0", "sdb1");
  system.mount("/media/locked", "253:0", "ext4", "/dev/mapper/luks-stick");
  CHECK(system.typeOf("/media/locked") == 2);
  std::filesystem::remove_all(system.folder / "sys/devices/pci");
  CHECK(system.typeOf("/media/locked") == 3);
}

TEST_CASE("A set of ZFS is no disk, though it may be called like one") {
  System system;
  system.addDisk("sdb", "sdb1", "8:17", true);
  system.mount("/tank", "0:40", "zfs", "tank/sdb1");
  CHECK(system.typeOf("/tank") == 3);
}

TEST_CASE("File systems of discs and of memory are known by their kinds alone") {
  for (const auto& [kind, type] : std::vector<std::pair<std::string, int>>{
           {"cd9660", 5}, {"iso9660", 5}, {"udf", 5}, {"devtmpfs", 6}, {"ramfs", 6}, {"tmpfs", 6}}) {
    INFO(kind);
    System system;
    system.mount("/here", "0:60", kind, "none");
    CHECK(system.typeOf("/here") == type);
  }
}

TEST_CASE("Behind a btrfs its source tells the drive, by the device's own name where it has another one") {
  System system;
  system.addDisk("sda", "sda1", "8:1", false);
  system.addDisk("sdb", "sdb1", "8:17", true);
  system.addMapped("dm-0", "253:0", "sdb1");
  system.folder.write("dev/dm-0", "");
  system.folder.write("dev/mapper/control", "");
  std::filesystem::create_symlink("../dm-0", system.folder / "dev/mapper/luks-stick");
  system.mount("/home", "0:30", "btrfs", "/dev/sda1");
  system.mount("/media/plain", "0:31", "btrfs", "/dev/sdb1");
  system.mount("/media/locked", "0:32", "btrfs", system.folder / "dev/mapper/luks-stick");
  system.mount("/pool", "0:33", "btrfs", "/dev/of/another/system");
  CHECK(system.typeOf("/home") == 3);
  CHECK(system.typeOf("/media/plain") == 2);
  CHECK(system.typeOf("/media/locked") == 2);
  CHECK(system.typeOf("/pool") == 3);
}

TEST_CASE("ZFS is fixed, and so is the root of the system, whatever it is made of") {
  System system;
  system.mount("/tank", "0:40", "zfs", "tank/music");
  system.mount("/", "0:50", "overlay", "overlay");
  system.mount("/var/other", "0:51", "overlay", "overlay");
  CHECK(system.typeOf("/tank") == 3);
  CHECK(system.typeOf("/") == 3);
  CHECK(system.typeOf("/var/other") == 0);
}

TEST_CASE("Network, optical and memory drives, loops and what the kernel tells of itself are no hard drives") {
  System system;
  system.addDisk("sr0", "", "11:0", true);
  system.addDisk("sr1", "", "11:1", false);
  system.addDisk("loop0", "", "7:0", false);
  system.addDisk("zram0", "", "252:0", false);
  system.addDisk("ram0", "", "1:0", false);
  for (const auto& [place, device, kind, source] :
       std::vector<std::array<std::string, 4>>{{"/nfs", "0:50", "nfs4", "server:/x"},
                                               {"/smb", "0:51", "cifs", "//server/x"},
                                               {"/ssh", "0:52", "fuse.sshfs", "u@server:"},
                                               {"/cd", "11:0", "iso9660", "/dev/sr0"},
                                               {"/cd1", "11:1", "hfs", "/dev/sr1"},
                                               {"/image", "7:5", "udf", "/dev/loop5"},
                                               {"/tmp", "0:53", "tmpfs", "tmpfs"},
                                               {"/zram", "252:0", "ext4", "/dev/zram0"},
                                               {"/ram", "1:0", "ext4", "/dev/ram0"},
                                               {"/snap/x", "7:0", "squashfs", "/dev/loop0"},
                                               {"/proc", "0:21", "proc", "proc"}})
    system.mount(place, device, kind, source);
  for (const char* network : {"/nfs", "/smb", "/ssh"}) CHECK(system.typeOf(network) == 4);
  for (const char* optical : {"/cd", "/cd1", "/image"}) CHECK(system.typeOf(optical) == 5);
  for (const char* memory : {"/tmp", "/zram", "/ram"}) CHECK(system.typeOf(memory) == 6);
  for (const char* unknown : {"/snap/x", "/proc"}) CHECK(system.typeOf(unknown) == 0);
}

TEST_CASE("Every file system that comes over a network is known for one") {
  System system;
  // The network file systems of the kernel's own documentation, and those of user space that Debian packs.
  const std::vector<std::string> kinds{"9p",          "afs",        "ceph", "cifs",   "fuse.glusterfs",
                                       "fuse.rclone", "fuse.sshfs", "gfs2", "lustre", "ncpfs",
                                       "nfs",         "nfs4",       "smb3", "smbfs",  "virtiofs"};
  int number = 50;
  for (const std::string& kind : kinds) system.mount("/" + kind, "0:" + std::to_string(number++), kind, "server");
  for (const std::string& kind : kinds) {
    INFO(kind);
    CHECK(system.typeOf("/" + kind) == 4);
  }
}

TEST_CASE("A system whose root comes over the network or lives in memory has no hard drive there") {
  System network;
  network.mount("/", "0:50", "nfs", "server:/root");
  CHECK(network.typeOf("/") == 4);
  System memory;
  memory.mount("/", "0:50", "tmpfs", "tmpfs");
  CHECK(memory.typeOf("/") == 6);
}

TEST_CASE("A walk reads the folders of its drive, and waits with patience") {
  System system;
  system.folder.write("drive/sub/a.mp3", "xy");
  const auto walk = system.drives.walk(system.folder / "drive/");
  const std::vector<FindRecord> root = walk->entries(system.folder / "drive/");
  REQUIRE(root.size() == 1);
  const std::vector<FindRecord> sub = walk->entries(system.folder / "drive/sub/");
  REQUIRE(sub.size() == 1);
  CHECK(sub[0].size == 2);
  CHECK(system.patience.waits == 2);
}

TEST_CASE("A walk of a drive that has gone finds nothing") {
  System system;
  CHECK(system.drives.walk(system.folder / "gone/")->entries(system.folder / "gone/").empty());
}

TEST_CASE("The real system is read too: its root is a drive") {
  fakes::FakePatience patience;
  LinuxDrives drives(patience);
  CHECK(drives.LogicalDriveRoots().starts_with(std::string("/\0", 2)));
  CHECK(drives.DriveType("/") != 1);
}

}  // namespace trackloom::engines::drives
