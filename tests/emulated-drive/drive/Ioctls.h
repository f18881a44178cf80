#pragma once

#include <cstdint>

#include "Drive.h"

namespace emulated {

/// What a system call gives back; `error` is its errno where the result is -1.
struct Reply {
  int result = 0;
  int error = 0;
};

/// An ioctl on a drive's node, by the documents of the SCSI generic driver and of the uniform CD-ROM driver.
Reply control(Drive& drive, unsigned long request, void* argument);
/// A read of the node as a block device, from byte `offset` on; the result is the number of bytes.
Reply readData(Drive& drive, void* buffer, std::size_t size, std::int64_t offset);
/// The bytes of data that the node has as a block device.
std::int64_t dataBytes(Drive& drive);

}  // namespace emulated
