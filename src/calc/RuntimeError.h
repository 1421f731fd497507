// The one run-time error of the engine, and the break signal.
//
// Every error the engine can meet while it works (an overflow, a division by
// zero, a bad argument to a text helper, a file that cannot be opened) is a
// RuntimeError carrying the classic number and description. It never crosses a
// procedure that has a handler of its own: that procedure catches it (through
// TrapRuntimeError) and turns it into its marker text or message.
//
// BreakSignal is not an error: it is how a long roll or an endless
// substitution gives up when the user has asked to break. It is deliberately
// not derived from std::exception, so that no error handler catches it.
#pragma once

#include <exception>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>

namespace gandrel {

enum class ErrNo : int {
  InvalidProcedureCall = 5,
  Overflow = 6,
  OutOfMemory = 7,
  SubscriptOutOfRange = 9,
  DivisionByZero = 11,
  TypeMismatch = 13,
  OutOfStackSpace = 28,
  BadFileNameOrNumber = 52,
  FileNotFound = 53,
  BadFileMode = 54,
  FileAlreadyOpen = 55,
  DeviceIOError = 57,
  FileAlreadyExists = 58,
  DiskFull = 61,
  InputPastEndOfFile = 62,
  PermissionDenied = 70,
  PathFileAccessError = 75,
  PathNotFound = 76,
};

// The description text of an error number ("Overflow", "Division by zero", ...).
std::string ErrorDescription(ErrNo number);

class RuntimeError : public std::exception {
 public:
  explicit RuntimeError(ErrNo number) : number_(number), description_(ErrorDescription(number)) {}
  ErrNo Number() const { return number_; }
  const std::string& Description() const { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  ErrNo number_;
  std::string description_;
};

[[noreturn]] inline void Raise(ErrNo number) {
  throw RuntimeError(number);
}

// Thrown when the user breaks a roll or a script (Escape, Ctrl-C, Pause's Cancel).
struct BreakSignal {};

// Runs body() under an error handler. Returns the run-time error it raised, or
// nothing. Running out of memory counts as the "Out of memory" error. A
// BreakSignal passes through untouched.
template <class Body>
std::optional<RuntimeError> TrapRuntimeError(Body&& body) {
  try {
    body();
  } catch (const RuntimeError& e) {
    return e;
  } catch (const std::bad_alloc&) {
    return RuntimeError(ErrNo::OutOfMemory);
  } catch (const std::length_error&) {
    return RuntimeError(ErrNo::OutOfMemory);
  }
  return std::nullopt;
}

}  // namespace gandrel
