#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "ports/Drives.h"

namespace trackloom::fakes {

/// Drives that are folders of the test's own: reads them as they are, and notes what it is asked.
class FakeDrives final : public Drives {
 public:
  FakeDrives();
  ~FakeDrives() override;

  /// What the system would hand out, with a NUL behind each root and one more at the end.
  std::string roots;
  /// Of roots that are no hard drives.
  std::map<std::string, int> types;
  /// Folders that cannot be read.
  std::set<std::string> unreadable;
  std::vector<std::string> walked;
  std::vector<std::string> asked;
  /// Has the last word about what stands in a folder.
  std::function<void(const std::string& folder, std::vector<FindRecord>& records)> onRead;
  /// Walks in its place, where there is one.
  Drives* real = nullptr;

  void add(const std::string& root);

  std::string LogicalDriveRoots() override;
  int DriveType(const std::string& root) override;
  std::unique_ptr<DriveWalk> walk(const std::string& root) override;

  static FindRecord file(const std::string& name, std::int64_t size);
  static FindRecord folder(const std::string& name);

 private:
  class Walk;

  std::vector<FindRecord> read(const std::string& path);
};

}  // namespace trackloom::fakes
