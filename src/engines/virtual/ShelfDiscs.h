#pragma once

#include <string>
#include <vector>

#include "ports/DiscShelf.h"
#include "runtime/FileDescriptor.h"

namespace trackloom::engines::virtualrecorder {

// What lies on a shelf or in a tray, reached from the open folder.

/// All discs there; none where the folder cannot be read.
std::vector<ShelfDisc> discsIn(const FileDescriptor& place);

/// Throws ShelfRefusal unless a disc of this name is there.
void requireDisc(const FileDescriptor& shelf, const std::string& name);
/// Throws ShelfRefusal for a name that no disc can have: it is empty, hidden, too long, or no name of a folder.
void requireGoodName(const std::string& name);

/// Deletes a disc's files and then its folder, without going into any folder or through any link. Throws ShelfRefusal
/// where anything else lies in it, and std::system_error; the disc then still lies there.
void deleteDisc(const FileDescriptor& shelf, const std::string& name);

}  // namespace trackloom::engines::virtualrecorder
