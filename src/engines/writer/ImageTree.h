#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "engines/writer/DataQueue.h"
#include "engines/writer/FileContent.h"
#include "engines/writer/IsoLibrary.h"

namespace trackloom::engines::writer {

/// A file or folder on its way into an image; a folder has no content.
struct ImageChild {
  const DataEntry* entry = nullptr;
  FileContent* content = nullptr;
};

/// What lies in each folder of a data queue, by the disc path of the folder.
using ImageFolders = std::unordered_map<std::string, std::vector<ImageChild>>;

/// Puts a data queue into an image, which may hold the tree of an earlier session. A file takes the place of an earlier
/// one of the same name, folders of the same name become one; else both stay, and an earlier name that clashes is
/// changed. Throws EngineError.
void growTree(IsoImage& image, const ImageFolders& folders);

}  // namespace trackloom::engines::writer
