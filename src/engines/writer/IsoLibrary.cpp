#include "engines/writer/IsoLibrary.h"

#include <string>

#include "engines/ground/EngineError.h"

namespace trackloom::engines::writer {

namespace {

bool startLibrary() {
  constexpr int leaveLocaleAlone = 1;
  isoChecked(iso_init_with_flag(leaveLocaleAlone), "starting the image library");
  // The library takes no constant texts.
  std::string charset = "UTF-8";
  std::string never = "NEVER";
  std::string mishap = "MISHAP";
  std::string noPrefix;
  iso_set_local_charset(charset.data(), 0);
  iso_set_msgs_severities(never.data(), never.data(), noPrefix.data());
  iso_set_abort_severity(mishap.data());
  return true;
}

}  // namespace

// It is never ended: an image whose source does not answer may outlive everything else.
void ensureIsoLibrary() {
  static const bool ready = startLibrary();
  static_cast<void>(ready);
}

std::unique_ptr<IsoImage, UnrefImage> newIsoImage(const std::string& label) {
  ensureIsoLibrary();
  IsoImage* image = nullptr;
  isoChecked(iso_image_new(label.c_str(), &image), "making an image");
  return std::unique_ptr<IsoImage, UnrefImage>(image);
}

int isoChecked(int result, const std::string& what) {
  if (result >= 0) return result;
  throw EngineError(ErrorKind::File, 0, what + ": " + iso_error_to_msg(result));
}

}  // namespace trackloom::engines::writer
