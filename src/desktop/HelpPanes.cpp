#include "desktop/HelpPanes.h"

#include <QTabBar>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "desktop/Make.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

constexpr int PlaceRole = Qt::UserRole;
constexpr int LongestQuery = 100;

void addLine(QListWidget& list, const QString& name, const std::string& place) {
  auto line = std::make_unique<QListWidgetItem>(name);
  line->setData(PlaceRole, shown(place));
  list.addItem(line.release());
}

bool holdsAll(const QString& text, const QStringList& words) {
  return std::all_of(words.begin(), words.end(),
                     [&text](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

QString titleOf(const HelpBook::Page& page) {
  return shown(page.title.empty() ? page.file : page.title);
}

QTreeWidget& makeContents(QTabWidget& tabs) {
  auto& tree = make<QTreeWidget>(tabs);
  tree.setObjectName("contents");
  tree.setAccessibleName("Contents");
  tree.setHeaderHidden(true);
  tabs.addTab(&tree, "&Contents");
  return tree;
}

}  // namespace

HelpPanes::HelpPanes(QWidget* parent)
    : QTabWidget(parent),
      contents_(makeContents(*this)),
      index_(addFinder("index", "I&ndex", "Words to look for in the index", "Index")),
      search_(addFinder("search", "&Search", "Words to search for in all pages", "Pages found")),
      found_(make<QLabel>(*widget(2))) {
  widget(2)->layout()->addWidget(&found_);
  found_.setObjectName("found");
  const auto go = [this](const QTreeWidgetItem* item) {
    if (item != nullptr) chosen(entered(item->data(0, PlaceRole).toString()), {});
  };
  connect(&contents_, &QTreeWidget::itemClicked, go);
  connect(&contents_, &QTreeWidget::itemActivated, go);
  connectFinder(index_);
  connectFinder(search_);
  // Whoever came by mouse or access key goes on within the pane; the arrow keys stay with the tabs.
  connect(this, &QTabWidget::currentChanged, [this](int pane) {
    const std::array<QWidget*, 3> first{&contents_, &index_.box, &search_.box};
    if (!tabBar()->hasFocus()) first.at(static_cast<std::size_t>(pane))->setFocus();
  });
  connect(&index_.box, &QLineEdit::textChanged, [this] { fillIndex(); });
  connect(&search_.box, &QLineEdit::textChanged, [this] { search(); });
}

HelpPanes::Finder HelpPanes::addFinder(const char* name, const char* caption, const char* label,
                                       const char* linesName) {
  auto& pane = make<QWidget>(*this);
  auto& rows = make<QVBoxLayout>(pane);
  const Finder finder{make<QLineEdit>(pane), make<QListWidget>(pane)};
  finder.box.setObjectName(name);
  finder.box.setAccessibleName(label);
  finder.box.setPlaceholderText(label);
  finder.box.setMaxLength(LongestQuery);
  finder.box.setClearButtonEnabled(true);
  finder.lines.setObjectName(QString(name) + "Lines");
  finder.lines.setAccessibleName(linesName);
  rows.addWidget(&finder.box);
  rows.addWidget(&finder.lines);
  addTab(&pane, caption);
  return finder;
}

void HelpPanes::connectFinder(const Finder& finder) {
  const auto go = [this, finder](const QListWidgetItem* line) { choose(finder, line); };
  connect(&finder.lines, &QListWidget::itemClicked, go);
  connect(&finder.lines, &QListWidget::itemActivated, go);
  connect(&finder.box, &QLineEdit::returnPressed, [this, finder] {
    const QListWidgetItem* line = finder.lines.currentItem();
    choose(finder, line == nullptr ? finder.lines.item(0) : line);
  });
}

void HelpPanes::choose(const Finder& finder, const QListWidgetItem* line) {
  if (line == nullptr) return;
  const bool bySearch = &finder.box == &search_.box;
  chosen(entered(line->data(PlaceRole).toString()),
         bySearch ? finder.box.text().split(' ', Qt::SkipEmptyParts) : QStringList());
}

void HelpPanes::setBook(std::shared_ptr<const HelpBook> book) {
  book_ = std::move(book);
  fillContents();
  fillIndex();
  search();
}

void HelpPanes::fillContents() {
  contents_.clear();
  std::vector<QTreeWidgetItem*> above;
  for (const HelpBook::Line& line : book_->contents) {
    above.resize(std::min(above.size(), static_cast<std::size_t>(line.depth)));
    QTreeWidgetItem* parent = above.empty() ? contents_.invisibleRootItem() : above.back();
    auto item = std::make_unique<QTreeWidgetItem>(QStringList(shown(line.name)));
    item->setData(0, PlaceRole, shown(line.place));
    above.push_back(item.get());
    parent->addChild(item.release());
  }
}

void HelpPanes::fillIndex() {
  index_.lines.clear();
  const QStringList words = index_.box.text().split(' ', Qt::SkipEmptyParts);
  for (const HelpBook::Line& line : book_->index)
    if (holdsAll(shown(line.name), words)) addLine(index_.lines, shown(line.name), line.place);
}

void HelpPanes::search() {
  search_.lines.clear();
  const QStringList words = search_.box.text().split(' ', Qt::SkipEmptyParts);
  if (words.isEmpty()) return found_.clear();
  for (const bool inTitle : {true, false})
    for (const HelpBook::Page& page : book_->pages)
      if (holdsAll(shown(page.text), words) && holdsAll(titleOf(page), words) == inTitle)
        addLine(search_.lines, titleOf(page), page.file);
  const int count = search_.lines.count();
  found_.setText(count == 0 ? "No page has all these words." : QString("Pages found: %1").arg(count));
}

void HelpPanes::showPlace(const std::string& place, const std::string& file) {
  QTreeWidgetItem* best = nullptr;
  for (QTreeWidgetItemIterator it(&contents_); *it != nullptr; ++it) {
    const std::string target = entered((*it)->data(0, PlaceRole).toString());
    if (target == place || (best == nullptr && target == file)) best = *it;
  }
  contents_.setCurrentItem(best);
}

void HelpPanes::showIndex(const std::string& words) {
  setCurrentIndex(1);
  if (!words.empty()) index_.box.setText(shown(words));
  index_.box.setFocus();
}

void HelpPanes::showSearch(const std::string& words) {
  setCurrentIndex(2);
  if (!words.empty()) search_.box.setText(shown(words));
  search_.box.setFocus();
}

std::vector<std::string> HelpPanes::placesOf(const std::string& name) const {
  std::vector<std::string> places;
  for (const HelpBook::Line& line : book_->index)
    if (shown(line.name).compare(shown(name), Qt::CaseInsensitive) == 0) places.push_back(line.place);
  return places;
}

}  // namespace trackloom
