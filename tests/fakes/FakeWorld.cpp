#include "fakes/FakeWorld.h"

namespace trackloom::fakes {

FakeProcess::FakeProcess() = default;

FakeProcess::~FakeProcess() = default;

std::string FakeProcess::executableFolder() {
  return folder;
}

bool FakeProcess::isSecondInstance() {
  return second;
}

std::vector<HostPath> FakeProcess::refuges() {
  return {refugeFolders.begin(), refugeFolders.end()};
}

void FakeProcess::tell(const std::string& words) {
  told.push_back(words);
}

void FakeProcess::end(int status) {
  throw EndOfProcess{status};
}

FakePump::FakePump() = default;

FakePump::~FakePump() = default;

void FakePump::pumpEvents() {
  ++pumped;
  if (onPump) onPump();
}

FakeOpener::FakeOpener() = default;

FakeOpener::~FakeOpener() = default;

void FakeOpener::open(const ShellOrder& order) {
  orders.push_back(order);
}

FakeHelp::FakeHelp() = default;

FakeHelp::~FakeHelp() = default;

std::intptr_t FakeHelp::HtmlHelp(std::intptr_t owner, const std::string& target, std::uint32_t command,
                                 std::intptr_t data) {
  const Call call{target, command, data, owner};
  calls.push_back(call);
  if (onCall) onCall(call);
  return 1;
}

void FakeHelp::askWhatsThis(std::intptr_t window) {
  asked.push_back(window);
}

FakeRegistry::FakeRegistry() = default;

FakeRegistry::~FakeRegistry() = default;

std::optional<std::string> FakeRegistry::text(Root root, const std::string& key, const std::string& name) {
  refuse();
  const auto found = texts.find({root, key, name});
  return found == texts.end() ? std::nullopt : std::optional(found->second);
}

void FakeRegistry::setText(Root root, const std::string& key, const std::string& name, const std::string& text) {
  refuse();
  texts[{root, key, name}] = text;
}

void FakeRegistry::removeText(Root root, const std::string& key, const std::string& name) {
  refuse();
  if (texts.erase({root, key, name}) == 0) throw RuntimeError(RuntimeError::PathNotFound);
}

void FakeRegistry::refuse() const {
  if (refusal) throw RuntimeError(*refusal);
}

FakeFileVersions::FakeFileVersions() = default;

FakeFileVersions::~FakeFileVersions() = default;

std::optional<FileVersion> FakeFileVersions::versionOf(const HostPath& file) {
  const auto found = versions.find(file.text);
  return found == versions.end() ? std::nullopt : std::optional(found->second);
}

std::string FakeFileVersions::expanded(const std::string& text) {
  return of(variables, text);
}

std::string FakeFileVersions::longPath(const std::string& path) {
  return of(longPaths, path);
}

std::string FakeFileVersions::systemVersion() {
  return system;
}

std::string FakeFileVersions::of(const std::map<std::string, std::string>& table, const std::string& text) {
  const auto found = table.find(text);
  return found == table.end() ? text : found->second;
}

FakeCommonControls::FakeCommonControls() = default;

FakeCommonControls::~FakeCommonControls() = default;

bool FakeCommonControls::initialise(std::int32_t size, std::int32_t flags) {
  calls.emplace_back(size, flags);
  return false;
}

}  // namespace trackloom::fakes
