#pragma once

#include <string>

#include "runtime/Paths.h"

namespace trackloom {

struct Session;

/// Artist and title of an audio file by the tag at its end: ID3v1, the last 128 bytes, "TAG" and fields of 30 bytes.
/// Text of several bytes a character is UTF-8, all other Windows-1252. A file without a tag, or that cannot be read,
/// is "Unknown" twice and makes `TagsMissing` true.
class clsMP3Info {
 public:
  explicit clsMP3Info(Session& session) : session_(session) {}

  const HostPath& FileName() const { return fileName_; }
  /// Reads the tag at once.
  void SetFileName(const HostPath& path);
  // Without the blanks at both ends; zero bytes are part of the text.
  std::string Title() const;
  std::string Artist() const;

 private:
  bool readTag();

  Session& session_;
  HostPath fileName_;
  std::string title_;
  std::string artist_;
};

}  // namespace trackloom
