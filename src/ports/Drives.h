#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace trackloom {

/// What the system tells of one entry of a folder.
struct FindRecord {
  static constexpr std::uint32_t DirectoryAttribute = 16;

  std::uint32_t attributes = 0;
  /// Bytes of a file, of a link to a file those of that file.
  std::int64_t size = 0;
  /// Ends with a NUL.
  std::string name;
};

/// One way through the folders of a drive, read ahead of whoever goes it.
class DriveWalk {
 public:
  virtual ~DriveWalk() = default;

  /// The entries of a folder (with its trailing separator), sorted by upper-cased name: its files, the links to files,
  /// and its folders but "." and "..". Links to folders and all else are left out. Empty where the folder cannot be
  /// read or belongs to another drive. What is asked for breadth first, beginning with the root, lies ready or is
  /// waited for with patience; any other folder is read within the call.
  virtual std::vector<FindRecord> entries(const std::string& folder) = 0;
};

/// The drives of the machine.
class Drives {
 public:
  virtual ~Drives() = default;

  /// The root folder of each drive with a NUL behind it, and one more NUL at the end.
  virtual std::string LogicalDriveRoots() = 0;
  /// 0 cannot be determined, 1 there is no such drive, 2 removable, 3 fixed, 4 network, 5 optical, 6 memory.
  virtual int DriveType(const std::string& root) = 0;
  virtual std::unique_ptr<DriveWalk> walk(const std::string& root) = 0;
};

}  // namespace trackloom
