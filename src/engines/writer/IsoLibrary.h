#pragma once

// The library's header uses the fixed-width types without including them, and shows its source of sectors only to those
// who do without its usual consumer.
#include <cstdint>
#define LIBISOFS_WITHOUT_LIBBURN
#include <libisofs/libisofs.h>

#include <memory>
#include <string>

namespace trackloom::engines::writer {

/// Makes the library that builds ISO 9660 images ready, once for the process: silent, giving up at the first source
/// that cannot be read, and with UTF-8 for names whatever the locale. Throws EngineError when it cannot be used.
void ensureIsoLibrary();

struct UnrefImage {
  void operator()(IsoImage* image) const { iso_image_unref(image); }
};
/// An image with nothing in it. Throws EngineError.
std::unique_ptr<IsoImage, UnrefImage> newIsoImage(const std::string& label);

/// Throws EngineError with the library's own words where `result` is one of its error codes.
int isoChecked(int result, const std::string& what);

}  // namespace trackloom::engines::writer
