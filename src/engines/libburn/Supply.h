#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

namespace trackloom::engines::libburn {

/// The sectors of a write on their way from the operation's thread, which makes them, to the library's, which asks for
/// them, so that sources and observers hear of one thread only.
class Supply {
 public:
  /// Library's thread: waits for the next bytes of a track, from 1; False: there will be none.
  bool take(std::int16_t track, std::byte* bytes, std::size_t size);

  /// Operation's thread: makes what is asked for within that time. `make` fills what it is given for the track.
  void serve(std::chrono::milliseconds patience, const std::function<std::vector<std::byte>(std::int16_t track)>& make);
  /// Nobody makes any more.
  void end();
  /// All that was made has been taken.
  bool drained() const;

 private:
  /// The track of which more is wanted; 0: of none until then.
  std::int16_t wantedWithin(std::chrono::milliseconds patience);

  mutable std::mutex mutex_;
  std::condition_variable asked_;
  std::condition_variable made_;
  std::int16_t wanted_ = 0;
  std::vector<std::byte> ready_;
  std::size_t taken_ = 0;
  bool ended_ = false;
};

}  // namespace trackloom::engines::libburn
