#pragma once

#include <stop_token>

namespace trackloom::engines::writer {

/// Lets threads go, which are not waited for, when nobody needs what they do any more.
struct LetGo {
  std::stop_source source;

  LetGo() = default;
  ~LetGo() { source.request_stop(); }
  LetGo(const LetGo&) = delete;
  LetGo& operator=(const LetGo&) = delete;
};

}  // namespace trackloom::engines::writer
