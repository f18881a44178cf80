#pragma once

#include <optional>
#include <string>

#include "runtime/Paths.h"

namespace trackloom {

/// What a dialog for choosing a file insists on and shows.
struct FileDialogFlags {
  bool pathMustExist = false;
  bool fileMustExist = false;
  bool overwritePrompt = false;
  // Only some systems know these.
  bool hideReadOnly = false;
  bool longNames = false;
  bool explorer = false;

  bool operator==(const FileDialogFlags&) const = default;
};

/// One showing of a dialog for choosing a file.
struct FileDialog {
  enum class Mode { Open, Save };

  Mode mode = Mode::Open;
  /// The name that is offered; may be empty.
  std::string fileName;
  /// Words and pattern in turn, parted by bars, such as "ISO Images (*.iso)|*.iso"; letters match in any case.
  std::string filter;
  FileDialogFlags flags;
};

/// Lets the user choose a file or a folder.
class FileDialogs {
 public:
  virtual ~FileDialogs() = default;

  /// Returns once the user has chosen or, with nothing, given up; other events run meanwhile. The name is as the user
  /// gave it, without an extension added, and no file has been touched.
  virtual std::optional<HostPath> choose(const FileDialog& dialog) = 0;
  /// The same for a folder; `prompt` says what it is wanted for.
  virtual std::optional<HostPath> browseForFolder(const std::string& prompt) = 0;
};

}  // namespace trackloom
