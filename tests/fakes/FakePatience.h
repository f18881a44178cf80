#pragma once

#include <functional>

#include "ports/Patience.h"

namespace trackloom::fakes {

/// Waits for as long as it takes, and counts how often it was asked to. A test runs what it likes between two looks, as
/// the window system would.
class FakePatience : public Patience {
 public:
  ~FakePatience() override;

  int waits = 0;
  /// Called each time that what is waited for has not come yet.
  std::function<void()> meanwhile;

  void until(const Wait& wait) override;
};

}  // namespace trackloom::fakes
