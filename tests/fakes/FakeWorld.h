#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ports/CommonControls.h"
#include "ports/EventPump.h"
#include "ports/HelpEngine.h"
#include "ports/Process.h"
#include "ports/ShellOpener.h"

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

  std::intptr_t HtmlHelp(std::intptr_t owner, const std::string& target, std::uint32_t command,
                         std::intptr_t data) override {
    calls.push_back({target, command, data, owner});
    return 1;
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
