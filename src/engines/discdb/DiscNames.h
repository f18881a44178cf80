#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ports/DiscDatabase.h"
#include "runtime/Paths.h"

namespace trackloom::engines::discdb {

/// The replies that the server once gave, one for each disc id, as files of a folder beside the program. May be used by
/// any thread.
class DiscNames {
 public:
  explicit DiscNames(const HostPath& programFolder);

  /// What was kept of the disc of that id; nothing: nothing was, or nobody can make sense of it.
  std::optional<DiscRecord> find(const std::string& id) const;
  /// Keeps the reply as the server sent it. Throws RuntimeError where it cannot be kept; an earlier one then stands.
  void keep(const std::string& id, std::string_view reply) const;

 private:
  HostPath file(const std::string& id) const;

  HostPath folder_;
};

}  // namespace trackloom::engines::discdb
