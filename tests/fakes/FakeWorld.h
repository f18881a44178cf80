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
  FakeProcess();
  ~FakeProcess() override;

  std::string folder;
  bool second = false;
  std::vector<std::string> refugeFolders;
  std::vector<std::string> told;

  std::string executableFolder() override;
  bool isSecondInstance() override;
  std::vector<HostPath> refuges() override;
  void tell(const std::string& words) override;
  [[noreturn]] void end(int status) override;
};

/// Runs what a test wants to happen while the program lets events run.
class FakePump final : public EventPump {
 public:
  FakePump();
  ~FakePump() override;

  int pumped = 0;
  std::function<void()> onPump;

  void pumpEvents() override;
};

class FakeOpener final : public ShellOpener {
 public:
  FakeOpener();
  ~FakeOpener() override;

  std::vector<ShellOrder> orders;
  void open(const ShellOrder& order) override;
};

class FakeHelp final : public HelpEngine {
 public:
  FakeHelp();
  ~FakeHelp() override;

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
                         std::intptr_t data) override;
  void askWhatsThis(std::intptr_t window) override;
};

/// A store that fails where `refusal` is set.
class FakeRegistry final : public Registry {
 public:
  FakeRegistry();
  ~FakeRegistry() override;

  using Place = std::tuple<Root, std::string, std::string>;
  std::map<Place, std::string> texts;
  std::optional<RuntimeError> refusal;

  std::optional<std::string> text(Root root, const std::string& key, const std::string& name) override;
  void setText(Root root, const std::string& key, const std::string& name, const std::string& text) override;
  void removeText(Root root, const std::string& key, const std::string& name) override;

 private:
  void refuse() const;
};

/// Files with the versions that a test gives them, and texts that stand for others.
class FakeFileVersions final : public FileVersions {
 public:
  FakeFileVersions();
  ~FakeFileVersions() override;

  std::map<std::string, FileVersion> versions;
  std::map<std::string, std::string> variables;
  std::map<std::string, std::string> longPaths;
  std::string system;

  std::optional<FileVersion> versionOf(const HostPath& file) override;
  std::string expanded(const std::string& text) override;
  std::string longPath(const std::string& path) override;
  std::string systemVersion() override;

 private:
  static std::string of(const std::map<std::string, std::string>& table, const std::string& text);
};

class FakeCommonControls final : public CommonControls {
 public:
  FakeCommonControls();
  ~FakeCommonControls() override;

  std::vector<std::pair<std::int32_t, std::int32_t>> calls;
  bool initialise(std::int32_t size, std::int32_t flags) override;
};

}  // namespace trackloom::fakes
