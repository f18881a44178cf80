#pragma once

#include <QPointer>
#include <memory>
#include <vector>

#include "desktop/QtDesk.h"
#include "fakes/Machine.h"

namespace trackloom::trial {

/// Every form of the program on a machine of its own, loaded and filled.
struct AllForms {
  explicit AllForms(std::int16_t kind = AudioLayout);
  ~AllForms();
  AllForms(const AllForms&) = delete;
  AllForms& operator=(const AllForms&) = delete;

  fakes::Machine machine;
  std::vector<std::shared_ptr<Form>> all;
};

/// One form on a desk of its own, its window laid out. The form acts upon no event: what it would act with, another
/// form gives it in the program.
struct ShownForm {
  explicit ShownForm(Form& form);

  QtDesk desk;
  QWidget& window;
};

/// The widgets in a window that the Tab key reaches now, in the order in which it does.
std::vector<QWidget*> tabChain(QWidget& window);

}  // namespace trackloom::trial
