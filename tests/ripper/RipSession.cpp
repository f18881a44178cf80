#include "ripper/RipSession.h"

#include <algorithm>
#include <catch2/catch.hpp>
#include <iterator>

#include "fakes/FolderLook.h"

namespace trackloom {

RipSession::RipSession() {
  know("Anna", "Evenings", {"One", "Two", "Three"}, "Jazz", "1999");
  read();
}

RipSession::~RipSession() = default;

void RipSession::rip(const std::function<void(frmRipStatus&)>& use, const std::function<void(frmRipOptions&)>& choose) {
  expectOptions(choose);
  expectRip([&, use](frmRipStatus& status) {
    hearing.heard();
    use(status);
  });
  form().cmdExtract.click();
  CHECK(desk.finished());
}

void RipSession::complete() {
  desk.expectBox("Operation Complete", BoxAnswer::Ok);
  engine().finish();
}

CDRipperEvents& RipSession::events() {
  return *engine().events;
}

bool has(const Lines& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

Lines starting(const Lines& lines, const std::string& with) {
  Lines found;
  std::copy_if(lines.begin(), lines.end(), std::back_inserter(found),
               [&](const std::string& line) { return line.starts_with(with); });
  return found;
}

Lines ripsOf(const Ripping& machine) {
  Lines names = fakes::namesIn(machine.folder / "rips");
  std::erase(names, ".keep");
  return names;
}

}  // namespace trackloom
