#include <QLabel>
#include <QLayout>
#include <QStatusBar>
#include <catch2/catch.hpp>
#include <set>

#include "desktop/AllForms.h"
#include "desktop/Binder.h"

namespace trackloom {

using Lines = std::vector<std::string>;

TEST_CASE("Every form of the program fits its design") {
  const trial::AllForms forms;
  std::set<std::string> names;
  for (const auto& form : forms.all) {
    INFO(form->name());
    CHECK(bindingProblems(*form) == Lines());
    names.insert(form->name());
  }
  for (const FaceDesign& design : faceDesigns()) {
    INFO(design.form);
    CHECK(names.count(design.form) == 1);
  }
}

TEST_CASE("The line below the buttons stands in one line with everything above it") {
  const trial::AllForms forms;
  int lines = 0;
  for (const auto& form : forms.all) {
    INFO(form->name());
    const trial::ShownForm shown(*form);
    for (const QStatusBar* bar : shown.window.findChildren<QStatusBar*>()) {
      const auto* line = bar->findChild<QLabel*>();
      CHECK(line->mapTo(&shown.window, QPoint()).x() == shown.window.layout()->contentsMargins().left());
      ++lines;
    }
  }
  CHECK(lines == 3);
}

}  // namespace trackloom
