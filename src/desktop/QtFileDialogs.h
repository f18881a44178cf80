#pragma once

#include "ports/FileDialogs.h"

class QFileDialog;
class QWidget;

namespace trackloom {

class QtDesk;

/// The toolkit's own dialog, in front of the window that the user works in. Whether a read-only box is hidden, and the
/// styles, make no difference to it.
class QtFileDialogs final : public FileDialogs {
 public:
  explicit QtFileDialogs(QtDesk& desk) : desk_(desk) {}

  std::optional<HostPath> choose(const FileDialog& dialog) override;
  /// The prompt is the dialog's title; folders alone are shown.
  std::optional<HostPath> browseForFolder(const std::string& prompt) override;

 private:
  std::optional<HostPath> run(QFileDialog& dialog, QWidget* before);

  QtDesk& desk_;
};

}  // namespace trackloom
