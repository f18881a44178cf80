#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "runtime/FileDescriptor.h"

namespace trackloom::engines::ripper {

/// libcdio keeps state of its own while it opens drives, so that only one thread may do so.
using LibraryLock = std::shared_ptr<std::mutex>;

/// The device node of a CD drive.
class CdNode {
 public:
  enum class Hold {
    /// Beside other programs.
    Shared,
    /// As the only one, with the tray locked, for as long as this lives.
    Alone
  };

  /// Throws EngineError with words: what the user can do where the rights are missing, that the disc is mounted or in
  /// use.
  CdNode(const std::string& path, Hold hold);
  ~CdNode();
  CdNode(const CdNode&) = delete;
  CdNode& operator=(const CdNode&) = delete;

  bool hasDisc() const;
  /// A multiple of the base speed; 0: the drive's own choice.
  void setSpeed(int multiple) const;

 private:
  FileDescriptor node_;
  Hold hold_;
};

}  // namespace trackloom::engines::ripper
