#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace trackloom::launcher {

/// What keeps the program from starting, in words for its user.
class Trouble : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Where this user's data lies: $XDG_DATA_HOME where it is an absolute path, else ~/.local/share (XDG Base Directory
/// Specification 0.8). Throws Trouble when there is no home folder.
std::filesystem::path dataFolder();

/// A user's own program folder, made after the original that the package has laid where users cannot write. The program
/// keeps all it has beside its executable, so each user has an executable of his own.
///
/// Whatever comes into the folder comes by a rename, so that at no moment and behind no crash a part of a file has its
/// name. Launchers that start at the same time wait for one another. Of what the folder has besides the original's
/// files, nothing is ever touched, and the recorder is laid only where no executable has been yet: its discs are the
/// user's.
class OwnFolder {
 public:
  OwnFolder(std::filesystem::path original, std::filesystem::path own);

  /// Makes the folder, or renews the files in which it differs from the original. Throws Trouble, and the files that
  /// stood there still stand.
  void bringUp() const;

  /// Whether there is an executable, be it an old one.
  bool canStart() const;

  /// Becomes the program of the folder; `arguments` end with a null pointer. Throws Trouble.
  [[noreturn]] void start(char* const arguments[]) const;

 private:
  void makeOrRenew() const;
  void layRecorder() const;
  void renew(const std::string& name) const;
  bool isCurrent(const std::string& name) const;
  std::vector<std::string> files() const;
  std::filesystem::path aside(const std::string& name) const;
  std::string words(const std::error_code& cause) const;

  std::filesystem::path original_;
  std::filesystem::path own_;
};

}  // namespace trackloom::launcher
