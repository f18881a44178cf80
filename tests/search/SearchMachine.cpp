#include "search/SearchMachine.h"

#include <filesystem>
#include <utility>

namespace trackloom::fakes {

SearchMachine::SearchMachine(std::int16_t kind, std::int32_t discBlocks) : LayoutMachine(kind, discBlocks) {
  std::filesystem::create_directories(folder / "disk");
  drives.add(disk());
}

SearchMachine::~SearchMachine() = default;

std::string SearchMachine::disk(const std::string& name) const {
  return folder / ("disk/" + name);
}

void SearchMachine::makeFile(const std::string& name, std::size_t bytes, std::int32_t blocks) {
  folder.write("disk/" + name, std::string(bytes, 'x'));
  engines.stage.audio[disk(name)] = blocks;
  engines.stage.data[disk(name)] = blocks;
}

void SearchMachine::search(std::function<void(frmSearch&)> script) {
  desk.expectForm<frmSearch>("frmSearch", std::move(script));
  click("Search");
}

void SearchMachine::run(frmSearch& form) {
  desk.expectBox("Found Audio Files", BoxAnswer::Ok);
  form.cmdStart.click();
}

std::string SearchMachine::found(int choice) {
  std::string names;
  search([&](frmSearch& form) {
    form.Combo1.choose(choice);
    run(form);
    for (int row = 1; row <= form.ListView1.Count(); ++row) names += form.ListView1.Item(row).Text + ";";
    form.cmdCancel.click();
  });
  return names;
}

SearchForms& SearchMachine::forms() {
  return program().forms().search;
}

std::string namesOf(const frmSearch& form) {
  std::string names;
  for (int row = 1; row <= form.ListView1.Count(); ++row) names += form.ListView1.Item(row).Text + ";";
  return names;
}

}  // namespace trackloom::fakes
