#include "fakes/FakeDrives.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "runtime/Text.h"

namespace trackloom::fakes {

class FakeDrives::Walk final : public DriveWalk {
 public:
  explicit Walk(FakeDrives& drives) : drives_(drives) {}
  std::vector<FindRecord> entries(const std::string& folder) override { return drives_.read(folder); }

 private:
  FakeDrives& drives_;
};

FakeDrives::FakeDrives() = default;

FakeDrives::~FakeDrives() = default;

void FakeDrives::add(const std::string& root) {
  if (roots.empty()) roots.push_back('\0');
  roots.insert(roots.size() - 1, root + std::string(1, '\0'));
}

std::string FakeDrives::LogicalDriveRoots() {
  return roots;
}

int FakeDrives::DriveType(const std::string& root) {
  const auto type = types.find(root);
  return type == types.end() ? 3 : type->second;
}

std::unique_ptr<DriveWalk> FakeDrives::walk(const std::string& root) {
  walked.push_back(root);
  if (real != nullptr) return real->walk(root);
  return std::make_unique<Walk>(*this);
}

FindRecord FakeDrives::file(const std::string& name, std::int64_t size) {
  return {0, size, name + std::string(1, '\0')};
}

FindRecord FakeDrives::folder(const std::string& name) {
  return {FindRecord::DirectoryAttribute, 0, name + std::string(1, '\0')};
}

std::vector<FindRecord> FakeDrives::read(const std::string& path) {
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

}  // namespace trackloom::fakes
