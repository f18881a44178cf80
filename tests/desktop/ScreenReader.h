#pragma once

namespace trackloom::trial {

/// A client that listens as long as it lives: at everything that is told to it, it reads the object of which it is
/// told, all cells of a list, and all that stands around.
class ScreenReader {
 public:
  ScreenReader();
  ~ScreenReader();
  ScreenReader(const ScreenReader&) = delete;
  ScreenReader& operator=(const ScreenReader&) = delete;

  /// How often it was told something.
  int told() const;
};

}  // namespace trackloom::trial
