#pragma once

#include <memory>
#include <string>
#include <vector>

#include "contract/RipperWorld.h"
#include "engines/ripper/DiscRippers.h"
#include "fakes/FakeEventQueue.h"
#include "fakes/FakePatience.h"
#include "fakes/TempFolder.h"
#include "ports/MP3EncoderX.h"

namespace trackloom::engines::ripper {

/// The disc in the tray of a virtual recorder, laid out by hand.
class HandMadeDisc {
 public:
  explicit HandMadeDisc(const fakes::TempFolder& folder);

  static std::string place();
  /// Each track in the session of its place in `sessions`; where that has none, in the first.
  void layOut(const std::vector<contract::DiscPart>& tracks, const std::vector<int>& sessions = {});

 private:
  const fakes::TempFolder& folder_;
};

/// The real engines on a virtual recorder.
class RipWorld : public contract::RipperWorld {
 public:
  explicit RipWorld(std::string ini = "", std::shared_ptr<Wakefulness> wakefulness = nullptr);
  ~RipWorld() override;

  bool can(contract::RipAbility) const override;
  CDRipperX& ripper() override;
  Mp3Stream& encoder() override;
  fakes::RipperTranscript& heard() override;
  bool runUntil(const std::function<bool()>& done) override;
  void settle() override;

  void insert(const std::vector<contract::DiscPart>& tracks) override;
  void takeDiscOut() override;
  void refuseDrive() override;
  void spoil(std::int32_t sector) override;
  void makeHang(std::int32_t sector) override;
  std::string soundOf(std::int32_t sector, std::int32_t count) override;
  HostPath out(const std::string& name) override;

  void configure(const std::string& recorderIni) const;
  std::vector<std::string> made() const;

  fakes::TempFolder folder;
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::RipperTranscript transcript;
  std::unique_ptr<MP3EncoderX> lame;
  std::unique_ptr<DiscRippers> rippers;
  std::unique_ptr<CDRipperX> engine;
};

}  // namespace trackloom::engines::ripper
