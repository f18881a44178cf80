#pragma once

#include <algorithm>
#include <catch2/catch.hpp>

#include "words/table/RunNotes.h"

namespace trackloom::words {

/// Notes each test of this program that passes, and how many the program has. Included by the file that compiles
/// Catch itself.
class NotingListener : public Catch::TestEventListenerBase {
 public:
  using TestEventListenerBase::TestEventListenerBase;

  void testRunStarting(const Catch::TestRunInfo& run) override {
    TestEventListenerBase::testRunStarting(run);
    suite_ = run.name;
    const auto& all = Catch::getAllTestCasesSorted(*m_config);
    const auto count = std::count_if(all.begin(), all.end(), [](const auto& test) { return !test.isHidden(); });
    noteSuite(suite_, static_cast<std::size_t>(count));
  }
  void testCaseEnded(const Catch::TestCaseStats& stats) override {
    if (stats.totals.testCases.failed == 0 && !stats.testInfo.isHidden()) notePassed(suite_, stats.testInfo.name);
    TestEventListenerBase::testCaseEnded(stats);
  }

 private:
  std::string suite_;
};

CATCH_REGISTER_LISTENER(NotingListener)

}  // namespace trackloom::words
