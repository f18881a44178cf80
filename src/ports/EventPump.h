#pragma once

namespace trackloom {

/// Lets pending window events run, the user's input among them. Any state may have changed when it returns.
class EventPump {
 public:
  virtual ~EventPump() = default;
  virtual void pumpEvents() = 0;
};

}  // namespace trackloom
