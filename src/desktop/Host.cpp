#include "desktop/Host.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QLocale>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <utility>

#include "runtime/RuntimeError.h"

namespace trackloom {

namespace {

constexpr const char* Executable = "/proc/self/exe";

}  // namespace

void NoRegistry::setText(Root, const std::string& /*key*/, const std::string& /*name*/, const std::string& /*text*/) {
  throw RuntimeError(RuntimeError::PathNotFound);
}

void NoRegistry::removeText(Root, const std::string& /*key*/, const std::string& /*name*/) {
  throw RuntimeError(RuntimeError::PathNotFound);
}

LinuxProcess::LinuxProcess() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

std::string LinuxProcess::executableFolder() {
  return std::filesystem::read_symlink(Executable).parent_path().string();
}

bool LinuxProcess::isSecondInstance() {
  if (first_) return false;
  FileDescriptor folder(::open(executableFolder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder && ::flock(folder.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return true;
  folder_ = std::move(folder);
  first_ = true;
  if (whenFirst) whenFirst();
  return false;
}

std::vector<HostPath> LinuxProcess::refuges() {
  std::vector<HostPath> folders;
  for (const char* variable : {"HOME", "XDG_RUNTIME_DIR", "TMPDIR"})
    if (const char* folder = std::getenv(variable); folder != nullptr && *folder == HostSep)
      folders.emplace_back(folder);
  for (const char* folder : {"/var/tmp", "/tmp", "/dev/shm"}) folders.emplace_back(folder);
  return folders;
}

void LinuxProcess::tell(const std::string& words) {
  std::cerr << "Trackloom: " << words << std::endl;
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
