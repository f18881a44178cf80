#pragma once

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>

namespace trackloom::bench {

inline double secondsOf(const std::function<void()>& work) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

inline double processorSeconds() {
  double sum = 0;
  for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    rusage used{};
    ::getrusage(who, &used);
    for (const timeval& time : {used.ru_utime, used.ru_stime})
      sum += static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  }
  return sum;
}

/// The least that some work took in a few turns, in seconds: of the clock, and of all processors, of which other
/// programs on the machine take little away. What it calls in other programs is counted.
struct Cost {
  double clock = 1e9;
  double processors = 1e9;

  void measure(const std::function<void()>& work) {
    const double before = processorSeconds();
    clock = std::min(clock, secondsOf(work));
    processors = std::min(processors, processorSeconds() - before);
  }
};

inline void row(const std::string& name, double figure, const char* unit) {
  std::printf("%s\t%.2f\t%s\n", name.c_str(), figure, unit);
}

/// Both sides of a comparison, by the clock and in time of processors.
inline void compare(const std::string& ourWork, const Cost& ours, const std::string& theirWork, const Cost& theirs) {
  row(ourWork, ours.clock, "s");
  row(theirWork, theirs.clock, "s");
  row("Ratio of the two", ours.clock / theirs.clock, "x");
  row("Time of processors, ours", ours.processors, "s");
  row("Time of processors, theirs", theirs.processors, "s");
}

}  // namespace trackloom::bench
