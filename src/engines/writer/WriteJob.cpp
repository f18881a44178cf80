#include "engines/writer/WriteJob.h"

#include <exception>
#include <new>
#include <utility>

#include "engines/disc/SectorSource.h"
#include "engines/ground/EngineError.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::writer {

namespace {

WriteErrorCode codeOf(ErrorKind kind) {
  switch (kind) {
    case ErrorKind::ReadBuffer:
      return ReadBufferError;
    case ErrorKind::WriteBuffer:
      return WriteBufferError;
    case ErrorKind::File:
      return FileError;
    case ErrorKind::Device:
      break;
  }
  return DeviceError;
}

void runWrite(const WriteRequest& request, OperationEvents& events, const std::stop_token& stop) {
  try {
    burn(request, events, stop);
    events.complete();
  } catch (const Stopped&) {
    return;
  } catch (const EngineError& error) {
    events.fail(codeOf(error.kind()), error.number(), error.words());
  } catch (const RuntimeError& error) {
    events.fail(FileError, 0, error.description());
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
