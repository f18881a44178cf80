#include "engines/writer/Job.h"

#include <chrono>
#include <exception>
#include <new>
#include <utility>

#include "engines/disc/SectorSource.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::writer {

Outcome outcomeOf(const std::function<void()>& operation) {
  try {
    operation();
    return Done();
  } catch (const Stopped&) {
    return Cancelled();
  } catch (const EngineError& error) {
    return error;
  } catch (const RuntimeError& error) {
    return EngineError(ErrorKind::File, 0, error.description());
  } catch (const std::bad_alloc&) {
    return EngineError(ErrorKind::WriteBuffer, 0, "not enough memory");
  } catch (const std::exception& error) {
    return EngineError(ErrorKind::Device, 0, error.what());
  }
}

Job::Job(Operation operation, std::function<void(const Outcome&)> ended)
    : thread_([this, operation = std::move(operation), ended = std::move(ended)](const std::stop_token& stop) {
        ended(outcomeOf([&] { operation(stop); }));
        told_.set_value();
      }) {}

void Job::cancel(Patience& patience) {
  thread_.request_stop();
  patience.until(
      [this](std::chrono::milliseconds atMost) { return end_.wait_for(atMost) == std::future_status::ready; });
}

}  // namespace trackloom::engines::writer
