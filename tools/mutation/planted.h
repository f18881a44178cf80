#pragma once

// What a rewritten source asks wherever a fault is planted in it: is it this one's turn?
// MUTATION_FAULT names the fault of this run; MUTATION_REACHED is a file with one byte for each fault, set once the
// program comes by its place. The file is shared memory, so that no crash and no child process loses what was noted.

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace mutation {

inline char* reachedMap() {
  const char* path = std::getenv("MUTATION_REACHED");
  const int file = path == nullptr ? -1 : ::open(path, O_RDWR | O_CLOEXEC);
  if (file < 0) return nullptr;
  struct stat entry {};
  ::fstat(file, &entry);
  void* map = ::mmap(nullptr, static_cast<std::size_t>(entry.st_size), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  ::close(file);
  return map == MAP_FAILED ? nullptr : static_cast<char*>(map);
}

inline int faultOfThisRun() {
  const char* number = std::getenv("MUTATION_FAULT");
  return number == nullptr ? 0 : std::atoi(number);
}

inline bool planted(int fault) {
  static char* const reached = reachedMap();
  static const int chosen = faultOfThisRun();
  if (reached != nullptr) reached[fault] = 1;
  return fault == chosen;
}

}  // namespace mutation
