#include "calc/RuntimeError.h"

namespace gandrel {

std::string ErrorDescription(ErrNo number) {
  switch (number) {
    case ErrNo::InvalidProcedureCall:
      return "Invalid procedure call or argument";
    case ErrNo::Overflow:
      return "Overflow";
    case ErrNo::OutOfMemory:
      return "Out of memory";
    case ErrNo::SubscriptOutOfRange:
      return "Subscript out of range";
    case ErrNo::DivisionByZero:
      return "Division by zero";
    case ErrNo::TypeMismatch:
      return "Type mismatch";
    case ErrNo::OutOfStackSpace:
      return "Out of stack space";
    case ErrNo::BadFileNameOrNumber:
      return "Bad file name or number";
    case ErrNo::FileNotFound:
      return "File not found";
    case ErrNo::BadFileMode:
      return "Bad file mode";
    case ErrNo::FileAlreadyOpen:
      return "File already open";
    case ErrNo::DeviceIOError:
      return "Device I/O error";
    case ErrNo::FileAlreadyExists:
      return "File already exists";
    case ErrNo::DiskFull:
      return "Disk full";
    case ErrNo::InputPastEndOfFile:
      return "Input past end of file";
    case ErrNo::PermissionDenied:
      return "Permission denied";
    case ErrNo::PathFileAccessError:
      return "Path/File access error";
    case ErrNo::PathNotFound:
      return "Path not found";
  }
  return "Application-defined or object-defined error";
}

}  // namespace gandrel
