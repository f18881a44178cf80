#pragma once

#include <functional>
#include <memory>

namespace trackloom {

class Face;

/// The only way from a widget into its form: runs an event of the user's under the desktop's trap, with face and form
/// held for as long as it runs. Does nothing once the form has been unloaded.
class Entry {
 public:
  explicit Entry(std::weak_ptr<Face> face) : face_(std::move(face)) {}

  void operator()(const std::function<void()>& event) const;
  /// For what no widget does, such as a timer's tick: held back while the program waits within a call.
  void byItself(std::function<void()> event) const;
  /// Runs the event from the event loop, as soon as what happens now is over.
  void later(std::function<void()> event) const;

 private:
  std::weak_ptr<Face> face_;
};

}  // namespace trackloom
