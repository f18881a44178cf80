#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <vector>

namespace trackloom {

/// All windows of the program. The modal one that came last takes input, and no other does; while that one is hidden,
/// because the work that it began goes on, none does. Windows that are no members, such as a help viewer, stay usable
/// beside them.
class Family final : public QObject {
 public:
  Family();

  /// Makes the window a member that stands in front of `before`, or for null of nothing. To be said before it shows.
  void join(QWidget& window, const QWidget* before);
  bool owns(const QWidget* window) const;
  bool takesInput(const QWidget& window) const;
  /// The window before which a new one is to stand: the active member if it takes input, else the modal one that was
  /// shown last, since the window system may be late or the user works in a stranger; null where there is neither.
  QWidget* front() const;

  /// The window's turn to be the modal one, for as long as this lives; then `before` is the active one again.
  class Turn {
   public:
    Turn(Family& family, QWidget& window, QWidget* before);
    ~Turn();
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

   private:
    Family& family_;
    const QWidget& window_;
    const QPointer<QWidget> before_;
  };

 protected:
  /// Keeps input away from members that take none.
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  bool isMember(const QWindow* window) const;

  /// The ancestor of all; it never shows.
  QWindow root_;
  std::vector<const QWidget*> turns_;
};

}  // namespace trackloom
