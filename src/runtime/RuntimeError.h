#pragma once

#include <exception>
#include <string>

namespace trackloom {

/// The one exception of the program's logic: an error number of the language's usual table with its description.
class RuntimeError : public std::exception {
 public:
  enum Number : int {
    InvalidCall = 5,
    Overflow = 6,
    SubscriptOutOfRange = 9,
    DivisionByZero = 11,
    TypeMismatch = 13,
    BadFileName = 52,
    FileNotFound = 53,
    FileAlreadyOpen = 55,
    DeviceIoError = 57,
    DiskFull = 61,
    InputPastEnd = 62,
    BadRecordNumber = 63,
    PermissionDenied = 70,
    PathFileAccess = 75,
    PathNotFound = 76,
    ObjectNotSet = 91,
    InvalidPropertyValue = 380,
  };

  explicit RuntimeError(Number number);
  RuntimeError(int number, std::string description);

  /// The error that stands for a failed system call with this `errno`.
  static RuntimeError fromErrno(int systemError);
  /// The same for a call that makes a file: what is missing then is the folder.
  static RuntimeError fromFailedMaking(int systemError);

  int number() const { return number_; }
  const std::string& description() const { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  int number_;
  std::string description_;
};

}  // namespace trackloom
