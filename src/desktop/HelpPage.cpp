#include "desktop/HelpPage.h"

#include <QBuffer>
#include <QEvent>
#include <QImageReader>
#include <QTextBlock>

#include "desktop/Shown.h"

namespace trackloom {

namespace {

/// Addresses of the book have a scheme of their own, so that none can be taken for a file of the machine.
constexpr const char* Scheme = "help";
constexpr int PageMargin = 16;

/// No picture of ours comes near it; whatever is larger is not shown.
constexpr int WidestPicture = 4096;

QUrl addressOf(const std::string& place) {
  const QString text = shown(place);
  QUrl address;
  address.setScheme(Scheme);
  address.setPath("/" + text.section('#', 0, 0));
  if (text.contains('#')) address.setFragment(text.section('#', 1));
  return address;
}

std::string fileOf(const QUrl& address) {
  return entered(address.path().mid(1));
}

QVariant pictureOf(const std::string& bytes) {
  QByteArray data = QByteArray::fromStdString(bytes);
  QBuffer buffer(&data);
  QImageReader reader(&buffer, "png");
  const QSize size = reader.size();
  if (size.isEmpty() || size.width() > WidestPicture || size.height() > WidestPicture) return {};
  return reader.read();
}

}  // namespace

HelpPage::HelpPage(QWidget* parent) : QTextBrowser(parent) {
  setOpenLinks(false);
  setFrameShape(QFrame::NoFrame);
  document()->setDocumentMargin(PageMargin);
  document()->setDefaultStyleSheet("table { border-collapse: collapse; border-color: #888888; margin-top: 8px; }");
  connect(this, &QTextBrowser::anchorClicked, [this](const QUrl& link) { follow(link); });
}

void HelpPage::setBook(std::shared_ptr<const HelpBook> book) {
  book_ = std::move(book);
  clearHistory();
  if (isInBook(source())) reload();
}

void HelpPage::open(const std::string& place) {
  const QUrl address = addressOf(place);
  if (isInBook(address) && address != source()) setSource(address, QTextDocument::HtmlResource);
}

std::string HelpPage::file() const {
  return fileOf(source());
}

std::string HelpPage::place() const {
  const QString fragment = source().fragment();
  return file() + (fragment.isEmpty() ? "" : "#" + entered(fragment));
}

void HelpPage::mark(const QStringList& words) {
  QList<ExtraSelection> marks;
  for (const QString& word : words)
    for (QTextCursor found = document()->find(word); !found.isNull(); found = document()->find(word, found)) {
      ExtraSelection mark;
      mark.cursor = found;
      mark.format.setBackground(palette().highlight());
      mark.format.setForeground(palette().highlightedText());
      marks.append(mark);
    }
  setExtraSelections(marks);
  if (marks.isEmpty()) return;
  QTextCursor first = marks.first().cursor;
  first.clearSelection();
  setTextCursor(first);
}

QVariant HelpPage::loadResource(int type, const QUrl& name) {
  const QUrl address = addressOf("").resolved(name);
  if (!isInBook(address)) return QString();
  const std::string& bytes = book_->files.at(fileOf(address));
  if (type == QTextDocument::ImageResource) return pictureOf(bytes);
  return shown(bytes);
}

void HelpPage::changeEvent(QEvent* event) {
  QTextBrowser::changeEvent(event);
  // Links keep the colour with which their page was loaded.
  if (event->type() == QEvent::PaletteChange && book_) reload();
}

bool HelpPage::isInBook(const QUrl& address) const {
  return book_ && address.scheme() == Scheme && book_->files.contains(fileOf(address));
}

void HelpPage::follow(const QUrl& link) {
  const QUrl address = source().resolved(link);
  if (isInBook(address)) {
    const QString fragment = address.fragment();
    return placeWanted(fileOf(address) + (fragment.isEmpty() ? "" : "#" + entered(fragment)));
  }
  static const QStringList outside{"http", "https", "mailto"};
  if (outside.contains(address.scheme())) addressWanted(address);
}

}  // namespace trackloom
