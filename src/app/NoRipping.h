#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ports/CDRipperX.h"
#include "ports/DiscDatabase.h"
#include "ports/MP3EncoderX.h"

namespace trackloom {

/// Stands in where no engine reads discs: there is no drive.
class NoRipEngines final : public RipEngines {
 public:
  std::unique_ptr<CDRipperX> create() override { return std::make_unique<NoDrives>(); }

 private:
  class NoDrives final : public CDRipperX {
   public:
    void listen(CDRipperEvents*) override {}
    std::int16_t DeviceCount() override { return 0; }
    std::string DeviceLetter(std::int16_t) override { return ""; }
    std::string DeviceVendor(std::int16_t) override { return ""; }
    std::string DeviceModel(std::int16_t) override { return ""; }
    bool SelectRipDrive(std::int16_t) override { return false; }
    std::int32_t LastDriveError() override { return 0; }
    bool DiscPresent() override { return false; }
    bool ReadTOC() override { return false; }
    std::int16_t TrackCount() override { return 0; }
    std::int32_t TrackStart(std::int16_t) override { return 0; }
    std::int32_t TrackLength(std::int16_t) override { return 0; }
    bool TrackIsAudio(std::int16_t) override { return false; }
    std::string SectorsToTime(std::int32_t) override { return ""; }
    std::int16_t MaxSpeed() override { return 0; }
    void SetSpeed(std::int16_t) override {}
    bool AttachEncoder(Mp3Stream&) override { return false; }
    void SetUseEncoder(bool) override {}
    void ClearQueue() override {}
    bool QueueTrack(std::int16_t, const HostPath&, std::int32_t) override { return false; }
    bool StartRip() override { return false; }
    void CancelRip() override {}
  };
};

/// Stands in where no encoder is: nothing is encoded.
class NoEncoders final : public MP3Encoders {
 public:
  std::unique_ptr<MP3EncoderX> create() override { return std::make_unique<NoEncoder>(); }

 private:
  class NoEncoder final : public MP3EncoderX, public Mp3Stream {
   public:
    Mp3Stream& Encoder() override { return *this; }
    void SetBitRate(std::int32_t kbps) override { rate_ = kbps; }
    std::unique_ptr<Mp3Track> begin(std::int32_t) override { return nullptr; }
    std::int32_t BitRate() override { return rate_; }

   private:
    std::int32_t rate_ = 0;
  };
};

/// Stands in where no disc database is asked: it knows no disc.
class NoDatabases final : public DiscDatabases {
 public:
  std::unique_ptr<DiscDatabase> create() override { return std::make_unique<Nothing>(); }

 private:
  class Nothing final : public DiscDatabase {
   public:
    void ConfigureServer(const std::string&, int, int, const std::string&, int, const std::string&,
                         const std::string&) override {}
    void QueryDrive(int, const std::string&, const std::string&, const std::string&) override {}
    std::vector<DiscRecord> Matches() override { return {}; }
  };
};

}  // namespace trackloom
