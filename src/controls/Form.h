#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "controls/FormHost.h"
#include "controls/Property.h"

namespace trackloom {

class Control;

enum class WindowState { Normal, Minimized, Maximized };

/// Where a window stands; twips, 15 to a device-independent pixel.
struct Placement {
  WindowState state = WindowState::Normal;
  std::int32_t left = 0, top = 0, width = 0, height = 0;
  bool operator==(const Placement&) const = default;
};

/// A window as plain state: its controls in order, its caption, whether it shows, and the handlers of its life. The
/// constructor gives the designed state; load() runs Load once. Shown and hidden through its host.
class Form : public std::enable_shared_from_this<Form> {
 public:
  enum class CloseReason { Program, User };

  Form(FormHost& host, std::string name, std::string caption);
  virtual ~Form() = default;
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string& name() const { return name_; }
  const std::vector<Control*>& controls() const { return controls_; }
  FormHost& host() const { return host_; }
  bool visible() const { return visible_; }
  bool closed() const { return unloaded_; }
  /// A modal form that it owns keeps all input from it and its controls until that one's show returns, also while that
  /// one is hidden because the work that it began goes on.
  bool takesInput() const { return modals_ == 0; }

  Signal<> changed;
  Property<std::string> caption;
  Property<Placement> placement{changed, {}};
  /// Stands above the other windows, from its first show on.
  Property<bool> Topmost{changed, false};

  void load();
  void show();
  void showModal(Form* owner);
  void hide();
  /// Runs QueryUnload and, unless that refuses, Unload; then the window goes. True: it has gone.
  bool unload(CloseReason reason = CloseReason::Program);

  /// Paints the whole window at once, without letting other events run.
  void Refresh() { host_.repaint(*this); }

  // What the user or the window system does.
  void closeBox();
  void activated();

  /// What the holder of the form does when it has been unloaded.
  std::function<void()> onUnloaded;

  std::shared_ptr<Form> keepAlive() { return weak_from_this().lock(); }

 protected:
  virtual void Load() {}
  /// False refuses the close.
  virtual bool QueryUnload(CloseReason /*reason*/) { return true; }
  virtual void Unload() {}
  virtual void Activate() {}

 private:
  class Cover;
  friend class Control;
  void join(Control& control) { controls_.push_back(&control); }

  FormHost& host_;
  std::string name_;
  std::vector<Control*> controls_;
  bool loaded_ = false;
  bool visible_ = false;
  bool unloaded_ = false;
  int modals_ = 0;
};

}  // namespace trackloom
