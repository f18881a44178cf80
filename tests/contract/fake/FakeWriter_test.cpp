#include "contract/WriterContract.h"
#include "contract/fake/FakeWriterWorld.h"

namespace trackloom::fakes {

TEST_CASE("The engine in memory keeps the contract of writer engines") {
  contract::keepsTheContract<FakeWriterWorld>();
}

TEST_CASE("The engine in memory names its calls in their order") {
  WriterStage stage;
  WriterTranscript heard;
  FakeWriter writer("CDR1", stage, heard);
  writer.SelectDrive(0);
  writer.MediaLoaded();
  writer.AddDataFile(DiscPath("\\a"), HostPath("/a"));
  CHECK(stage.take() ==
        std::vector<std::string>{"CDR1.SelectDrive(0)", "CDR1.MediaLoaded", "CDR1.AddDataFile(\\a, /a)"});
  CHECK(stage.take().empty());
}

}  // namespace trackloom::fakes
