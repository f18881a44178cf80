#include <QTreeView>
#include <catch2/catch.hpp>

#include "desktop/FolderModel.h"
#include "desktop/Trial.h"
#include "fakes/TempFolder.h"
#include "runtime/RuntimeError.h"

namespace trackloom {

using trial::comesTrue;
using Lines = std::vector<std::string>;

namespace {

std::string selectedPath(const QTreeView& tree) {
  const QModelIndexList selected = tree.selectionModel()->selectedIndexes();
  return selected.isEmpty() ? "" : dynamic_cast<const FolderModel&>(*tree.model()).path(selected.front());
}

}  // namespace

TEST_CASE("Folders are listed with the hidden ones and links to folders, as a person sorts them, and files are not") {
  const fakes::TempFolder folder;
  for (const char* name : {"b/x", "A 10/x", "a 9/x", ".hidden/x"}) folder.write(name, "");
  std::filesystem::create_directory_symlink(folder / "b", folder / "link");
  folder.write("file.mp3", "");
  CHECK(subfolders(folder.path()) == Lines{".hidden", "a 9", "A 10", "b", "link"});
  CHECK(subfolders(folder / "missing").empty());
}

TEST_CASE("Mount points that a person put in are found in a mount table, with their blanks") {
  const std::string table =
      "proc /proc proc rw 0 0\n/dev/sdb1 /media/me/My\\040Stick vfat rw 0 0\n/dev/sda1 / ext4 rw 0 0\n"
      "nas:/x /mnt/nas nfs rw 0 0\n";
  CHECK(removableMounts(table) == Lines{"/media/me/My Stick", "/mnt/nas"});
  CHECK(removableMounts("broken\\").empty());
}

TEST_CASE("The tree opens up to the control's folder and selects it, and tells the user's choice") {
  const fakes::TempFolder folder;
  folder.write("music/deep/x", "");
  trial::Shown shown;
  auto& tree = shown.widget<QTreeView>("FT1");
  const auto& model = dynamic_cast<const FolderModel&>(*tree.model());
  CHECK(comesTrue([&] { return selectedPath(tree) == shown.form->FT1.SelectedFolder(); }));

  Lines told;
  shown.form->FT1.FolderChanged = [&](const std::string& path) { told.push_back(path); };
  shown.form->FT1.SetSelectedFolder(folder / "music/");
  CHECK(comesTrue([&] { return selectedPath(tree) == folder / "music"; }));

  const QModelIndex music = tree.currentIndex();
  tree.expand(music);
  CHECK(comesTrue([&] { return model.rowCount(music) == 1; }));
  tree.setCurrentIndex(model.index(0, 0, music));
  CHECK(shown.form->FT1.SelectedFolder() == folder / "music/deep");
  CHECK(told == Lines{folder / "music", folder / "music/deep"});
}

TEST_CASE("The focus alone chooses no folder") {
  trial::Shown shown;
  Lines told;
  shown.form->FT1.FolderChanged = [&](const std::string& path) { told.push_back(path); };
  shown.form->FT1.SetSelectedFolder("/usr");
  shown.form->FT1.SetFocus();
  CHECK(comesTrue([&] { return selectedPath(shown.widget<QTreeView>("FT1")) == "/usr"; }));
  CHECK(told == Lines{"/usr"});
}

TEST_CASE("A choice in the tree is believed without asking the disk, and the program's is not") {
  const fakes::TempFolder folder;
  folder.write("music/x", "");
  trial::Shown shown;
  auto& tree = shown.widget<QTreeView>("FT1");
  shown.form->FT1.SetSelectedFolder(folder.path());
  REQUIRE(comesTrue([&] { return selectedPath(tree) == folder.path(); }));
  const QModelIndex around = tree.currentIndex();
  tree.expand(around);
  REQUIRE(comesTrue([&] { return tree.model()->rowCount(around) == 1; }));
  std::filesystem::remove_all(folder / "music");
  CHECK_THROWS_AS(shown.form->FT1.SetSelectedFolder(folder / "music"), RuntimeError);
  tree.setCurrentIndex(tree.model()->index(0, 0, around));
  CHECK(shown.form->FT1.SelectedFolder() == folder / "music");
}

}  // namespace trackloom
