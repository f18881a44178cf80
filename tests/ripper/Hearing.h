#pragma once

#include <string>
#include <vector>

#include "controls/Form.h"
#include "controls/ListView.h"

namespace trackloom {

/// Writes down what happens, one line each, and each change in the forms that are watched.
class Hearing {
 public:
  using Lines = std::vector<std::string>;

  /// `folder` is left out of all lines.
  explicit Hearing(std::string folder);
  ~Hearing();

  void hear(std::string line);
  /// What has been heard since the last look.
  Lines heard();
  /// From now on each change in the form is heard, and no longer those in the one before.
  void watch(Form& watched);

 private:
  void hearRow(const ListView& list, const ListChange& change);
  static void replace(std::string& line, const std::string& text, const std::string& by);
  static std::string stateOf(const Control& control);
  Lines lines_;
  std::vector<Connection> watched_;
  const std::string folder_;
};

}  // namespace trackloom
