#include "engines/writer/WriteJob.h"

#include <exception>
#include <new>
#include <utility>

#include "engines/writer/CacheFile.h"
#include "engines/writer/SectorSource.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::writer {

namespace {

void runWrite(const WriteRequest& request, OperationEvents& events, const std::stop_token& stop) {
  try {
    burn(request, events, stop);
    events.complete();
  } catch (const Stopped&) {
    return;
  } catch (const DriveFailure& failure) {
    events.fail(DeviceError, failure.number(), failure.what());
  } catch (const RuntimeError& error) {
    events.fail(FileError, 0, error.description());
  } catch (const CacheFailure& failure) {
    events.fail(ReadBufferError, 0, failure.what());
  } catch (const std::bad_alloc&) {
    events.fail(WriteBufferError, 0, "not enough memory");
  } catch (const std::exception& error) {
    events.fail(DeviceError, 0, error.what());
  }
}

}  // namespace

WriteJob::WriteJob(WriteRequest request, std::shared_ptr<OperationEvents> events)
    : events_(std::move(events)),
      thread_([request = std::move(request), events = events_](const std::stop_token& stop) {
        runWrite(request, *events, stop);
      }) {}

}  // namespace trackloom::engines::writer
