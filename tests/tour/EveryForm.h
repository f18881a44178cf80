#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "shell/Program.h"

namespace trackloom {

/// A form of the program, and how to come by it.
struct FormPlace {
  std::string name;
  /// A form of its own as it is designed, before any handler has run.
  std::function<std::shared_ptr<Form>(Program&)> design;
  /// The program's own one, loaded.
  std::function<Form&(Program&)> form;
};

template <class T, class Group>
FormPlace placeOf(const char* name, Group ProgramForms::*group, FormSlot<T> Group::*slot) {
  return {name, [=](Program& program) { return std::make_shared<T>(program.session(), program.forms().*group); },
          [=](Program& program) -> Form& { return (program.forms().*group.*slot).get(); }};
}

/// Every form but the main window and frmImages, which belong to no group of forms.
inline std::vector<FormPlace> everyForm() {
  return {placeOf("frmOpen", &ProgramForms::shell, &ShellForms::frmOpen),
          placeOf("frmNOCD", &ProgramForms::shell, &ShellForms::frmNOCD),
          placeOf("frmAbout", &ProgramForms::shell, &ShellForms::frmAbout),
          placeOf("frmDefaultOptions", &ProgramForms::shell, &ShellForms::frmDefaultOptions),
          placeOf("frmNewOption", &ProgramForms::layout, &LayoutForms::frmNewOption),
          placeOf("frmFiles", &ProgramForms::layout, &LayoutForms::frmFiles),
          placeOf("frmSave", &ProgramForms::layout, &LayoutForms::frmSave),
          placeOf("frmOpenLayout", &ProgramForms::layout, &LayoutForms::frmOpenLayout),
          placeOf("frmNoAdd", &ProgramForms::layout, &LayoutForms::frmNoAdd),
          placeOf("frmFolder", &ProgramForms::layout, &LayoutForms::frmFolder),
          placeOf("frmChooseSort", &ProgramForms::layout, &LayoutForms::frmChooseSort),
          placeOf("frmOptions", &ProgramForms::writing, &WritingForms::frmOptions),
          placeOf("frmStatus", &ProgramForms::writing, &WritingForms::frmStatus),
          placeOf("frmDone", &ProgramForms::writing, &WritingForms::frmDone),
          placeOf("frmError", &ProgramForms::writing, &WritingForms::frmError),
          placeOf("frmISO", &ProgramForms::writing, &WritingForms::frmISO),
          placeOf("frmDiskInfo", &ProgramForms::writing, &WritingForms::frmDiskInfo),
          placeOf("frmErase", &ProgramForms::writing, &WritingForms::frmErase),
          placeOf("frmSearch", &ProgramForms::search, &SearchForms::frmSearch),
          placeOf("frmReadStatus", &ProgramForms::printing, &PrintingForms::frmReadStatus),
          placeOf("frmPrintList", &ProgramForms::printing, &PrintingForms::frmPrintList),
          placeOf("frmEdit", &ProgramForms::printing, &PrintingForms::frmEdit),
          placeOf("frmPrint", &ProgramForms::printing, &PrintingForms::frmPrint),
          placeOf("frmRipMain", &ProgramForms::ripper, &RipperForms::frmRipMain),
          placeOf("frmReading", &ProgramForms::ripper, &RipperForms::frmReading),
          placeOf("frmRipOptions", &ProgramForms::ripper, &RipperForms::frmRipOptions),
          placeOf("frmRipStatus", &ProgramForms::ripper, &RipperForms::frmRipStatus)};
}

}  // namespace trackloom
