#pragma once

#include <QWidget>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "controls/FormHost.h"
#include "desktop/FaceTable.h"
#include "desktop/Family.h"
#include "ports/FailureDetail.h"

namespace trackloom {

class Face;

/// The desktop: gives each form a face at its first show, and takes it away when the form is unloaded. Every event of
/// the toolkit reaches a form through enter(), so that no exception passes through the toolkit.
class QtDesk final : public FormHost {
 public:
  /// Runs an event, and deals with whatever it throws.
  using Trap = std::function<void(const std::function<void()>& event)>;

  /// `designs` outlive the desk.
  explicit QtDesk(const std::vector<FaceDesign>& designs = faceDesigns());
  ~QtDesk() override;

  /// Where a form that tells a failure finds what the engine knows about it; outlives the desk.
  void setFailureDetail(const FailureDetail& detail) { failureDetail_ = &detail; }
  /// Empty where no engine offers one.
  std::string failureDetail() const;

  /// Gives a form's window, as it is made, what it has besides its controls.
  using Extras = std::function<void(const std::string& form, QWidget& window)>;
  void setExtras(Extras extras) { extras_ = std::move(extras); }

  /// Without a trap, an exception ends the process.
  void setTrap(Trap trap) { trap_ = std::move(trap); }
  void enter(const std::function<void()>& event) const;
  /// Enters with what comes by itself and not from a widget: a timer's tick, an engine's event, work put off. While the
  /// program stands still it is held back.
  void perform(std::function<void()> event);
  Family& family() { return family_; }

  /// The program waits within a call, for as long as this lives: nothing comes to it by itself. What was held back
  /// comes from the event loop afterwards, in its order.
  class Standstill {
   public:
    explicit Standstill(QtDesk& desk) : desk_(desk) { ++desk_.standstills_; }
    ~Standstill() { desk_.standOn(); }
    Standstill(const Standstill&) = delete;
    Standstill& operator=(const Standstill&) = delete;

   private:
    QtDesk& desk_;
  };

  /// Makes ahead, while nobody waits, what the first show of a form would make its user wait for. Nothing reaches the
  /// form before that show.
  void prepare(Form& form);
  /// The same for the next form of this name: its window alone, since the form itself is made at its own time.
  void prepare(const std::string& form);

  /// The designed window of a form, an empty one for a form without a design.
  std::unique_ptr<QWidget> takeWindow(const std::string& form);

  void show(Form& form) override;
  void showModal(Form& form, Form* owner) override;
  void hide(Form& form) override;
  void discard(Form& form) override;
  void repaint(Control& control) override;
  void repaint(Form& form) override;

  /// How a window asks for the attention of a user who works elsewhere.
  using Attention = std::function<void(QWidget& window)>;
  void setAttention(Attention attention) { attention_ = std::move(attention); }
  /// Where no window of the process is the active one, the window that then stands in front asks for attention, as soon
  /// as what happens now is over.
  void callUser();

  /// Null: the form has no window yet, or is gone.
  QWidget* window(const Form& form) const;
  /// What a box stands before: the window that the user works in, or the last one shown that still is; null when none
  /// is.
  QWidget* frontWindow() const;

 private:
  Face& faceOf(Form& form);
  /// What asks for an answer stands alone.
  void hideSplash();
  void standOn();
  void performHeldSoon();
  void performHeld();

  const std::vector<FaceDesign>& designs_;
  Family family_;
  const FailureDetail* failureDetail_ = nullptr;
  Trap trap_;
  Attention attention_;
  Extras extras_ = [](const std::string& /*form*/, QWidget& /*window*/) {};
  std::unordered_map<const Form*, std::shared_ptr<Face>> faces_;
  std::unordered_map<std::string, std::unique_ptr<QWidget>> prepared_;
  std::vector<const Form*> shown_;
  int standstills_ = 0;
  std::deque<std::function<void()>> held_;
  QObject loop_;
};

}  // namespace trackloom
