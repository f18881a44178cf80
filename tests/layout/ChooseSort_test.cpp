#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"
#include "layout/LayoutForms.h"
#include "layout/frmChooseSort.h"

namespace trackloom {

using fakes::LayoutMachine;
using Lines = std::vector<std::string>;

namespace {

/// An unsorted MP3 layout of four tracks in two folders, which leaves the dialog by the script.
Lines orderAfter(const std::function<void(frmChooseSort&)>& script) {
  LayoutMachine machine(Mp3Layout);
  machine.mod().Options.SortMode = 2;
  machine.newLayout(Mp3Layout);
  ListView& listing = machine.window().ListView1;
  for (const char* name : {"d.mp3", "c.mp3", "b.mp3", "a.mp3"}) machine.addTrack(name, 10);
  for (const int row : {1, 3}) listing.SetSubItem(row, 3, "\\Z");
  machine.mod().LayoutSaved = true;
  auto& slot = machine.program().forms().layout.frmChooseSort;
  slot->show();
  script(slot.get());
  CHECK_FALSE(slot.exists());
  CHECK(machine.mod().LayoutSaved);
  Lines order;
  for (int row = 1; row <= listing.Count(); ++row) order.push_back(listing.Item(row).Text.substr(0, 1));
  order.push_back(listing.Sorted() ? "sorted" : "as it was");
  order.push_back(machine.mod().SortChoiceCancelled ? "cancelled" : "chosen");
  return order;
}

}  // namespace

TEST_CASE("By name the rows stand in the order of their names, as the dialog offers it first") {
  CHECK(orderAfter([](frmChooseSort& form) { form.cmdOK.click(); }) == Lines{"a", "b", "c", "d", "sorted", "chosen"});
}

TEST_CASE("By folder the rows of one folder stay in the order in which they were added") {
  CHECK(orderAfter([](frmChooseSort& form) {
          form.optFolder.click();
          form.cmdOK.click();
        }) == Lines{"c", "a", "d", "b", "sorted", "chosen"});
}

TEST_CASE("A Cancel of the sort choice sorts nothing") {
  CHECK(orderAfter([](frmChooseSort& form) {
          form.optFolder.click();
          form.cmdCancel.click();
        }) == Lines{"d", "c", "b", "a", "as it was", "cancelled"});
}

}  // namespace trackloom
