#include "help/HTMLHelp.h"

#include <string_view>

#include "help/HelpVersions.h"
#include "model/Session.h"
#include "runtime/Files.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

constexpr const char* HelpFilesKey = "Software\\Microsoft\\Windows\\HTML Help";

/// A statement of a display: where an object is missing the display ends, and any other failure skips the statement.
void goOn(const std::function<void()>& statement) {
  try {
    statement();
  } catch (const RuntimeError& error) {
    if (error.number() == RuntimeError::ObjectNotSet) throw;
  }
}

struct FileAndFolder {
  std::string folder;
  std::string file;
};

/// The folder keeps its separator; it is empty for a bare name.
FileAndFolder parted(const std::string& path) {
  const std::size_t start = path.rfind(HostSep) + 1;
  return {path.substr(0, start), path.substr(start)};
}

}  // namespace

/// A part of the system that help needs.
struct HTMLHelp::Part {
  const char* key;
  const char* notRegistered;
  const char* notInPlace;
  std::string (*versionText)(const FileVersion&);
};

void HTMLHelp::HHDisplayTopicURL(std::intptr_t& window) {
  display(window, HelpDisplayTopic, helpData(HHTopicURL.c_str()));
}

void HTMLHelp::HHDisplayTopicID(std::intptr_t& window) {
  display(window, HelpContext, HHTopicID);
}

void HTMLHelp::HHDisplaySearch(std::intptr_t& window) {
  const HelpQuery query{"", HHWindow};
  display(window, HelpDisplaySearch, helpData(&query));
}

void HTMLHelp::HHDisplayKeyword(std::intptr_t& window) {
  lookUp(window, HelpKeywordLookup, HHKeyword, true);
}

void HTMLHelp::HHDisplayIndex(std::intptr_t& window) {
  display(window, HelpDisplayIndex, 0);
}

void HTMLHelp::HHDisplayContents(std::intptr_t& window) {
  display(window, HelpDisplayContents, 0);
}

void HTMLHelp::HHDisplayALink(std::intptr_t& window) {
  lookUp(window, HelpAssociativeLink, HHALink, false);
}

void HTMLHelp::HHDisplayPopup(std::intptr_t& window) {
  const HelpPopup note = popup();
  display(window, HelpTextPopup, helpData(&note));
}

void HTMLHelp::HHClose(std::intptr_t& window) {
  display(window, HelpCloseAll, 0);
}

void HTMLHelp::HHInvokeWhatsThisHelp(std::intptr_t& window) {
  skipOnError([&] { session_.ports.help.askWhatsThis(window); });
}

void HTMLHelp::display(std::intptr_t window, std::uint32_t command, std::intptr_t data) {
  skipOnError([&] {
    if (fileIsThere()) goOn([&] { call(window, target(), command, data); });
  });
}

void HTMLHelp::lookUp(std::intptr_t window, std::uint32_t command, const std::string& words, bool topicFirst) {
  skipOnError([&] {
    if (!fileIsThere()) return;
    if (topicFirst) goOn([&] { call(window, CHMFile, HelpDisplayTopic, 0); });
    goOn([&] { call(window, CHMFile, command, helpData(words.c_str())); });
  });
}

bool HTMLHelp::fileIsThere() {
  bool there = true;
  goOn([&] { there = EnsureFileExists(CHMFile); });
  return there;
}

std::string HTMLHelp::target() const {
  return Trim(HHWindow).empty() ? CHMFile : CHMFile + ">" + HHWindow;
}

void HTMLHelp::call(std::intptr_t window, const std::string& target, std::uint32_t command, std::intptr_t data) {
  session_.ports.help.HtmlHelp(HHShowOnTop ? window : 0, target, command, data);
}

HelpPopup HTMLHelp::popup() const {
  return {HHPopupFile,
          HHPopupID,
          HHPopupType,
          HHPopupText,
          HHPopupCustomColors ? HHPopupCustomTextColor : HHPopupTextColor,
          HHPopupCustomColors ? HHPopupCustomBackColor : HHPopupBackColor,
          HHPopupTextFont,
          HHPopupTextSize,
          HHPopupTextBold,
          HHPopupTextItalic,
          HHPopupTextUnderline};
}

