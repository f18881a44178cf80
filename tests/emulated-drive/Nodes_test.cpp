#include <fcntl.h>
#include <glob.h>
#include <linux/cdrom.h>
#include <scsi/sg.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "Host.h"

namespace emulated {

namespace {

/// A rack whose drives this process sees as nodes of /dev.
class SeenRack : public Rack {
 public:
  SeenRack() { ::setenv("EMULATED_DRIVES", box.path().c_str(), 1); }
  ~SeenRack() { ::unsetenv("EMULATED_DRIVES"); }
};

class Node {
 public:
  explicit Node(const char* path, int flags = O_RDWR | O_NONBLOCK) : fd(::open(path, flags)) {}
  ~Node() {
    if (fd >= 0) ::close(fd);
  }
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;
  const int fd;
};

}  // namespace

TEST_CASE("A drive looks like a block device of its own, and other drives cannot be seen") {
  const SeenRack rack;
  struct stat status {};
  CHECK(::stat("/dev/sr0", &status) == 0);
  CHECK(S_ISBLK(status.st_mode));
  CHECK(status.st_rdev == 11U << 8U);
  CHECK(::stat("/dev/sr1", &status) == -1);
  CHECK(errno == ENOENT);
  CHECK(::open("/dev/sg0", O_RDWR) == -1);
  CHECK(::open("/dev/cdrom", O_RDONLY) == -1);
  glob_t found{};
  CHECK(::glob("/dev/sr*", 0, nullptr, &found) == 0);
  REQUIRE(found.gl_pathc == 1);
  CHECK(std::string(found.gl_pathv[0]) == "/dev/sr0");
  ::globfree(&found);
}

TEST_CASE("A drive that one process holds exclusively is busy for others") {
  const SeenRack rack;
  {
    const Node first("/dev/sr0", O_RDWR | O_EXCL | O_NONBLOCK);
    CHECK(first.fd >= 0);
    const Node second("/dev/sr0", O_RDWR | O_EXCL | O_NONBLOCK);
    CHECK(second.fd == -1);
    CHECK(errno == EBUSY);
    CHECK(Node("/dev/sr0").fd >= 0);
  }
  CHECK(Node("/dev/sr0", O_RDWR | O_EXCL | O_NONBLOCK).fd >= 0);
}

TEST_CASE("Commands and their sense go through the generic driver's structure") {
  const SeenRack rack;
  const Node node("/dev/sr0");
  unsigned char block[6] = {0x12, 0, 0, 0, 36, 0};
  unsigned char answer[36] = {};
  unsigned char sense[32] = {};
  sg_io_hdr header{};
  header.interface_id = 'S';
  header.cmdp = block;
  header.cmd_len = sizeof block;
  header.dxfer_direction = SG_DXFER_FROM_DEV;
  header.dxferp = answer;
  header.dxfer_len = sizeof answer;
  header.sbp = sense;
  header.mx_sb_len = sizeof sense;
  REQUIRE(::ioctl(node.fd, SG_IO, &header) == 0);
  CHECK(header.status == 0);
  CHECK(std::string(answer + 8, answer + 16) == "EMULATED");
  block[0] = 0xFF;
  REQUIRE(::ioctl(node.fd, SG_IO, &header) == 0);
  CHECK(header.status == 2);
  CHECK(header.sb_len_wr == 18);
  CHECK((sense[2] == 0x05 && sense[12] == 0x20));
  rack.configure("fault = * unplugged\n");
  CHECK(::ioctl(node.fd, SG_IO, &header) == -1);
  CHECK(errno == ENODEV);
}

TEST_CASE("The node is read in bytes like any block device") {
  const SeenRack rack;
  {
    Host host(rack);
    host.writeTrack(300, Kind::Mode1);
    REQUIRE(host.closeSession() == sense::none);
  }
  const Node node("/dev/sr0", O_RDONLY);
  const Bytes expected = content(3, 2, Kind::Mode1);
  Bytes bytes(3000);
  CHECK(::lseek(node.fd, 3 * 2048 + 100, SEEK_SET) == 3 * 2048 + 100);
  REQUIRE(::read(node.fd, bytes.data(), bytes.size()) == 3000);
  CHECK(std::equal(bytes.begin(), bytes.end(), expected.begin() + 100));
  CHECK(::lseek(node.fd, 0, SEEK_CUR) == 3 * 2048 + 3100);
  CHECK(::lseek(node.fd, 0, SEEK_END) == 302 * 2048);
  CHECK(::read(node.fd, bytes.data(), bytes.size()) == 0);
}

TEST_CASE("The calls of the CD-ROM driver tell what the commands tell") {
  const SeenRack rack;
  const Node node("/dev/sr0");
  CHECK(::ioctl(node.fd, CDROM_DRIVE_STATUS, 0) == CDS_DISC_OK);
  cdrom_tochdr header{};
  CHECK(::ioctl(node.fd, CDROMREADTOCHDR, &header) == -1);
  Host(rack).writeSession({300, 400});
  REQUIRE(::ioctl(node.fd, CDROMREADTOCHDR, &header) == 0);
  CHECK(header.cdth_trk1 == 2);
  cdrom_tocentry entry{};
  entry.cdte_track = 2;
  entry.cdte_format = CDROM_MSF;
  REQUIRE(::ioctl(node.fd, CDROMREADTOCENTRY, &entry) == 0);
  CHECK(entry.cdte_addr.msf.second == 6);
  CHECK(entry.cdte_ctrl == 0);
  CHECK(::ioctl(node.fd, CDROM_DISC_STATUS, 0) == CDS_AUDIO);
  CHECK(::ioctl(node.fd, CDROMEJECT, 0) == 0);
  CHECK(::ioctl(node.fd, CDROM_DRIVE_STATUS, 0) == CDS_TRAY_OPEN);
}

TEST_CASE("A door that was locked is free again once the node is closed") {
  const SeenRack rack;
  {
    const Node node("/dev/sr0");
    CHECK(::ioctl(node.fd, CDROM_LOCKDOOR, 1) == 0);
    CHECK(::ioctl(node.fd, CDROMEJECT, 0) == -1);
    CHECK(errno == EBUSY);
  }
  const Node again("/dev/sr0");
  CHECK(::ioctl(again.fd, CDROMEJECT, 0) == 0);
}

}  // namespace emulated
