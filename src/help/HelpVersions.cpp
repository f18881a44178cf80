#include "help/HelpVersions.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <sstream>

#include "runtime/Text.h"

namespace trackloom {

namespace {

struct Least {
  std::int32_t code;
  std::string_view version;
};

struct Friendly {
  std::string_view version;
  std::string_view name;
};

constexpr std::array HelpMinima{
    Least{16, "4.72.7290"}, Least{17, "4.72.7323"}, Least{18, "4.72.7325"}, Least{19, "4.72.8164.0"},
    Least{20, "4.73.8252"}, Least{21, "4.73.8412"}, Least{22, "4.73.8474"}, Least{23, "4.73.8561"},
};

constexpr std::array BrowserMinima{
    Least{256, "4.70.1155"},      Least{257, "4.70.1158"},      Least{258, "4.70.1215"},
    Least{259, "4.70.1300"},      Least{260, "4.71.1008.3"},    Least{261, "4.71.1712.5"},
    Least{262, "4.72.2106.7"},    Least{263, "4.72.3110.03"},   Least{264, "4.72.3612.1707"},
    Least{265, "5.00.0518.5"},    Least{266, "5.00.0910.1308"}, Least{267, "5.00.2014.213"},
    Least{268, "5.00.2314.1000"}, Least{269, "5.00.2614.3500"}, Least{270, "5.0.2717.2000"},
};

constexpr std::array HelpNames{
    Friendly{"4.72.7290.00", "1.0"},   Friendly{"4.72.7323.00", "1.1"},  Friendly{"4.72.7325.00", "1.1a"},
    Friendly{"4.72.8164.00", "1.1b"},  Friendly{"4.73.8252.00", "1.2"},  Friendly{"4.73.8412.00", "1.21"},
    Friendly{"4.73.8474.00", "1.21a"}, Friendly{"4.73.8561.00", "1.22"}, Friendly{"4.74.8566.00", "1.3"},
};

constexpr std::array BrowserNames{
    Friendly{"4.70.1155.0000", "3.0"},
    Friendly{"4.70.1158.0000", "3.0 OSR2"},
    Friendly{"4.70.1215.0000", "3.02"},
    Friendly{"4.70.1300.0000", "3.02"},
    Friendly{"4.71.1008.3000", "4.0 PP2"},
    Friendly{"4.71.1712.5000", "4.0"},
    Friendly{"4.72.2106.7000", "4.01"},
    Friendly{"4.72.3110.0300", "4.0 SP1"},
    Friendly{"4.72.3612.1707", "4.0 SP2"},
    Friendly{"5.00.0518.5000", "5.0 beta 1"},
    Friendly{"5.00.0910.1308", "5.0 beta 2"},
    Friendly{"5.00.2014.2130", "5.0"},
    Friendly{"5.00.2314.1000", "5.0a (Office 2000)"},
    Friendly{"5.00.2614.3500", "5.0b (Windows 98 SE)"},
    Friendly{"5.00.2717.2000", "5.0c (Icon Security Issue Update)"},
};

template <class Table>
std::string_view leastOf(const Table& table, std::int32_t code) {
  const auto found = std::find_if(table.begin(), table.end(), [code](const Least& row) { return row.code == code; });
  return found == table.end() ? UnknownVersion : found->version;
}

template <class Table>
std::string_view nameOf(const Table& table, std::string_view version) {
  const auto found =
      std::find_if(table.begin(), table.end(), [version](const Friendly& row) { return row.version == version; });
  return found == table.end() ? UnknownVersion : found->name;
}

std::string dotted(const FileVersion& version, int lastDigits) {
  std::ostringstream text;
  text << version.major << '.' << std::setfill('0') << std::setw(2) << version.minor << '.' << std::setw(4)
       << version.build << '.' << std::setw(lastDigits) << version.revision;
  return text.str();
}

}  // namespace

std::string helpVersionText(const FileVersion& version) {
  return dotted(version, 2);
}

std::string browserVersionText(const FileVersion& version) {
  return dotted(version, 4);
}

std::string_view leastHelpVersion(std::int32_t code) {
  return leastOf(HelpMinima, code);
}

std::string_view leastBrowserVersion(std::int32_t code) {
  return leastOf(BrowserMinima, code);
}

std::string_view friendlyHelpName(std::string_view version) {
  return nameOf(HelpNames, version);
}

std::string_view friendlyBrowserName(std::string_view version) {
  return nameOf(BrowserNames, version);
}

bool isAtLeast(std::string_view version, std::string_view least) {
  return UCase(version) >= UCase(least);
}

}  // namespace trackloom
