#include <QApplication>
#include <QStyle>
#include <QTreeView>
#include <catch2/catch.hpp>
#include <set>

#include "desktop/FolderModel.h"
#include "desktop/Trial.h"
#include "fakes/TempFolder.h"
#include "runtime/Files.h"

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
      "nas:/x /mnt/nas nfs rw 0 0\n/dev/sdc1 /mntx ext4 rw 0 0\n/dev/sdd1 /mnt ext4 rw 0 0\n";
  CHECK(removableMounts(table) == Lines{"/media/me/My Stick", "/mnt/nas", "/mnt"});
  CHECK(removableMounts("broken\\").empty());
}

TEST_CASE("The tree opens up to the control's folder and selects it, and tells the user's choice") {
  const fakes::TempFolder folder;
  folder.write("music/deep/x", "");
  trial::Shown shown;
  auto& tree = shown.widget<QTreeView>("FT1");
  const auto& model = dynamic_cast<const FolderModel&>(*tree.model());
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

TEST_CASE("A folder that the tree has read already is selected at once") {
  const fakes::TempFolder folder;
  folder.write("a/x", "");
  folder.write("b/x", "");
  trial::Shown shown;
  auto& tree = shown.widget<QTreeView>("FT1");
  shown.form->FT1.SetSelectedFolder(folder / "a");
  REQUIRE(comesTrue([&] { return selectedPath(tree) == folder / "a"; }));
  shown.form->FT1.SetSelectedFolder(folder / "b");
  CHECK(selectedPath(tree) == folder / "b");
}

TEST_CASE("At first the tree shows the home folder opened and nothing selected, and the home folder can be chosen") {
  trial::Shown shown;
  auto& tree = shown.widget<QTreeView>("FT1");
  Lines told;
  shown.form->FT1.FolderChanged = [&](const std::string& path) { told.push_back(path); };
  const QModelIndex home = tree.model()->index(0, 0);
  CHECK(tree.isExpanded(home));
  CHECK(selectedPath(tree).empty());
  tree.setCurrentIndex(home);
  CHECK(told == Lines{HomeFolder().text});
  CHECK(selectedPath(tree) == HomeFolder().text);
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

TEST_CASE("A folder is believed to be there without asking the disk") {
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
  tree.setCurrentIndex(tree.model()->index(0, 0, around));
  CHECK(shown.form->FT1.SelectedFolder() == folder / "music");
}

TEST_CASE("Enter opens a folder of the tree, and goes no further") {
  const fakes::TempFolder folder;
  folder.write("music/deep/x", "");
  trial::Shown shown;
  auto& tree = shown.widget<QTreeView>("FT1");
  shown.form->cmdOK.Default = true;
  shown.form->FT1.SetSelectedFolder(folder / "music");
  REQUIRE(comesTrue([&] { return selectedPath(tree) == folder / "music"; }));
  shown.form->heard.clear();
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    tree.collapse(tree.currentIndex());
    QTest::keyClick(&tree, key);
    CHECK(tree.isExpanded(tree.currentIndex()));
  }
  CHECK(shown.form->heard.empty());
  CHECK(shown.form->FT1.SelectedFolder() == folder / "music");
}

TEST_CASE("A folder that turns out to have no subfolders loses its arrow once it is read") {
  const fakes::TempFolder folder;
  folder.write("music/x", "");
  trial::Shown shown;
  auto& tree = shown.widget<QTreeView>("FT1");
  tree.resize(400, 400);
  shown.form->FT1.SetSelectedFolder(folder / "music");
  REQUIRE(comesTrue([&] { return selectedPath(tree) == folder / "music"; }));
  const QModelIndex music = tree.currentIndex();
  const auto coloursBesideName = [&] {
    const QRect name = tree.visualRect(music);
    const QRect beside(name.left() - tree.indentation(), name.top() + 2, tree.indentation() - 1, name.height() - 4);
    const QImage picture = tree.viewport()->grab(beside).toImage();
    std::set<QRgb> colours;
    for (int x = 0; x < picture.width(); ++x)
      for (int y = 0; y < picture.height(); ++y) colours.insert(picture.pixel(x, y));
    return colours.size();
  };
  CHECK(coloursBesideName() > 1);
  tree.expand(music);
  REQUIRE(comesTrue([&] { return !tree.model()->hasChildren(music); }));
  CHECK(coloursBesideName() == 1);
}

TEST_CASE("Home and the file system are the first two roots, each with its place, its name and its picture") {
  FolderModel model(nullptr);
  REQUIRE(model.rowCount({}) >= 2);
  CHECK_FALSE(model.canFetchMore({}));
  const auto pictureOf = [](QStyle::StandardPixmap which) {
    return QApplication::style()->standardIcon(which).pixmap(16).toImage();
  };
  struct Root {
    std::string path;
    const char* name;
    const char* theme;
    QStyle::StandardPixmap picture;
  };
  const std::vector<Root> roots{{HomeFolder().text, "Home", "user-home", QStyle::SP_DirHomeIcon},
                                {"/", "File System", "computer", QStyle::SP_ComputerIcon}};
  for (int row = 0; row < 2; ++row) {
    const Root& root = roots[static_cast<std::size_t>(row)];
    const QModelIndex index = model.index(row, 0, {});
    CHECK(index.row() == row);
    CHECK_FALSE(model.parent(index).isValid());
    CHECK(model.path(index) == root.path);
    CHECK(index.data().toString() == root.name);
    CHECK(model.hasChildren(index));
    CHECK(model.canFetchMore(index));
    const QIcon shown = index.data(Qt::DecorationRole).value<QIcon>();
    if (!QIcon::hasThemeIcon(root.theme)) CHECK(shown.pixmap(16).toImage() == pictureOf(root.picture));
    CHECK_FALSE(index.data(Qt::ToolTipRole).isValid());
  }
}

TEST_CASE("A folder knows its place among its siblings, and one that was read and is empty opens no more") {
  const fakes::TempFolder folder;
  folder.write("one/x", "");
  folder.write("two/x", "");
  trial::Shown shown;
  auto& tree = shown.widget<QTreeView>("FT1");
  auto& model = dynamic_cast<FolderModel&>(*tree.model());
  shown.form->FT1.SetSelectedFolder(folder.path());
  REQUIRE(comesTrue([&] { return selectedPath(tree) == folder.path(); }));
  const QModelIndex around = tree.currentIndex();
  tree.expand(around);
  REQUIRE(comesTrue([&] { return model.rowCount(around) == 2; }));
  for (int row = 0; row < 2; ++row) {
    const QModelIndex inner = model.index(row, 0, around);
    CHECK(inner.row() == row);
    CHECK(model.parent(inner) == around);
    CHECK(model.hasChildren(inner));
    model.fetchMore(inner);
    CHECK(comesTrue([&] { return !model.hasChildren(inner); }));
    CHECK_FALSE(model.canFetchMore(inner));
  }
}

TEST_CASE("The folder of the control is shown in the middle of the tree, and a tree begins with its first root open") {
  const fakes::TempFolder folder;
  for (int n = 100; n < 160; ++n) folder.write(std::to_string(n) + "/x", "");
  trial::Shown shown;
  auto& tree = shown.widget<QTreeView>("FT1");
  CHECK(tree.isExpanded(tree.model()->index(0, 0, {})));
  shown.form->FT1.SetSelectedFolder(folder / "130/");
  REQUIRE(comesTrue([&] { return selectedPath(tree) == folder / "130"; }));
  const QRect row = tree.visualRect(tree.currentIndex());
  CHECK(std::abs(row.center().y() - tree.viewport()->rect().center().y()) <= 2 * row.height());
}

}  // namespace trackloom
