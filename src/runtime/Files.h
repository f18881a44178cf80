#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/Paths.h"

namespace trackloom {

/// A regular file, after following links; an error of the test counts as no.
bool FileExists(const HostPath& path);
/// A folder, after following links; an error of the test counts as no.
bool FolderExists(const HostPath& path);

/// Bytes; throws RuntimeError when the file cannot be looked at.
std::int64_t FileLength(const HostPath& path);

/// The names of the regular files in `folder` that end in `extension` (ASCII, whatever its case), sorted by upper-cased
/// name. Throws RuntimeError when the folder cannot be read.
std::vector<std::string> ListFiles(const HostPath& folder, std::string_view extension);

/// The user's home folder, the root where there is none.
HostPath HomeFolder();

void MakeFolder(const HostPath& path);

/// Creates an empty file, or empties the one there is. Throws RuntimeError.
void TouchFile(const HostPath& path);

/// Throws RuntimeError.
void DeleteFile(const HostPath& path);

/// What the first `length` bytes of the file hold; shorter when the file is. Throws RuntimeError.
std::string ReadStart(const HostPath& path, std::size_t length);

/// What the last `length` bytes of the file hold; nothing when the file is shorter. Throws RuntimeError.
std::string ReadEnd(const HostPath& path, std::size_t length);

/// Writes `bytes` over the last bytes of the file. A missing file comes into being empty; a file that is shorter than
/// they are stays as it is, and is an error. Throws RuntimeError.
void WriteEnd(const HostPath& path, std::string_view bytes);

/// Writes `bytes` over the start of the file; a longer file keeps its tail. A missing file comes into being with all of
/// them or not at all. Throws RuntimeError.
void WriteStart(const HostPath& path, std::string_view bytes);

/// Replaces the file as a whole: a crash, a full disk or a power cut at any moment leaves the old file or the new one.
/// Follows links, keeps the permissions, and replaces nothing but regular files that the user may write. Throws
/// RuntimeError, and the old file stands.
void ReplaceFile(const HostPath& path, std::string_view bytes);

}  // namespace trackloom
