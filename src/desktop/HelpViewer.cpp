#include "desktop/HelpViewer.h"

#include <QCursor>
#include <QWhatsThis>
#include <filesystem>
#include <system_error>

#include "desktop/HelpPanes.h"
#include "desktop/HelpWindow.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

/// A file of another size or moment is another one.
std::string identityOf(const std::string& file) {
  std::error_code ignored;
  const auto size = std::filesystem::file_size(file, ignored);
  const auto moment = std::filesystem::last_write_time(file, ignored).time_since_epoch().count();
  return file + "|" + std::to_string(size) + "|" + std::to_string(moment);
}

/// A target's file; what stands behind the last sign names a window, unless a file bears all of it as its name.
std::string fileOf(const std::string& target) {
  const std::size_t sign = target.rfind('>');
  std::error_code ignored;
  const bool wholeName = sign == std::string::npos || std::filesystem::is_regular_file(target, ignored);
  return wholeName ? target : target.substr(0, sign);
}

std::string textAt(std::intptr_t data) {
  return data == 0 ? "" : reinterpret_cast<const char*>(data);
}

QString colourName(std::int32_t colour) {
  constexpr int Channel = 0xFF;
  return QColor(colour & Channel, (colour >> 8) & Channel, (colour >> 16) & Channel).name();
}

/// The note in the letters that it asks for.
QString noteText(const HelpPopup& note) {
  QString text = shown(note.text).toHtmlEscaped();
  if (note.bold) text = "<b>" + text + "</b>";
  if (note.italic) text = "<i>" + text + "</i>";
  if (note.underline) text = "<u>" + text + "</u>";
  QString style = "color:" + colourName(note.textColour) + ";background-color:" + colourName(note.backColour) + ";";
  if (!note.font.empty()) style += "font-family:'" + shown(note.font).toHtmlEscaped().remove('\'') + "';";
  if (note.size > 0) style += QString("font-size:%1pt;").arg(note.size);
  return "<span style=\"" + style + "\">" + text + "</span>";
}

}  // namespace

HelpViewer::HelpViewer(HelpBookReader reader, ShellOpener& opener) : reader_(std::move(reader)), opener_(opener) {}

HelpViewer::~HelpViewer() = default;

std::intptr_t HelpViewer::HtmlHelp(std::intptr_t /*owner*/, const std::string& target, std::uint32_t command,
                                   std::intptr_t data) {
  if (command == HelpCloseAll) {
    if (window_) window_->close();
    return 0;
  }
  if (command == HelpTextPopup) {
    QWhatsThis::showText(QCursor::pos(), noteText(*reinterpret_cast<const HelpPopup*>(data)));
    return 1;
  }
  if (!open(fileOf(target))) return 0;
  perform(command, data);
  window_->comeForward();
  return 1;
}

bool HelpViewer::open(const std::string& file) {
  const std::string identity = identityOf(file);
  if (identity != known_) {
    known_ = identity;
    book_ = reader_(HostPath(file));
    if (book_ && !window_) window_ = std::make_unique<HelpWindow>(opener_);
    if (book_) window_->setBook(book_);
  }
  return book_ != nullptr;
}

void HelpViewer::perform(std::uint32_t command, std::intptr_t data) {
  switch (command) {
    case HelpContext:
      return showTopic(static_cast<std::int32_t>(data));
    case HelpDisplayTopic:
      return window_->showPage(data == 0 ? book_->firstPage : textAt(data));
    case HelpKeywordLookup:
    case HelpAssociativeLink:
      return lookUp(textAt(data));
    case HelpDisplayIndex:
      window_->showContents();
      return window_->panes().showIndex("");
    case HelpDisplaySearch:
      window_->showContents();
      return window_->panes().showSearch(reinterpret_cast<const HelpQuery*>(data)->text);
    default:
      return window_->showContents();
  }
}

void HelpViewer::showTopic(std::int32_t number) {
  const auto topic = book_->topics.find(number);
  if (topic == book_->topics.end() || !book_->files.contains(topic->second)) return window_->showContents();
  window_->showPage(topic->second);
}

void HelpViewer::lookUp(const std::string& keyword) {
  window_->showContents();
  const std::vector<std::string> places = window_->panes().placesOf(keyword);
  if (places.size() == 1) return window_->showPage(places.front());
  window_->panes().showIndex(keyword);
}

void HelpViewer::askWhatsThis(std::intptr_t /*window*/) {
  QWhatsThis::enterWhatsThisMode();
}

}  // namespace trackloom
