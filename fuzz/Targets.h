#pragma once

#include <memory>
#include <string_view>

namespace trackloom::fuzz {

/// A start, a look at the default options and a close, with these bytes as `Options.dat`. Aborts where the record does
/// not come back as it was read.
void runOptions(std::string_view bytes);

/// A start and a close with these bytes as `Trackloom.dsl`. Aborts where a state that was read is not written back
/// equal.
void runDockState(std::string_view bytes);

/// Reads these bytes as values, to the end. Aborts where the values, written anew, are not read back.
void runValues(std::string_view bytes);

/// One program that reads the tag of one file behind the other.
class TagTrial {
 public:
  TagTrial();
  ~TagTrial();
  TagTrial(const TagTrial&) = delete;
  TagTrial& operator=(const TagTrial&) = delete;

  /// Reads the tag of a file of these bytes. Aborts where it is not what the last 128 bytes can hold.
  void run(std::string_view bytes);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// One program that opens a layout file behind the other.
class LayoutTrial {
 public:
  LayoutTrial();
  ~LayoutTrial();
  LayoutTrial(const LayoutTrial&) = delete;
  LayoutTrial& operator=(const LayoutTrial&) = delete;

  /// Opens a layout file of these bytes, in which a '@' stands for a folder with three tracks, saves it and opens it
  /// again. Aborts where the rows differ then.
  void run(std::string_view bytes);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace trackloom::fuzz
