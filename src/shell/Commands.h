#pragma once

#include <string>
#include <vector>

namespace trackloom {

struct ProgramForms;
struct Session;
template <class T>
class FormSlot;

/// All commands of the main window: one handler that looks only at the name of the clicked tool.
class Commands {
 public:
  Commands(Session& session, ProgramForms& forms) : session_(session), forms_(forms) {}

  /// The first row of the table that bears the name acts; a name in no row does nothing. Inside of a batch some
  /// commands are kept until it has ended, each once.
  void dispatch(const std::string& tool);
  /// What asks for the exit by the window's close box is kept in the same way; true: it is.
  bool keepsExit();
  /// Runs, behind a batch, what was kept inside of it and still makes sense: the same layout is open, no form stands
  /// over the main window, and the tool is on.
  void runKept();

  /// Gives list, columns and meter their places in the client area.
  void resize();
  void PlaySelectedTrack();

 private:
  enum class Inside;
  struct Row;
  static const Row table[];
  struct Kept {
    const Row* row;
    std::string tool;
    int layout;
  };

  static const Row* rowOf(const std::string& tool);
  bool mustWait(const Row& row) const;
  bool keeps(const Row& row, const std::string& tool);
  bool stillMeant(const Kept& command) const;

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
  std::vector<Kept> kept_;
};

}  // namespace trackloom
