#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include "desktop/Aside.h"

namespace trackloom {

/// Asks on threads aside, and brings each answer to the thread of its owner, as events that end with it.
class Answers {
 public:
  Answers() = default;
  ~Answers() {
    const std::lock_guard lock(way_->mutex);
    way_->open = false;
  }
  Answers(const Answers&) = delete;
  Answers& operator=(const Answers&) = delete;

  /// `question` must live by itself; `hear` gets what it gave. False: there is no thread, and nothing is heard.
  template <class Question, class Hear>
  bool ask(Question question, Hear hear) {
    return doAside([way = way_, question = std::move(question), hear = std::move(hear)] {
      way->bring([hear, answer = question()] { hear(answer); });
    });
  }

 private:
  /// Both ends hold it, since an answer may come when nobody waits for it any more.
  struct Way {
    std::mutex mutex;
    bool open = true;
    QObject* end = nullptr;

    void bring(std::function<void()> event) {
      const std::lock_guard lock(mutex);
      if (open) QMetaObject::invokeMethod(end, std::move(event), Qt::QueuedConnection);
    }
  };

  QObject end_;
  std::shared_ptr<Way> way_ = [this] {
    auto way = std::make_shared<Way>();
    way->end = &end_;
    return way;
  }();
};

}  // namespace trackloom
