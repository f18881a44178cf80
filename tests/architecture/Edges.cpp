#include <algorithm>
#include <array>
#include <string>

#include "architecture/Rules.h"

namespace trackloom::architecture {

namespace {

/// What a folder may take from outside the house, each step with those before it.
enum class Outside { Standard, Host, Library, Qt };

/// One folder of src/ and what it may include besides itself. A name ending in "/frm" means the forms' headers of that
/// folder.
struct Folder {
  std::string_view name;
  Outside outside;
  std::vector<std::string_view> uses;
  /// Single headers of libraries that it takes besides.
  std::vector<std::string_view> headers = {};
};

const std::vector<Folder>& folders() {
  static const std::vector<std::string_view> core{"runtime", "ports", "controls", "model", "help"};
  static const std::vector<Folder> table{
      {"runtime", Outside::Host, {}, {"unicase.h", "unistr.h"}},
      {"ports", Outside::Standard, {"runtime"}},
      {"controls", Outside::Standard, {"runtime"}},
      {"model", Outside::Standard, {"runtime", "ports", "controls"}},
      {"help", Outside::Standard, {"runtime", "ports", "controls", "model"}},
      {"layout", Outside::Standard, core},
      {"writing", Outside::Standard, core},
      {"search", Outside::Standard, core},
      {"printing", Outside::Standard, core},
      {"ripper", Outside::Standard, core},
      {"shell",
       Outside::Standard,
       {"runtime", "ports", "controls", "model", "help", "layout", "writing", "search", "printing", "ripper"}},
      {"launcher", Outside::Host, {}},
      {"engines/ground", Outside::Library, {"runtime", "ports"}},
      {"engines/disc", Outside::Library, {"runtime", "ports", "engines/ground"}},
      {"engines/audio", Outside::Library, {"runtime", "ports", "engines/ground"}},
      {"engines/drives", Outside::Host, {"runtime", "ports"}},
      {"engines/helpfile", Outside::Standard, {"runtime", "ports"}},
      {"engines/virtual", Outside::Library, {"runtime", "ports", "engines/ground", "engines/disc"}},
      {"engines/libburn", Outside::Library, {"runtime", "ports", "engines/ground", "engines/disc"}},
      {"engines/writer", Outside::Library, {"runtime", "ports", "engines/ground", "engines/disc", "engines/audio"}},
      {"engines/ripper", Outside::Library, {"runtime", "ports", "engines/ground", "engines/disc"}},
      {"engines/encoder", Outside::Library, {"runtime", "ports", "engines/ground"}},
      {"engines/discdb", Outside::Library, {"runtime", "ports", "engines/ground"}},
      {"desktop",
       Outside::Qt,
       {"runtime", "ports", "controls", "shell/frm", "layout/frm", "writing/frm", "search/frm", "printing/frm",
        "ripper/frm", "help/frm"}},
  };
  return table;
}

const Folder* findFolder(std::string_view name) {
  const auto found = std::find_if(folders().begin(), folders().end(), [&](const Folder& f) { return f.name == name; });
  return found == folders().end() ? nullptr : &*found;
}

/// app joins everything, so it stands outside the table.
bool isApp(std::string_view folder) {
  return folder == "app";
}

bool mayInclude(const Folder& folder, const std::string& target) {
  const std::string there = folderOf(target);
  if (there == folder.name || there.starts_with(std::string(folder.name) + "/")) return true;
  return std::any_of(folder.uses.begin(), folder.uses.end(), [&](std::string_view use) {
    return use == there || (use.ends_with("/frm") && target.starts_with("src/" + std::string(use)));
  });
}

std::string listed(const std::vector<std::string_view>& names) {
  std::string text;
  for (std::string_view name : names) text += (text.empty() ? "" : ", ") + std::string(name);
  return text.empty() ? "no other folder" : text;
}

/// The row of the table for a folder or, for a folder within a folder such as desktop/widgets, of the one around it.
const Folder* ruleFor(std::string folder) {
  while (!folder.empty()) {
    if (const Folder* rule = findFolder(folder)) return rule;
    const std::size_t slash = folder.rfind('/');
    folder.erase(slash == std::string::npos ? 0 : slash);
  }
  return nullptr;
}

/// The headers of the standard library, each between blanks.
constexpr std::string_view standardHeaders =
    " algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono "
    "cinttypes climits clocale cmath codecvt compare complex concepts condition_variable coroutine "
    "csetjmp csignal cstdarg cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque "
    "exception execution filesystem format forward_list fstream functional future initializer_list "
    "iomanip ios iosfwd iostream istream iterator latch limits list locale map memory memory_resource "
    "mutex new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator "
    "semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string "
    "string_view syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map "
    "unordered_set utility valarray variant vector version ";

bool isStandard(std::string_view header) {
  return standardHeaders.find(" " + std::string(header) + " ") != std::string_view::npos;
}

bool takes(const Folder& folder, std::string_view header) {
  return std::find(folder.headers.begin(), folder.headers.end(), header) != folder.headers.end();
}

Outside kindOf(std::string_view header) {
  if (isStandard(header)) return Outside::Standard;
  if (header.starts_with("sys/") || header.starts_with("linux/")) return Outside::Host;
  constexpr std::array host{"dirent.h", "errno.h", "fcntl.h", "poll.h", "unistd.h"};
  if (std::find(host.begin(), host.end(), header) != host.end()) return Outside::Host;
  return header.starts_with("Q") ? Outside::Qt : Outside::Library;
}

std::string_view nameOf(Outside kind) {
  constexpr std::array<std::string_view, 4> names{"the standard library", "the host", "a library", "Qt"};
  return names[static_cast<std::size_t>(kind)];
}

std::string place(const SourceFile& file, const Include& include) {
  return file.path + ":" + std::to_string(include.line) + ": " + folderOf(file.path) + " includes ";
}

std::string forbiddenEdge(const SourceFile& file, const Include& include, const std::string& target,
                          const Folder& rule) {
  return place(file, include) + target + ", but may include only " + listed(rule.uses);
}

std::string foreignHeader(const SourceFile& file, const Include& include, Outside kind, const Folder& rule) {
  return place(file, include) + include.name + ", which is " + std::string(nameOf(kind)) +
         ", but may go no further than " + std::string(nameOf(rule.outside));
}

std::string unplacedFolder(const std::string& path) {
  return path + ": the folder src/" + folderOf(path) + " has no row in the table of who may include whom";
}

}  // namespace

Faults forbiddenEdges(const SourceTree& tree) {
  Faults faults;
  for (const auto& [path, file] : tree) {
    const std::string folder = folderOf(path);
    if (folder.empty() || isApp(folder)) continue;
    const Folder* rule = ruleFor(folder);
    if (rule == nullptr) {
      faults.push_back(unplacedFolder(path));
      continue;
    }
    for (const Include& include : file.includes) {
      const std::string target = resolve(tree, file, include);
      if (!target.empty() && !mayInclude(*rule, target)) faults.push_back(forbiddenEdge(file, include, target, *rule));
    }
  }
  return faults;
}

Faults foreignHeaders(const SourceTree& tree) {
  Faults faults;
  for (const auto& [path, file] : tree) {
    const Folder* rule = ruleFor(folderOf(path));
    if (rule == nullptr) continue;
    for (const Include& include : file.includes) {
      if (!resolve(tree, file, include).empty()) continue;
      const bool madeByQt = include.quoted && include.name.starts_with("ui_");
      const Outside kind = madeByQt ? Outside::Qt : kindOf(include.name);
      if (kind > rule->outside && !takes(*rule, include.name))
        faults.push_back(foreignHeader(file, include, kind, *rule));
    }
  }
  return faults;
}

}  // namespace trackloom::architecture
