#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTabWidget>
#include <QTreeWidget>
#include <functional>
#include <memory>
#include <string>

#include "ports/HelpBook.h"

namespace trackloom {

/// The ways to a page: the contents as a tree, the index, and a search through the words of all pages.
class HelpPanes final : public QTabWidget {
 public:
  explicit HelpPanes(QWidget* parent);

  void setBook(std::shared_ptr<const HelpBook> book);
  /// Chooses the line of the contents that leads to the place, or else to its file: the last one, since a chapter leads
  /// to its first page.
  void showPlace(const std::string& place, const std::string& file);
  void showContents() { setCurrentIndex(0); }
  /// With these words typed; none leaves what is there.
  void showIndex(const std::string& words);
  void showSearch(const std::string& words);
  /// The lines of the index that bear this name, whatever its case.
  std::vector<std::string> placesOf(const std::string& name) const;

  /// A place was chosen; behind a search with the words that were sought.
  std::function<void(const std::string& place, const QStringList& words)> chosen = [](const std::string& /*place*/,
                                                                                      const QStringList& /*words*/) {};

 private:
  /// A box to type in over the lines that come of it.
  struct Finder {
    QLineEdit& box;
    QListWidget& lines;
  };

  Finder addFinder(const char* name, const char* caption, const char* label, const char* linesName);
  void connectFinder(const Finder& finder);
  void fillContents();
  void fillIndex();
  void search();
  void choose(const Finder& finder, const QListWidgetItem* line);

  std::shared_ptr<const HelpBook> book_;
  QTreeWidget& contents_;
  Finder index_;
  Finder search_;
  QLabel& found_;
};

}  // namespace trackloom
