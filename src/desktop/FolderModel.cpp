#include "desktop/FolderModel.h"

#include <QApplication>
#include <QCollator>
#include <QStyle>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <sstream>

#include "desktop/Answer.h"
#include "desktop/Aside.h"
#include "desktop/Shown.h"
#include "runtime/Files.h"
#include "runtime/Paths.h"

namespace trackloom {

/// The desktop's own icon or, where it has none, the toolkit's.
struct FolderModel::Icon {
  const char* theme;
  QStyle::StandardPixmap standard;
};

struct FolderModel::Node {
  std::string path;
  std::string name;
  Node* parent = nullptr;
  int row = 0;
  Icon icon{"folder", QStyle::SP_DirIcon};
  enum class State { Unread, Reading, Read } state = State::Unread;
  std::vector<std::unique_ptr<Node>> children;
};

/// How a thread that reads a folder reaches the model, which may have gone meanwhile.
struct FolderModel::WayBack {
  std::mutex mutex;
  FolderModel* model;
};

namespace {

bool liesIn(const std::string& path, const std::string& folder) {
  const std::string start = EnsureTrailingSep(folder);
  return path == folder || path.compare(0, start.size(), start) == 0;
}

/// A mount table writes blanks and other special bytes as a backslash and three octal digits.
std::string unescaped(const std::string& field) {
  constexpr std::size_t Digits = 3;
  constexpr int Octal = 8;
  std::string plain;
  for (std::size_t at = 0; at < field.size(); ++at) {
    if (field[at] == '\\' && at + Digits < field.size()) {
      plain += static_cast<char>(std::stoi(field.substr(at + 1, Digits), nullptr, Octal));
      at += Digits;
    } else {
      plain += field[at];
    }
  }
  return plain;
}

std::string mountTable() {
  std::ifstream file("/proc/self/mounts");
  std::ostringstream table;
  table << file.rdbuf();
  return table.str();
}

}  // namespace

std::vector<std::string> subfolders(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code unreadable;
    if (entry->is_directory(unreadable)) names.push_back(entry->path().filename().string());
  }
  // The locale "C" knows no order but that of the bytes.
  const QLocale locale = QLocale::system();
  QCollator order(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
  order.setNumericMode(true);
  order.setCaseSensitivity(Qt::CaseInsensitive);
  std::sort(names.begin(), names.end(), [&](const std::string& a, const std::string& b) {
    const int sign = order.compare(shown(a), shown(b));
    return sign == 0 ? a < b : sign < 0;
  });
  return names;
}

std::vector<std::string> removableMounts(const std::string& table) {
  std::vector<std::string> mounts;
  std::istringstream lines(table);
  std::string line;
  while (std::getline(lines, line)) {
    std::istringstream fields(line);
    std::string device;
    std::string point;
    fields >> device >> point;
    point = unescaped(point);
    for (const char* place : {"/media/", "/run/media/", "/mnt/"})
      if (EnsureTrailingSep(point).starts_with(place)) mounts.push_back(point);
  }
  return mounts;
}

FolderModel::FolderModel(QObject* parent)
    : QAbstractItemModel(parent), top_(std::make_unique<Node>()), wayBack_(std::make_shared<WayBack>()) {
  wayBack_->model = this;
  top_->state = Node::State::Read;
  addRoot(HomeFolder().text, "Home", {"user-home", QStyle::SP_DirHomeIcon});
  addRoot("/", "File System", {"computer", QStyle::SP_ComputerIcon});
  for (const std::string& mount : removableMounts(mountTable()))
    addRoot(mount, std::filesystem::path(mount).filename().string(), {"drive-removable-media", QStyle::SP_DriveHDIcon});
}

FolderModel::~FolderModel() {
  const std::lock_guard lock(wayBack_->mutex);
  wayBack_->model = nullptr;
}

void FolderModel::addRoot(const std::string& path, const std::string& name, const Icon& icon) {
  auto root = std::make_unique<Node>();
  root->path = path;
  root->name = name;
  root->parent = top_.get();
  root->row = static_cast<int>(top_->children.size());
  root->icon = icon;
  top_->children.push_back(std::move(root));
}

FolderModel::Node* FolderModel::nodeOf(const QModelIndex& index) const {
  return index.isValid() ? static_cast<Node*>(index.internalPointer()) : top_.get();
}

QModelIndex FolderModel::indexOf(const Node& node) const {
  return &node == top_.get() ? QModelIndex() : createIndex(node.row, 0, &node);
}

std::string FolderModel::path(const QModelIndex& index) const {
  return nodeOf(index)->path;
}

void FolderModel::read(Node& node) {
  if (node.state != Node::State::Unread) return;
  node.state = Node::State::Reading;
  // Nodes are never removed while the model lives, so the node is there for as long as the model is.
  doAside([wayBack = wayBack_, folder = node.path, &node] {
    const std::vector<std::string> names = subfolders(folder);
    const std::lock_guard lock(wayBack->mutex);
    FolderModel* model = wayBack->model;
    if (model == nullptr) return;
    QMetaObject::invokeMethod(
        model, [model, &node, names] { model->take(node, names); }, Qt::QueuedConnection);
  });
}

void FolderModel::take(Node& node, const std::vector<std::string>& names) {
  if (!names.empty()) beginInsertRows(indexOf(node), 0, static_cast<int>(names.size()) - 1);
  for (const std::string& name : names) {
    auto child = std::make_unique<Node>();
    child->path = EnsureTrailingSep(node.path) + name;
    child->name = name;
    child->parent = &node;
    child->row = static_cast<int>(node.children.size());
    node.children.push_back(std::move(child));
  }
  node.state = Node::State::Read;
  if (!names.empty())
    endInsertRows();
  else
    loseArrow();
  goOnRevealing();
}

/// A view asks once whether a folder has subfolders, and again only when its layout changes.
void FolderModel::loseArrow() {
  emit layoutAboutToBeChanged();
  emit layoutChanged();
}

void FolderModel::reveal(const std::string& path, std::function<void(const QModelIndex&)> found) {
  wanted_ = path;
  found_ = std::move(found);
  goOnRevealing();
}

void FolderModel::goOnRevealing() {
  if (!found_) return;
  Node* node = nullptr;
  for (const auto& root : top_->children)
    if (liesIn(wanted_, root->path) && (node == nullptr || root->path.size() > node->path.size())) node = root.get();
  while (node != nullptr && node->path != wanted_) {
    if (node->state != Node::State::Read) return read(*node);
    const auto next = std::find_if(node->children.begin(), node->children.end(),
                                   [this](const auto& child) { return liesIn(wanted_, child->path); });
    node = next == node->children.end() ? nullptr : next->get();
  }
  const auto found = std::exchange(found_, {});
  if (node != nullptr) found(indexOf(*node));
}

QModelIndex FolderModel::index(int row, int column, const QModelIndex& parent) const {
  const auto& children = nodeOf(parent)->children;
  if (column != 0 || row < 0 || row >= static_cast<int>(children.size())) return {};
  return indexOf(*children[static_cast<std::size_t>(row)]);
}

QModelIndex FolderModel::parent(const QModelIndex& index) const {
  return index.isValid() ? indexOf(*nodeOf(index)->parent) : QModelIndex();
}

int FolderModel::rowCount(const QModelIndex& parent) const {
  return static_cast<int>(nodeOf(parent)->children.size());
}

int FolderModel::columnCount(const QModelIndex& /*parent*/) const {
  return 1;
}

bool FolderModel::hasChildren(const QModelIndex& parent) const {
  const Node& node = *nodeOf(parent);
  return node.state != Node::State::Read || !node.children.empty();
}

bool FolderModel::canFetchMore(const QModelIndex& parent) const {
  return nodeOf(parent)->state == Node::State::Unread;
}

void FolderModel::fetchMore(const QModelIndex& parent) {
  read(*nodeOf(parent));
}

QVariant FolderModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  return answer(QVariant(), [&]() -> QVariant {
    const Node& node = *nodeOf(index);
    if (role == Qt::DisplayRole) return shown(node.name);
    if (role != Qt::DecorationRole) return {};
    return QIcon::fromTheme(node.icon.theme, QApplication::style()->standardIcon(node.icon.standard));
  });
}

}  // namespace trackloom
