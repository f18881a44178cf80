#pragma once

#include <optional>
#include <string>

namespace trackloom {

/// The system's store of settings: keys below a root, each with named texts. The text without a name is a key's
/// default.
class Registry {
 public:
  enum class Root { ClassesRoot, LocalMachine };

  virtual ~Registry() = default;

  /// Nothing: there is no such key or text. Throws RuntimeError where the store cannot be read.
  virtual std::optional<std::string> text(Root root, const std::string& key, const std::string& name) = 0;
  /// Makes the key where it is missing. Throws RuntimeError.
  virtual void setText(Root root, const std::string& key, const std::string& name, const std::string& text) = 0;
  /// Throws RuntimeError, also where there is no such text.
  virtual void removeText(Root root, const std::string& key, const std::string& name) = 0;
};

}  // namespace trackloom
