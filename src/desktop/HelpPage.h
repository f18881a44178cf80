#pragma once

#include <QTextBrowser>
#include <functional>
#include <memory>
#include <string>

#include "ports/HelpBook.h"

namespace trackloom {

/// Shows the pages of one book. It loads nothing that is not in the book, and follows no link by itself.
class HelpPage final : public QTextBrowser {
 public:
  explicit HelpPage(QWidget* parent);

  /// What is shown is shown anew where the book has it, too.
  void setBook(std::shared_ptr<const HelpBook> book);
  /// A place of the book; a place that is not in it shows nothing new.
  void open(const std::string& place);
  /// The place that is shown, empty before the first one.
  std::string place() const;
  std::string file() const;
  /// Marks each of the words wherever it stands in the page, and shows the first of them.
  void mark(const QStringList& words);

  /// Someone wants to see another place of the book, or an address outside of it.
  std::function<void(const std::string& place)> placeWanted = [](const std::string& /*place*/) {};
  std::function<void(const QUrl& address)> addressWanted = [](const QUrl& /*address*/) {};

 protected:
  QVariant loadResource(int type, const QUrl& name) override;
  void changeEvent(QEvent* event) override;

 private:
  void follow(const QUrl& link);
  bool isInBook(const QUrl& address) const;

  std::shared_ptr<const HelpBook> book_;
};

}  // namespace trackloom
