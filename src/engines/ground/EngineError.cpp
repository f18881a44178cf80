#include "engines/ground/EngineError.h"

#include <system_error>

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

}  // namespace trackloom::engines
