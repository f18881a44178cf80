#include "engines/ripper/CdNode.h"

#include <fcntl.h>
#include <linux/cdrom.h>
#include <sys/ioctl.h>

#include <cerrno>

#include "engines/disc/NodeFailure.h"

namespace trackloom::engines::ripper {

CdNode::CdNode(const std::string& path, Hold hold)
    : node_(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | (hold == Hold::Alone ? O_EXCL : 0))), hold_(hold) {
  if (!node_) throw cannotOpenNode(path, errno);
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
