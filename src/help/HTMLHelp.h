#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "ports/HelpEngine.h"

namespace trackloom {

struct Session;

/// The system's help engine with everything that it can be asked. The program has one, made at its first use. It lives
/// on the UI thread, and no failure of showing help reaches the user.
class HTMLHelp {
 public:
  explicit HTMLHelp(Session& session) : session_(session) {}

  std::string HHWindow;
  std::string HHTopicURL;
  std::int32_t HHTopicID = 0;
  std::string HHMsgTitle;
  std::string HHMsgText;
  std::string HHKeyword;
  std::string HHDefaultURL;
  std::string HHALink;
  std::string CHMFile;
  /// Help stays in front of the window that asks for it.
  bool HHShowOnTop = false;
  bool HHPopupCustomColors = false;

  std::string HHPopupFile;
  std::int32_t HHPopupID = 0;
  std::string HHPopupText;
  std::int16_t HHPopupType = 0;
  std::int32_t HHPopupTextColor = 0;
  std::int32_t HHPopupBackColor = 0;
  std::int32_t HHPopupCustomTextColor = 0;
  std::int32_t HHPopupCustomBackColor = 0;
  std::string HHPopupTextFont;
  std::int16_t HHPopupTextSize = 0;
  bool HHPopupTextBold = false;
  bool HHPopupTextItalic = false;
  bool HHPopupTextUnderline = false;

  const std::string& HHRegFileName() const { return regFileName_; }
  const std::string& HHRegFilePath() const { return regFilePath_; }
  bool HHRegFileExists() const { return regFileExists_; }
  bool HHInstalled() const { return installed_; }
  const std::string& HHVersion() const { return version_; }
  const std::string& IEVersion() const { return browserVersion_; }
  const std::string& HHFriendlyName() const { return friendlyName_; }
  const std::string& IEFriendlyName() const { return browserFriendlyName_; }

  void HHDisplayTopicURL(std::intptr_t& window);
  void HHDisplayTopicID(std::intptr_t& window);
  void HHDisplaySearch(std::intptr_t& window);
  void HHDisplayKeyword(std::intptr_t& window);
  void HHDisplayIndex(std::intptr_t& window);
  void HHDisplayContents(std::intptr_t& window);
  void HHDisplayALink(std::intptr_t& window);
  void HHDisplayPopup(std::intptr_t& window);
  void HHClose(std::intptr_t& window);
  void HHInvokeWhatsThisHelp(std::intptr_t& window);

  /// Notes the folder of a help file under its name; what stands in the way is told in a box.
  void HHRegister(const std::string& file);
  void HHUnRegister(const std::string& file);
  /// Looks a name up, and sets the HHReg properties.
  bool HHCheckRegistry(const std::string& name);
  /// The help file of kind 1 or 2; no other kind has one.
  std::string HHSetHelpFile(std::int16_t kind) const;

  /// Whether engine and browser are there and no older than the codes ask; what is missing is told in boxes.
  void HHVerifyMinConfig(std::int32_t helpCode, std::int32_t browserCode, bool& met);

  /// Whether the file is there. A bare name becomes the path where it is registered, or one in the program's folder.
  bool EnsureFileExists(std::string& path);
  /// A text of the classes' keys; empty where there is none.
  std::string GetKeyInfo(const std::string& key, const std::string& name) const;
  std::string GetWindowsVersion() const;

 private:
  struct Part;

  void display(std::intptr_t window, std::uint32_t command, std::intptr_t data);
  void lookUp(std::intptr_t window, std::uint32_t command, const std::string& words, bool topicFirst);
  bool fileIsThere();
  std::string target() const;
  void call(std::intptr_t window, const std::string& target, std::uint32_t command, std::intptr_t data);
  HelpPopup popup() const;
  void change(const std::function<void()>& deed);
  void refuse(const std::string& words);
  bool find(const Part& part, std::string& version);

  Session& session_;
  std::string regFileName_;
  std::string regFilePath_;
  bool regFileExists_ = false;
  bool installed_ = false;
  std::string version_;
  std::string browserVersion_;
  std::string friendlyName_;
  std::string browserFriendlyName_;
};

}  // namespace trackloom
