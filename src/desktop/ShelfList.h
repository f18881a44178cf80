#pragma once

#include <QIcon>
#include <QTreeWidget>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ports/DiscShelf.h"

namespace trackloom {

/// The discs of a shelf. Renewed in place, so that the chosen disc stays chosen, and a name that is being typed stays
/// in its box. Enter and a double click mean insert, Delete means delete, F2 means rename.
class ShelfList final : public QTreeWidget {
 public:
  explicit ShelfList(QWidget* parent = nullptr);

  std::function<void()> insertWanted = [] {};
  std::function<void()> deleteWanted = [] {};
  /// The user gave a disc another name.
  std::function<void(const std::string& disc, const QString& newName)> renameWanted = [](auto&, auto&) {};

  /// In the order of their names; ages count to `now`, in seconds since 1970.
  void show(const std::vector<ShelfDisc>& discs, std::int64_t now);
  /// The name of the disc that the user has chosen.
  std::optional<std::string> chosen() const;
  /// Nothing is chosen where no disc has that name.
  void choose(const std::string& disc);
  /// Opens a box for the chosen disc's name.
  void editName();
  /// Opens it with a name that the user had typed.
  void editName(const QString& typed);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void insertRow(int row, const std::string& disc);
  void removeRow(int row);
  QTreeWidgetItem* itemOf(const std::string& disc) const;

  QIcon icon_;
  std::optional<QString> typed_;
};

}  // namespace trackloom
