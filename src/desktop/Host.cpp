#include "desktop/Host.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QLocale>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <iostream>

namespace trackloom {

namespace {

constexpr const char* Executable = "/proc/self/exe";

}  // namespace

LinuxProcess::~LinuxProcess() {
  if (lock_ >= 0) close(lock_);
}

std::string LinuxProcess::executableFolder() {
  return std::filesystem::read_symlink(Executable).parent_path().string();
}

bool LinuxProcess::isSecondInstance() {
  if (lock_ >= 0) return false;
  const int file = open(Executable, O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  const bool locked = flock(file, LOCK_EX | LOCK_NB) == 0;
  const bool heldByAnother = !locked && errno == EWOULDBLOCK;
  if (locked)
    lock_ = file;
  else
    close(file);
  return heldByAnother;
}

void LinuxProcess::end(int status) {
  std::cout.flush();
  std::fflush(nullptr);
  _exit(status);
}

Separators systemSeparators() {
  const QLocale locale = QLocale::system();
  return {locale.groupSeparator().toStdString(), locale.decimalPoint().toStdString()};
}

}  // namespace trackloom
