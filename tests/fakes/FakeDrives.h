#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "ports/Drives.h"
#include "runtime/Text.h"

namespace trackloom::fakes {

/// Drives that are folders of the test's own: reads them as they are, and notes what it is asked.
class FakeDrives final : public Drives {
 public:
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

  void add(const std::string& root) {
    if (roots.empty()) roots.push_back('\0');
    roots.insert(roots.size() - 1, root + std::string(1, '\0'));
  }

  std::string LogicalDriveRoots() override { return roots; }
  int DriveType(const std::string& root) override {
    const auto type = types.find(root);
    return type == types.end() ? 3 : type->second;
  }
  std::unique_ptr<DriveWalk> walk(const std::string& root) override {
    walked.push_back(root);
    if (real != nullptr) return real->walk(root);
    return std::make_unique<Walk>(*this);
  }

  static FindRecord file(const std::string& name, std::int64_t size) { return {0, size, name + std::string(1, '\0')}; }
  static FindRecord folder(const std::string& name) {
    return {FindRecord::DirectoryAttribute, 0, name + std::string(1, '\0')};
  }

 private:
  class Walk final : public DriveWalk {
   public:
    explicit Walk(FakeDrives& drives) : drives_(drives) {}
    std::vector<FindRecord> entries(const std::string& folder) override { return drives_.read(folder); }

   private:
    FakeDrives& drives_;
  };

  std::vector<FindRecord> read(const std::string& path) {
    asked.push_back(path);
    std::map<std::pair<std::string, std::string>, FindRecord> sorted;
    std::error_code none;
    if (!unreadable.contains(path))
      for (const auto& entry : std::filesystem::directory_iterator(path, none)) {
        const std::string name = entry.path().filename().string();
        sorted[{UCase(name), name}] =
            entry.is_directory() ? folder(name) : file(name, static_cast<std::int64_t>(entry.file_size()));
      }
    std::vector<FindRecord> records;
    for (auto& [key, record] : sorted) records.push_back(std::move(record));
    if (onRead) onRead(path, records);
    return records;
  }
};

}  // namespace trackloom::fakes
