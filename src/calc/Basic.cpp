#include "calc/Basic.h"

#include <cmath>
#include <limits>

#include "calc/RuntimeError.h"

namespace gandrel {

long InStr(long start, std::string_view text, std::string_view needle) {
  if (start < 1) Raise(ErrNo::InvalidProcedureCall);
  if (start > Len(text) + 1) return 0;
  if (needle.empty()) return start;
  size_t p = text.find(needle, static_cast<size_t>(start - 1));
  return p == std::string_view::npos ? 0 : static_cast<long>(p) + 1;
}

std::string Mid(std::string_view text, long start) {
  if (start < 1) Raise(ErrNo::InvalidProcedureCall);
  if (start > Len(text)) return {};
  return std::string(text.substr(static_cast<size_t>(start - 1)));
}

std::string Mid(std::string_view text, long start, long length) {
  if (start < 1 || length < 0) Raise(ErrNo::InvalidProcedureCall);
  if (start > Len(text)) return {};
  return std::string(text.substr(static_cast<size_t>(start - 1), static_cast<size_t>(length)));
}

std::string Left(std::string_view text, long length) {
  if (length < 0) Raise(ErrNo::InvalidProcedureCall);
  return std::string(text.substr(0, static_cast<size_t>(length)));
}

std::string Right(std::string_view text, long length) {
  if (length < 0) Raise(ErrNo::InvalidProcedureCall);
  if (length >= Len(text)) return std::string(text);
  return std::string(text.substr(text.size() - static_cast<size_t>(length)));
}

char LCaseChar(char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c;
}

std::string LCase(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    c = LCaseChar(c);
  return out;
}

std::string UCase(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
  return out;
}

std::string LTrim(std::string_view text) {
  size_t b = text.find_first_not_of(' ');
  return b == std::string_view::npos ? std::string() : std::string(text.substr(b));
}

std::string RTrim(std::string_view text) {
  size_t e = text.find_last_not_of(' ');
  return e == std::string_view::npos ? std::string() : std::string(text.substr(0, e + 1));
}

std::string Trim(std::string_view text) {
  size_t b = text.find_first_not_of(' ');
  if (b == std::string_view::npos) return {};
  size_t e = text.find_last_not_of(' ');
  return std::string(text.substr(b, e - b + 1));
}

static double RoundHalfEven(double value) {
  if (!std::isfinite(value)) Raise(ErrNo::Overflow);
  return std::nearbyint(value);  // the default rounding mode rounds half to even
}

int16_t CInt(double value) {
  double r = RoundHalfEven(value);
  if (r < -32768.0 || r > 32767.0) Raise(ErrNo::Overflow);
  return static_cast<int16_t>(r);
}

int32_t CLng(double value) {
  double r = RoundHalfEven(value);
  if (r < -2147483648.0 || r > 2147483647.0) Raise(ErrNo::Overflow);
  return static_cast<int32_t>(r);
}

int16_t Int16(long value) {
  if (value < std::numeric_limits<int16_t>::min() || value > std::numeric_limits<int16_t>::max())
    Raise(ErrNo::Overflow);
  return static_cast<int16_t>(value);
}

std::string ReplaceAll(std::string_view text, std::string_view find, std::string_view with) {
  if (find.empty()) return std::string(text);
  std::string out;
  out.reserve(text.size());
  size_t from = 0;
  for (size_t p; (p = text.find(find, from)) != std::string_view::npos; from = p + find.size()) {
    out.append(text.substr(from, p - from));
    out.append(with);
  }
  out.append(text.substr(from));
  return out;
}

}  // namespace gandrel
