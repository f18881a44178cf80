#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "runtime/FileDescriptor.h"

namespace trackloom::engines {

// What lies in a folder is always reached from the open folder, never by a whole path, so that a disc which a file
// manager moves in the midst of a write is written on where it now lies. Nothing here follows a symbolic link below the
// recorder's folder, so no disc can lead a write astray. All functions throw std::system_error with words for what the
// system refuses, unless they say otherwise.

/// Throws the system's present error (errno) with words on what was being done.
[[noreturn]] void throwSystemError(const std::string& words);

/// Opens a folder by its whole path; a link to a folder is one.
FileDescriptor openFolder(const std::string& path);
FileDescriptor openFolder(const FileDescriptor& parent, const std::string& name);
/// Opens a folder, after making it if nothing of that name is there.
FileDescriptor makeFolder(const FileDescriptor& parent, const std::string& name);
/// Never waits, as opening a pipe would; anything but a regular file is refused.
FileDescriptor openFile(const FileDescriptor& folder, const std::string& name, int flags);

/// The names of all that lies in a folder, in byte order.
std::vector<std::string> entryNames(const FileDescriptor& folder);
/// A link to a folder is none.
bool isFolder(const FileDescriptor& parent, const std::string& name);
/// The names of all folders in a folder, in byte order, less those that begin with a dot.
std::vector<std::string> folderNames(const FileDescriptor& folder);
bool entryExists(const FileDescriptor& folder, const std::string& name);
/// In bytes; nothing: there is no such file. Throws for what is not a regular file.
std::optional<std::int64_t> fileSize(const FileDescriptor& folder, const std::string& name);
/// Throws for a file of more than `limit` bytes.
std::string readSmallFile(const FileDescriptor& folder, const std::string& name, std::size_t limit);
/// Makes a file that is new for certain: what bears its name goes first, so no other name of that file, wherever it is,
/// sees a byte of what is written.
FileDescriptor makeNewFile(const FileDescriptor& folder, const std::string& name);
/// As many of the bytes as the system takes, however often it interrupts; fewer than all: errno says why.
std::size_t writeAt(const FileDescriptor& file, std::span<const std::byte> bytes, std::int64_t position);
/// As many bytes as the file has there; fewer than asked for: errno says why, 0 at the end of the file.
std::size_t readAt(const FileDescriptor& file, std::span<std::byte> bytes, std::int64_t position);

/// A file's new content, aside and on the medium, until it takes the file's place: at any moment the file is either the
/// old one or the new one. Gone without a trace where it is not put in place.
class Replacement {
 public:
  Replacement(const FileDescriptor& folder, std::string name, const std::string& text);
  ~Replacement();
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  void putInPlace();

 private:
  const FileDescriptor& folder_;
  std::string name_;
};

/// A replacement put in place at once.
void replaceFile(const FileDescriptor& folder, const std::string& name, const std::string& text);
/// False: something of the new name is there, and nothing was moved.
bool moveEntry(const FileDescriptor& from, const std::string& name, const FileDescriptor& to,
               const std::string& newName);

}  // namespace trackloom::engines
