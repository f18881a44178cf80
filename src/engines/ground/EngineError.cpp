#include "engines/ground/EngineError.h"

#include <fcntl.h>

#include <cerrno>
#include <system_error>

#include "runtime/FileDescriptor.h"

namespace trackloom::engines {

std::string systemWords(int systemError) {
  return std::generic_category().message(systemError);
}

EngineError fileError(const HostPath& file, std::string_view why) {
  return {ErrorKind::File, 0, file.text + ": " + std::string(why)};
}

EngineError fileError(const HostPath& file, int systemError) {
  return fileError(file, systemWords(systemError));
}

EngineError unusable(const HostPath& file, std::string_view otherwise) {
  const FileDescriptor opened(::open(file.text.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  return opened ? fileError(file, otherwise) : fileError(file, errno);
}

}  // namespace trackloom::engines
