#include "runtime/RuntimeError.h"

#include <array>
#include <cerrno>
#include <utility>

namespace trackloom {

namespace {

struct Entry {
  RuntimeError::Number number;
  const char* description;
};

constexpr std::array entries{
    Entry{RuntimeError::InvalidCall, "Invalid procedure call or argument"},
    Entry{RuntimeError::Overflow, "Overflow"},
    Entry{RuntimeError::SubscriptOutOfRange, "Subscript out of range"},
    Entry{RuntimeError::DivisionByZero, "Division by zero"},
    Entry{RuntimeError::TypeMismatch, "Type mismatch"},
    Entry{RuntimeError::BadFileName, "Bad file name or number"},
    Entry{RuntimeError::FileNotFound, "File not found"},
    Entry{RuntimeError::FileAlreadyOpen, "File already open"},
    Entry{RuntimeError::DeviceIoError, "Device I/O error"},
    Entry{RuntimeError::DiskFull, "Disk full"},
    Entry{RuntimeError::InputPastEnd, "Input past end of file"},
    Entry{RuntimeError::BadRecordNumber, "Bad record number"},
    Entry{RuntimeError::PermissionDenied, "Permission denied"},
    Entry{RuntimeError::PathFileAccess, "Path/File access error"},
    Entry{RuntimeError::PathNotFound, "Path not found"},
    Entry{RuntimeError::ObjectNotSet, "Object variable not set"},
    Entry{RuntimeError::InvalidPropertyValue, "Invalid property value"},
};

const char* descriptionOf(RuntimeError::Number number) {
  for (const Entry& entry : entries)
    if (entry.number == number) return entry.description;
  return "Application-defined or object-defined error";
}

}  // namespace

RuntimeError::RuntimeError(Number number) : number_(number), description_(descriptionOf(number)) {}

RuntimeError::RuntimeError(int number, std::string description)
    : number_(number), description_(std::move(description)) {}

RuntimeError RuntimeError::fromErrno(int systemError) {
  switch (systemError) {
    case ENOENT:
      return RuntimeError(FileNotFound);
    case EACCES:
    case EPERM:
    case EROFS:
      return RuntimeError(PermissionDenied);
    case ENOTDIR:
    case ELOOP:
      return RuntimeError(PathNotFound);
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return RuntimeError(DiskFull);
    case EIO:
    case ENXIO:
      return RuntimeError(DeviceIoError);
    case ENAMETOOLONG:
      return RuntimeError(BadFileName);
    default:
      return RuntimeError(PathFileAccess);
  }
}

RuntimeError RuntimeError::fromFailedMaking(int systemError) {
  return systemError == ENOENT ? RuntimeError(PathNotFound) : fromErrno(systemError);
}

}  // namespace trackloom
