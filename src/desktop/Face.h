#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "controls/Form.h"
#include "controls/Signal.h"
#include "desktop/Entry.h"

class QEventLoop;

namespace trackloom {

class QtDesk;

/// The window of one form. It goes only when nobody runs in it: whoever does holds it, and the toolkit then deletes the
/// window from its event loop. Cut off from its form, it passes nothing on.
class Face : public std::enable_shared_from_this<Face> {
 public:
  /// A form without a design gets an empty window.
  static std::shared_ptr<Face> make(QtDesk& desk, Form& form);
  struct Unshared {};
  /// Not yet tied; for make() only, since ties need the face to be shared.
  Face(QtDesk& desk, Form& form, Unshared);
  ~Face();
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;

  QWidget& window() { return *window_; }
  bool isSplash() const { return window_->windowFlags().testFlag(Qt::SplashScreen); }
  /// Null once it is cut off.
  Form* form() const { return form_; }
  /// Whether events reach the form: from the first show until it is cut off.
  bool live() const { return live_ && form_ != nullptr; }
  Entry entry() { return Entry(weak_from_this()); }
  QtDesk& desk() const { return desk_; }

  /// Does ahead what the first show would do: lays out and draws once, so that fonts, pictures and the window system's
  /// own window are there.
  void prepare();
  /// Shows the window in front of `owner`, or for null where the form's placement or the screen's centre puts it.
  void show(QWidget* owner, Qt::WindowModality modality);
  /// Runs events until the window is hidden.
  void runModal(QWidget* owner);
  void hide();
  /// The form is going: hides the window and ends all ties.
  void cut();

  // For those that tie controls to widgets.
  void bound(const Control& control, QWidget& widget) { widgets_[&control] = &widget; }
  void keep(Connection connection) { connections_.push_back(std::move(connection)); }
  void atCut(std::function<void()> end) { ends_.push_back(std::move(end)); }

  QWidget* widgetOf(const Control& control) const;
  /// What does not fit between the form's controls and the design's widgets.
  const std::vector<std::string>& problems() const { return problems_; }

 private:
  struct Later {
    void operator()(QWidget* window) const { window->deleteLater(); }
  };

  void tie();
  bool handle(QEvent& event);
  bool pressKey(int key);
  /// No line of a text is lost, but the dialog stays within its screen.
  void keepContents();
  void awaitActivation();
  void activateOnce();
  void tellNotices();
  void place(QWidget* owner);
  /// Fills the line that is no control of the form: what the engine knows about the failure that the form tells.
  void tellFailureDetail();

  QtDesk& desk_;
  Form* form_;
  std::unique_ptr<QWidget, Later> window_;
  std::unordered_map<const Control*, QWidget*> widgets_;
  std::vector<Connection> connections_;
  std::vector<std::function<void()>> ends_;
  std::vector<std::string> problems_;
  std::vector<QEventLoop*> loops_;
  bool live_ = false;
  bool activationDue_ = false;
  bool noticesDue_ = false;
  bool placed_ = false;
};

}  // namespace trackloom
