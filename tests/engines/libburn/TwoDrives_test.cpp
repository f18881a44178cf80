#include "contract/WriterContract.h"
#include "engines/libburn/FoundDrives.h"
#include "engines/libburn/LibburnWorld.h"

namespace trackloom::engines::libburn {

namespace {

/// The same world beside a second drive, on which another instance records a whole disc meanwhile.
class TwoDrivesWorld final : public LibburnWorld {
 public:
  TwoDrivesWorld() {
    folder.write("drives/sr1/disc/disc", "medium CD-R\nblocks 359849\n");
    REQUIRE(other_->SelectDrive(1));
    other_->SetCloseSession(true);
    other_->SetCloseDisc(true);
    REQUIRE(other_->AddAudioTrack(audioFile("other", 60), 1));
    other_->StartWrite();
    REQUIRE(queue.runUntil([this] { return heardOther_.has("OnTrackWriteStart 1 60") || heardOther_.ended(); }));
    configureOther("pace = 75\n");
  }
  ~TwoDrivesWorld() override {
    configureOther("");
    queue.runUntil([this] { return heardOther_.ended(); });
    CHECK(heardOther_.lines.back() == "OnOperationComplete");
    CHECK(folder.read("drives/sr1/disc/sectors").substr(std::size_t{150} * 2352, std::size_t{60} * 2352) ==
          audioOf("other", 60));
  }

 private:
  void configureOther(const std::string& text) const {
    folder.write("drives/sr1/drive.ini", "serial = 0002\nshortest track = 1\n" + text);
  }
  RecorderList bothDrives() const {
    configureOther("pace = 1500\n");
    return findRecorders();
  }

  fakes::WriterTranscript heardOther_;
  writer::DiscWriters others_{bothDrives(), std::make_shared<audio::AudioFiles>(), queue, patience,
                              writer::WriterSettings{150, folder.host("other scratch")}};
  std::unique_ptr<CDWriterXP> other_ = others_.create(heardOther_);
};

}  // namespace

TEST_CASE("The engine keeps the contract of writer engines while it records on a second drive") {
  contract::keepsTheContract<TwoDrivesWorld>();
}

}  // namespace trackloom::engines::libburn
