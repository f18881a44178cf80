#pragma once

#include <string>

namespace trackloom {

struct ProgramForms;
struct Session;

/// All commands of the main window: one handler that looks only at the name of the clicked tool.
class Commands {
 public:
  Commands(Session& session, ProgramForms& forms) : session_(session), forms_(forms) {}

  /// The first row of the table that bears the name acts; a name in no row does nothing.
  void dispatch(const std::string& tool);

  /// Asks whether to save the open layout, and saves it; does nothing where there is nothing to save.
  void PromptSaveLayout();
  /// Empties the window and the queues.
  void CloseLayout();
  /// Saves at once where the layout has a file, else shows frmSave.
  void saveOrAskName();
  /// Gives list, columns and meter their places in the client area.
  void resize();
  void PlaySelectedTrack();

 private:
  struct Row;
  static const Row table[];

  void newLayout();
  void addFiles();
  void removeTrack();
  void closeLayout();
  void exit();
  void help();
  void saveAs();
  void ejectDisc();
  void OpenWebSite();
  void record();
  void closeQuestion();

  Session& session_;
  ProgramForms& forms_;
};

}  // namespace trackloom
