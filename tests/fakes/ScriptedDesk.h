#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "controls/Form.h"
#include "controls/FormHost.h"
#include "ports/FileDialogs.h"
#include "ports/MessageBoxes.h"
#include "words/table/BoxTable.h"

namespace trackloom::fakes {

/// Plays the user before the desk: answers the boxes and modal forms that a test has announced, in that order, and
/// fails on any other. A modal form's script must leave it hidden or unloaded. Every box must stand in the table of all
/// boxes, word for word and over the form that is in front, and is noted as having come.
class ScriptedDesk final : public FormHost, public MessageBoxes, public FileDialogs {
 public:
  ScriptedDesk();
  ~ScriptedDesk() override;

  /// Announces a box of this title; the answer is given when it comes.
  void expectBox(const std::string& title, BoxAnswer answer);
  /// Announces a modal form of the owner; `script` does what the user does in it.
  template <class T>
  void expectForm(const std::string& name, std::function<void(T&)> script, const std::string& owner = "frmListing") {
    announce(
        name, [script = std::move(script)](Form& form) { script(dynamic_cast<T&>(form)); }, owner);
  }
  /// Announces a choice of a file; nothing gives it up.
  void expectFile(std::optional<HostPath> answer);
  /// The same for a folder.
  void expectFolder(std::optional<HostPath> answer);
  /// Everything announced has come.
  bool finished() const;

  /// The boxes that have been shown, the last one at the end.
  std::vector<MessageBox> boxes;
  const MessageBox& lastBox() const;
  /// The file dialogs that have been shown.
  std::vector<FileDialog> fileDialogs;
  /// The prompts of the folder dialogs that have been shown.
  std::vector<std::string> folderPrompts;
  /// What was shown, hidden and unloaded, such as "show frmOpen", and painted out of turn. frmImages is left out: no
  /// user ever sees it come or go.
  std::vector<std::string> transcript;
  /// Hears each line of the transcript as it comes, and each box with its answer.
  std::function<void(const std::string&)> onLine;
  /// Runs before each box is answered; for what happens while one is open.
  std::function<void(const MessageBox&)> whileBoxIsOpen;

  void show(Form& form) override;
  void showModal(Form& form, Form* owner) override;
  void hide(Form& form) override;
  void discard(Form& form) override;
  void repaint(Control& control) override;
  void repaint(Form& form) override;
  BoxAnswer show(const MessageBox& box) override;
  std::optional<HostPath> choose(const FileDialog& dialog) override;
  std::optional<HostPath> browseForFolder(const std::string& prompt) override;

 private:
  struct Expected {
    std::string what;
    BoxAnswer answer = BoxAnswer::Ok;
    std::function<void(Form&)> script;
    std::string owner = {};
    std::optional<HostPath> file = std::nullopt;
  };
  void announce(const std::string& form, std::function<void(Form&)> script, const std::string& owner);
  Expected next(const std::string& what);
  void tell(const std::string& line) const;
  void note(const std::string& line);
  void bringToFront(Form& form);
  void takeAway(Form& form);
  void judge(const MessageBox& box);

  const std::vector<words::BoxRow> table_;
  std::deque<Expected> expected_;
  /// The forms that show, the one in front last.
  std::vector<std::string> shown_;
};

}  // namespace trackloom::fakes
