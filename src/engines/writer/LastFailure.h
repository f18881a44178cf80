#pragma once

#include <string>
#include <utility>

#include "ports/FailureDetail.h"

namespace trackloom::engines::writer {

/// What failed last in any instance of the engine. Belongs to the UI thread.
class LastFailure final : public FailureDetail {
 public:
  std::string lastFailure() const override { return words_; }
  void remember(std::string words) { words_ = std::move(words); }
  void forget() { words_.clear(); }

 private:
  std::string words_;
};

}  // namespace trackloom::engines::writer
