#include "desktop/AllForms.h"

#include <QCoreApplication>

#include "tour/FilledForms.h"

namespace trackloom::trial {

namespace {

QWidget& shownOn(QtDesk& desk, Form& form) {
  desk.show(form);
  QCoreApplication::sendPostedEvents();
  return *desk.window(form);
}

}  // namespace

AllForms::AllForms(std::int16_t kind) {
  machine.startQuietly();
  all = filledForms(machine.program(), kind);
}

AllForms::~AllForms() = default;

ShownForm::ShownForm(Form& form) : window(shownOn(desk, form)) {
  desk.setTrap([](const std::function<void()>&) {});
}

std::vector<QWidget*> tabChain(QWidget& window) {
  std::vector<QWidget*> chain;
  for (QWidget* next = window.nextInFocusChain(); next != &window; next = next->nextInFocusChain())
    if ((next->focusPolicy() & Qt::TabFocus) != 0 && next->focusProxy() == nullptr && next->isEnabled() &&
        next->isVisibleTo(&window) && next->window() == &window)
      chain.push_back(next);
  return chain;
}

}  // namespace trackloom::trial
