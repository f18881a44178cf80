#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "ports/CommonControls.h"
#include "ports/EventPump.h"
#include "ports/FileVersions.h"
#include "ports/HelpEngine.h"
#include "ports/Process.h"
#include "ports/Registry.h"
#include "ports/ShellOpener.h"
#include "runtime/RuntimeError.h"

namespace trackloom::fakes {

/// Thrown where the real process would end; no std::exception, so that nothing of the program catches it.
struct EndOfProcess {
  int status;
};

class FakeProcess final : public Process {
 public:
  std::string folder;
  bool second = false;
  std::vector<std::string> refugeFolders;
  std::vector<std::string> told;

  std::string executableFolder() override { return folder; }
  bool isSecondInstance() override { return second; }
  std::vector<HostPath> refuges() override { return {refugeFolders.begin(), refugeFolders.end()}; }
  void tell(const std::string& words) override { told.push_back(words); }
  [[noreturn]] void end(int status) override { throw EndOfProcess{status}; }
};

/// Runs what a test wants to happen while the program lets events run.
class FakePump final : public EventPump {
 public:
  int pumped = 0;
  std::function<void()> onPump;

  void pumpEvents() override {
    ++pumped;
    if (onPump) onPump();
  }
};

class FakeOpener final : public ShellOpener {
 public:
  std::vector<ShellOrder> orders;
  void open(const ShellOrder& order) override { orders.push_back(order); }
};

class FakeHelp final : public HelpEngine {
 public:
  struct Call {
    std::string target;
    std::uint32_t command;
    std::intptr_t data;
    std::intptr_t owner;
  };
  std::vector<Call> calls;
  /// Meets each call while its `data` still points at something.
  std::function<void(const Call&)> onCall;
  std::vector<std::intptr_t> asked;

  std::intptr_t HtmlHelp(std::intptr_t owner, const std::string& target, std::uint32_t command,
                         std::intptr_t data) override {
    const Call call{target, command, data, owner};
    calls.push_back(call);
    if (onCall) onCall(call);
    return 1;
  }
  void askWhatsThis(std::intptr_t window) override { asked.push_back(window); }
};

/// A store that fails where `refusal` is set.
class FakeRegistry final : public Registry {
 public:
  using Place = std::tuple<Root, std::string, std::string>;
  std::map<Place, std::string> texts;
  std::optional<RuntimeError> refusal;

  std::optional<std::string> text(Root root, const std::string& key, const std::string& name) override {
    refuse();
    const auto found = texts.find({root, key, name});
    return found == texts.end() ? std::nullopt : std::optional(found->second);
  }
  void setText(Root root, const std::string& key, const std::string& name, const std::string& text) override {
    refuse();
    texts[{root, key, name}] = text;
  }
  void removeText(Root root, const std::string& key, const std::string& name) override {
    refuse();
    if (texts.erase({root, key, name}) == 0) throw RuntimeError(RuntimeError::PathNotFound);
  }

 private:
  void refuse() const {
    if (refusal) throw RuntimeError(*refusal);
  }
};

/// Files with the versions that a test gives them, and texts that stand for others.
class FakeFileVersions final : public FileVersions {
 public:
  std::map<std::string, FileVersion> versions;
  std::map<std::string, std::string> variables;
  std::map<std::string, std::string> longPaths;
  std::string system;

  std::optional<FileVersion> versionOf(const HostPath& file) override {
    const auto found = versions.find(file.text);
    return found == versions.end() ? std::nullopt : std::optional(found->second);
  }
  std::string expanded(const std::string& text) override { return of(variables, text); }
  std::string longPath(const std::string& path) override { return of(longPaths, path); }
  std::string systemVersion() override { return system; }

 private:
  static std::string of(const std::map<std::string, std::string>& table, const std::string& text) {
    const auto found = table.find(text);
    return found == table.end() ? text : found->second;
  }
};

class FakeCommonControls final : public CommonControls {
 public:
  std::vector<std::pair<std::int32_t, std::int32_t>> calls;
  bool initialise(std::int32_t size, std::int32_t flags) override {
    calls.emplace_back(size, flags);
    return false;
  }
};

}  // namespace trackloom::fakes
