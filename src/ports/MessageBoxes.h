#pragma once

#include <string>

namespace trackloom {

enum class BoxButtons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel };
enum class BoxIcon { Information, Question, Exclamation, Critical };
enum class BoxAnswer { Ok, Cancel, Yes, No, Retry };

/// A message to the user. Paragraphs of the text are parted by two line breaks, each a carriage return and a line feed.
struct MessageBox {
  std::string title;
  std::string text;
  BoxButtons buttons = BoxButtons::Ok;
  BoxIcon icon = BoxIcon::Exclamation;
  /// It says that a disc operation failed, and not why; what the engine knows of that may stand below the text.
  bool ofFailure = false;
};

/// Asks the user. The first button is the default; Esc answers Cancel where there is one and OK where that is all there
/// is; between Yes and No and between Retry and Cancel it does nothing.
class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;

  /// Returns once answered; engine events and timers go on meanwhile.
  virtual BoxAnswer show(const MessageBox& box) = 0;
};

}  // namespace trackloom
