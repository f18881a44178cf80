#pragma once

#include <QAbstractItemModel>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace trackloom {

/// The folders of the machine as a tree: the home folder, the whole file system, and what is mounted as removable. Each
/// folder is read when it is first opened, by a thread of its own, so that a slow or
/// dead disk holds up nothing, other folders neither.
class FolderModel final : public QAbstractItemModel {
 public:
  explicit FolderModel(QObject* parent);
  ~FolderModel() override;

  std::string path(const QModelIndex& index) const;
  /// Reads folder by folder down to `path`, then hands over its place; or never, where it is not found. A new call
  /// replaces one still under way.
  void reveal(const std::string& path, std::function<void(const QModelIndex&)> found);

  QModelIndex index(int row, int column, const QModelIndex& parent) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex& parent) const override;
  bool hasChildren(const QModelIndex& parent) const override;
  bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Icon;
  struct Node;
  struct WayBack;

  Node* nodeOf(const QModelIndex& index) const;
  QModelIndex indexOf(const Node& node) const;
  void addRoot(const std::string& path, const std::string& name, const Icon& icon);
  void read(Node& node);
  void take(Node& node, const std::vector<std::string>& names);
  void loseArrow();
  void goOnRevealing();

  std::unique_ptr<Node> top_;
  std::shared_ptr<WayBack> wayBack_;
  std::string wanted_;
  std::function<void(const QModelIndex&)> found_;
};

/// The names of the folders in `folder`, links to folders among them, as a person would sort them. What cannot be read
/// has none.
std::vector<std::string> subfolders(const std::string& folder);

/// The mount points in the lines of a mount table that a person put in: those below /media, /run/media and /mnt.
std::vector<std::string> removableMounts(const std::string& mountTable);

}  // namespace trackloom