void HTMLHelp::HHRegister(const std::string& file) {
  const auto [folder, name] = parted(file);
  change([&, &folder = folder, &name = name] {
    if (HHCheckRegistry(name))
      return refuse("The file " + name +
                    " is already registered.  HHRegister will not be run as no action need be taken.");
    // The lone quote stands in the words as they are known.
    if (folder.empty()) return refuse("Cannot register " + name + " without having a supplied path.\"");
    session_.ports.registry.setText(Registry::Root::LocalMachine, HelpFilesKey, name, folder);
  });
}

void HTMLHelp::HHUnRegister(const std::string& file) {
  change([&] { session_.ports.registry.removeText(Registry::Root::LocalMachine, HelpFilesKey, parted(file).file); });
}

void HTMLHelp::change(const std::function<void()>& deed) {
  try {
    deed();
  } catch (const RuntimeError& error) {
    refuse(error.description());
  }
}

void HTMLHelp::refuse(const std::string& words) {
  session_.ask({"HTML Help Class: HHRegister Error", words, BoxButtons::Ok, BoxIcon::Critical});
}

bool HTMLHelp::HHCheckRegistry(const std::string& name) {
  const auto folder = session_.ports.registry.text(Registry::Root::LocalMachine, HelpFilesKey, name);
  regFileExists_ = folder.has_value() && !folder->empty();
  regFilePath_ = regFileExists_ ? EnsureTrailingSep(*folder) : "";
  regFileName_ = regFileExists_ ? name : "";
  return regFileExists_;
}

std::string HTMLHelp::HHSetHelpFile(std::int16_t kind) const {
  if (kind == 1) return session_.mod.AppFolder + HostSep + "Library.chm";
  return kind == 2 ? "Library.txt" : "";
}

bool HTMLHelp::EnsureFileExists(std::string& path) {
  if (path.find(HostSep) == std::string::npos)
    path = HHCheckRegistry(path) ? regFilePath_ + regFileName_ : session_.mod.AppFolder + HostSep + path;
  return FileExists(HostPath(path));
}

void HTMLHelp::HHVerifyMinConfig(std::int32_t helpCode, std::int32_t browserCode, bool& met) {
  static constexpr Part Engine{"CLSID\\{4662DAB0-D393-11D0-9A56-00C04FB68B66}\\InprocServer32",
                               "Hhctrl.ocx is not registered.  Please install HTML Help.",
                               "Hhctrl.ocx is not in its registered location.  Please reinstall HTML Help.",
                               helpVersionText};
  static constexpr Part Browser{
      "CLSID\\{0A89A860-D7B1-11CE-8350-444553540000}\\InProcServer32",
      "Shdocvw.dll is not registered.  Please install Internet Explorer.",
      "Internet Explorer is not in its registered location.  Please reinstall Internet Explorer.", browserVersionText};
  installed_ = find(Engine, version_);
  find(Browser, browserVersion_);
  const std::string_view leastHelp = leastHelpVersion(helpCode);
  const std::string_view leastBrowser = leastBrowserVersion(browserCode);
  met = leastHelp != UnknownVersion && leastBrowser != UnknownVersion && isAtLeast(version_, leastHelp) &&
        isAtLeast(browserVersion_, leastBrowser);
  friendlyName_ = friendlyHelpName(version_);
  browserFriendlyName_ = friendlyBrowserName(browserVersion_);
}

bool HTMLHelp::find(const Part& part, std::string& version) {
  version.clear();
  const auto report = [this](const char* words) {
    session_.ask({"Error", words, BoxButtons::Ok, BoxIcon::Critical});
    return false;
  };
  const std::string value = GetKeyInfo(part.key, "");
  if (value.empty()) return report(part.notRegistered);
  FileVersions& files = session_.ports.fileVersions;
  const HostPath file(files.longPath(files.expanded(Right(value, Len(value) - 1))));
  if (!FileExists(file)) return report(part.notInPlace);
  if (const auto known = files.versionOf(file)) version = part.versionText(*known);
  return true;
}

std::string HTMLHelp::GetKeyInfo(const std::string& key, const std::string& name) const {
  return session_.ports.registry.text(Registry::Root::ClassesRoot, key, name).value_or("");
}

std::string HTMLHelp::GetWindowsVersion() const {
  return session_.ports.fileVersions.systemVersion();
}

}  // namespace trackloom
