#pragma once

#include <string>

namespace trackloom {

struct ProgramForms;
struct Session;
template <class T>
class FormSlot;

/// All commands of the main window: one handler that looks only at the name of the clicked tool.
class Commands {
 public:
  Commands(Session& session, ProgramForms& forms) : session_(session), forms_(forms) {}

  /// The first row of the table that bears the name acts; a name in no row does nothing.
  void dispatch(const std::string& tool);

  /// Gives list, columns and meter their places in the client area.
  void resize();
  void PlaySelectedTrack();

 private:
  struct Row;
  static const Row table[];

  template <class T>
  void showModal(FormSlot<T>& form);

  void newLayout();
  void addFiles();
  void removeTrack();
  void closeLayout();
  void exit();
  void showAllTracks();
  void showTracksWithoutFolder();
  void help();
  void eraseDisc();
  void openRipper();
  void openLayout();
  void writeIsoImage();
  void save();
  void saveAs();
  void showDiscInfo();
  void search();
  void ejectDisc();
  void about();
  void defaultOptions();
  void OpenWebSite();
  void print();
  void createIsoImage();
  void record();

  Session& session_;
  ProgramForms& forms_;
};

}  // namespace trackloom
