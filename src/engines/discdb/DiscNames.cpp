#include "engines/discdb/DiscNames.h"

#include "engines/discdb/Replies.h"
#include "engines/discdb/WebServer.h"
#include "runtime/Files.h"
#include "runtime/Statements.h"

namespace trackloom::engines::discdb {

DiscNames::DiscNames(const HostPath& programFolder) : folder_(EnsureTrailingSep(programFolder.text) + "Disc Names") {}

HostPath DiscNames::file(const std::string& id) const {
  return HostPath(EnsureTrailingSep(folder_.text) + id);
}

std::optional<DiscRecord> DiscNames::find(const std::string& id) const {
  std::optional<DiscRecord> record;
  // What is no regular file may keep its reader for ever.
  if (FileExists(file(id))) skipOnError([&] { record = entryOf(ReadStart(file(id), WebServer::longestReply)); });
  return record;
}

void DiscNames::keep(const std::string& id, std::string_view reply) const {
  if (!FolderExists(folder_)) MakeFolder(folder_);
  ReplaceFile(file(id), reply);
}

}  // namespace trackloom::engines::discdb
