#include "model/Layout.h"

#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"

namespace trackloom {

using fakes::LayoutMachine;
using fakes::Machine;

namespace {

/// An open layout of the kind with nothing to save.
class SavedLayout : public LayoutMachine {
 public:
  explicit SavedLayout(std::int16_t kind = AudioLayout) : LayoutMachine(kind) { mod().LayoutSaved = true; }
  ListView& rows() { return window().ListView1; }
};

}  // namespace

TEST_CASE("Before the first layout there is neither an audio layout nor an MP3 layout") {
  Machine machine;
  machine.startQuietly();
  CHECK_FALSE(isAudioLayout(machine.session()));
  CHECK_FALSE(isMp3Layout(machine.session()));
  CHECK(std::string(layoutKind(machine.session()).fileWord) == "MP3");
}

TEST_CASE("A kind of layout has its number, its word and its text in panel1") {
  Machine machine;
  machine.startQuietly();
  setLayoutKind(machine.session(), Mp3Kind);
  CHECK(machine.mod().LayoutType == 2);
  CHECK(isMp3Layout(machine.session()));
  CHECK_FALSE(isAudioLayout(machine.session()));
  CHECK(machine.window().panel1.Text == std::string("MP3 Data CD (JOLIET)"));
  CHECK(std::string(layoutKind(machine.session()).fileWord) == "MP3");
  setLayoutKind(machine.session(), AudioKind);
  CHECK(machine.mod().LayoutType == 1);
  CHECK(isAudioLayout(machine.session()));
  CHECK_FALSE(isMp3Layout(machine.session()));
  CHECK(machine.window().panel1.Text == std::string("Standard Audio CD (JOLIET)"));
  CHECK(std::string(layoutKind(machine.session()).fileWord) == "Audio");
}

TEST_CASE("The sort of an MP3 layout follows the option, whatever its value") {
  SavedLayout layout(Mp3Layout);
  struct Case {
    std::int16_t mode;
    bool sorted;
    int key;
  };
  for (const Case& c : {Case{1, true, 3}, Case{-7, true, 0}, Case{2, false, 0}, Case{1, true, 3}, Case{9, false, 3},
                        Case{0, true, 0}, Case{3, false, 0}}) {
    layout.mod().Options.SortMode = c.mode;
    ApplyListingSort(layout.session());
    CHECK(layout.rows().Sorted() == c.sorted);
    CHECK(layout.rows().SortKey() == c.key);
  }
  layout.mod().LayoutType = AudioLayout;
  layout.mod().Options.SortMode = 0;
  ApplyListingSort(layout.session());
  CHECK_FALSE(layout.rows().Sorted());
}

TEST_CASE("The fourth column comes once, takes a share of the list's width, and goes once") {
  SavedLayout layout;
  layout.rows().Width = 9000;
  addFolderColumn(layout.session());
  addFolderColumn(layout.session());
  REQUIRE(layout.rows().columns().size() == 4);
  const ListColumn& folder = layout.rows().columns()[3];
  CHECK(folder.key == "CD Folder");
  CHECK(folder.text == "CD Folder");
  CHECK(folder.width == 2000);
  CHECK(folder.rightAligned);
  removeFolderColumn(layout.session());
  removeFolderColumn(layout.session());
  CHECK(layout.rows().columns().size() == 3);
}

TEST_CASE("A layout needs saving when it has changes and is more than an empty listing without a name") {
  SavedLayout layout;
  CHECK_FALSE(needsSaving(layout.session()));
  layout.mod().LayoutSaved = false;
  CHECK_FALSE(needsSaving(layout.session()));
  layout.mod().LayoutFileName = "a.mixl";
  CHECK(needsSaving(layout.session()));
  layout.mod().LayoutFileName.clear();
  layout.addTrack("a.mp3", 10);
  CHECK(needsSaving(layout.session()));
  layout.mod().LayoutSaved = true;
  CHECK_FALSE(needsSaving(layout.session()));
}

TEST_CASE("A layout's file lies in the folder of layouts under its name and extension") {
  Machine machine;
  machine.startQuietly();
  CHECK(layoutFileName("Mix 1.2") == "Mix 1.2.mixl");
  CHECK(layoutName("Mix 1.2.mixl") == "Mix 1.2");
  CHECK(layoutName("ä.mixl") == "ä");
  CHECK(layoutName("mix") == "");
  CHECK(layoutsFolder(machine.session()) == machine.folder / "Layouts/");
  CHECK(layoutFilePath(machine.session(), "a.mixl").text == machine.folder / "Layouts/a.mixl");
}

}  // namespace trackloom
