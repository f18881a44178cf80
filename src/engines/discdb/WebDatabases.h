#pragma once

#include <memory>

#include "engines/discdb/DiscContents.h"
#include "engines/ground/EngineSettings.h"
#include "ports/DiscDatabase.h"
#include "ports/Patience.h"
#include "runtime/Paths.h"

namespace trackloom::engines::discdb {

/// The disc database on the web (CDDB over HTTP, protocol level 6). Whenever the server gives nothing, its earlier
/// reply to the same disc counts, else what stands on the disc itself. One a process, made before there are other
/// threads; its databases are used by the window's thread.
class WebDatabases final : public DiscDatabases {
 public:
  WebDatabases(DiscServerSettings server, const HostPath& programFolder, ContentsOf contents, Patience& patience);

  /// Whose server it is the user says in Engines.ini, so of ConfigureServer only the limit counts.
  std::unique_ptr<DiscDatabase> create() override;

 private:
  DiscServerSettings server_;
  HostPath programFolder_;
  ContentsOf contents_;
  Patience& patience_;
};

}  // namespace trackloom::engines::discdb
