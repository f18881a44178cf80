#include "controls/ImageList.h"

#include <catch2/catch.hpp>

#include "controls/Form.h"
#include "fakes/ErrorNumber.h"
#include "fakes/ScriptedDesk.h"

namespace trackloom {

TEST_CASE("An image list gives pictures by number and numbers by name, and raises error 9 for others") {
  struct Pictures : Form {
    explicit Pictures(FormHost& formHost) : Form(formHost, "Pictures", "") {}
    ImageList images{*this, "images", {"Disk Info", "Disk Read"}};
  };
  fakes::ScriptedDesk host;
  Pictures form(host);
  CHECK(form.images.Count() == 2);
  CHECK(form.images.Picture(1) == "Disk Info");
  CHECK(form.images.Picture(2) == "Disk Read");
  CHECK(form.images.Number("Disk Read") == 2);
  CHECK(fakes::errorNumberOf([&] { form.images.Picture(0); }) == 9);
  CHECK(fakes::errorNumberOf([&] { form.images.Picture(3); }) == 9);
  CHECK(fakes::errorNumberOf([&] { form.images.Number("Disk"); }) == 9);
}

}  // namespace trackloom
