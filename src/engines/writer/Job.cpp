#include "engines/writer/Job.h"

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
    : thread_([operation = std::move(operation), ended = std::move(ended)](const std::stop_token& stop) {
        ended(outcomeOf([&] { operation(stop); }));
      }) {}

void Job::cancel() {
  thread_.request_stop();
  if (thread_.joinable()) thread_.join();
}

}  // namespace trackloom::engines::writer
