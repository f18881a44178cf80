#include "controls/ImageList.h"

#include <algorithm>
#include <utility>

#include "runtime/RuntimeError.h"

namespace trackloom {

ImageList::ImageList(Form& form, std::string name, std::vector<std::string> pictures)
    : Control(form, std::move(name)), pictures_(std::move(pictures)) {}

const std::string& ImageList::Picture(int number) const {
  if (number < 1 || number > Count()) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
  return pictures_[static_cast<std::size_t>(number - 1)];
}

int ImageList::Number(const std::string& picture) const {
  const auto found = std::find(pictures_.begin(), pictures_.end(), picture);
  if (found == pictures_.end()) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
  return static_cast<int>(found - pictures_.begin()) + 1;
}

}  // namespace trackloom
