#pragma once

#include <QWidget>
#include <memory>
#include <string>
#include <vector>

namespace trackloom {

/// The designed window of a form, as its .ui file draws it.
struct FaceDesign {
  std::string form;
  std::unique_ptr<QWidget> (*make)();
};

/// One design for each file of faces/.
const std::vector<FaceDesign>& faceDesigns();

/// Makes a window and puts the widgets of a design into it.
template <class Design, class Window>
std::unique_ptr<QWidget> designed(void (Design::*setupUi)(Window*)) {
  auto window = std::make_unique<Window>();
  Design design;
  (design.*setupUi)(window.get());
  return window;
}

}  // namespace trackloom
