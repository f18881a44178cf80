#pragma once

#include <QTimer>
#include <QWidget>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/Answers.h"
#include "ports/DiscShelf.h"
#include "ports/ShellOpener.h"

class QMenu;

namespace trackloom {

struct PanelParts;

/// The front of the recorders that are folders: the disc in the tray, the discs on the shelf, and what hands can do
/// with them. A window of the recorders' own and no member of the program's family, so it stays usable while a box or a
/// dialog of the program stands. While it shows, it looks at the folder once a second, and all looking and changing is
/// done aside.
class FrontPanel final : public QWidget {
 public:
  using Shelves = std::vector<std::shared_ptr<DiscShelf>>;

  /// At least one shelf; `lastWord` tells what the engine knows about its last failure.
  FrontPanel(Shelves shelves, ShellOpener& opener, std::function<std::string()> lastWord);
  ~FrontPanel() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  using Deed = std::function<void(DiscShelf&)>;

  DiscShelf* recorder() const { return shelves_[chosen_].get(); }
  void connectParts();
  void fillBlankMenu(QMenu& menu);
  void chooseRecorder(int number);
  void look();
  /// What a look finds that has begun already is out of date.
  void lookAnew();
  void heard(const ShelfView& view);
  void showTray();
  void showButtons();
  /// Says it in the panel; nothing to say closes the place.
  void say(const std::string& words);
  /// Does it aside; `after` hears whether it was done.
  void perform(
      Deed deed, std::function<void(bool done)> after = [](bool) {});
  void ended(const std::optional<std::string>& refusal, const std::function<void(bool done)>& after);
  void insertChosen();
  void askToDelete();
  void endQuestion();
  void deleteAsked();
  void rename(const std::string& disc, const QString& typed);

  Shelves shelves_;
  ShellOpener& opener_;
  std::function<std::string()> lastWord_;
  std::unique_ptr<PanelParts> parts_;
  std::size_t chosen_ = 0;
  ShelfView view_;
  QTimer clock_;
  /// Answers of an earlier turn are out of date.
  int turn_ = 0;
  bool looking_ = false;
  bool atWork_ = false;
  /// The disc that comes next onto the shelf is the one that was worked on.
  bool chooseNew_ = false;
  std::optional<std::string> asked_;
  Answers answers_;
};

}  // namespace trackloom
