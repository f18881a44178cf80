#include "engines/writer/IsoLibrary.h"

#include <array>

#include "runtime/RuntimeError.h"

namespace trackloom::engines::writer {

namespace {

class Library {
 public:
  Library() {
    constexpr int leaveLocaleAlone = 1;
    isoChecked(iso_init_with_flag(leaveLocaleAlone), "starting the image library");
    std::array charset{'U', 'T', 'F', '-', '8', '\0'};
    std::array never{'N', 'E', 'V', 'E', 'R', '\0'};
    std::array mishap{'M', 'I', 'S', 'H', 'A', 'P', '\0'};
    std::array noPrefix{'\0'};
    iso_set_local_charset(charset.data(), 0);
    iso_set_msgs_severities(never.data(), never.data(), noPrefix.data());
    iso_set_abort_severity(mishap.data());
  }
  ~Library() { iso_finish(); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
};

}  // namespace

void ensureIsoLibrary() {
  static const Library library;
}

int isoChecked(int result, const std::string& what) {
  if (result >= 0) return result;
  const char* words = iso_error_to_msg(result);
  throw RuntimeError(RuntimeError::DeviceIoError, what + ": " + (words != nullptr ? words : "unknown error"));
}

}  // namespace trackloom::engines::writer
