#include "engines/ripper/CdNode.h"

#include <fcntl.h>
#include <linux/cdrom.h>
#include <sys/ioctl.h>

#include <cerrno>

#include "engines/disc/Sense.h"

namespace trackloom::engines::ripper {

namespace {

EngineError cannotOpen(const std::string& path, int error) {
  if (error == EACCES || error == EPERM)
    return deviceError(sense::notReady, "you may not use the drive " + path +
                                            ": your account must belong to the group that owns it, mostly \"cdrom\"");
  if (error == EBUSY)
    return deviceError(sense::busy, "the disc in " + path +
                                        " is in use: it is mounted, or another program has the drive. Unmount the disc "
                                        "or close that program");
  return deviceError(sense::notReady, "the drive " + path + " cannot be used: " + systemWords(error));
}

}  // namespace

CdNode::CdNode(const std::string& path, Hold hold)
    : node_(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | (hold == Hold::Alone ? O_EXCL : 0))), hold_(hold) {
  if (!node_) throw cannotOpen(path, errno);
  if (hold_ == Hold::Alone) ::ioctl(node_.get(), CDROM_LOCKDOOR, 1);
}

CdNode::~CdNode() {
  if (hold_ == Hold::Alone) ::ioctl(node_.get(), CDROM_LOCKDOOR, 0);
}

bool CdNode::hasDisc() const {
  return ::ioctl(node_.get(), CDROM_DRIVE_STATUS, CDSL_CURRENT) == CDS_DISC_OK;
}

void CdNode::setSpeed(int multiple) const {
  ::ioctl(node_.get(), CDROM_SELECT_SPEED, multiple);
}

}  // namespace trackloom::engines::ripper
