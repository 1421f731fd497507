#include "calc/NumberText.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>
#include <system_error>

#include "calc/RuntimeError.h"

namespace gandrel {

std::string FormatNumber(double value) {
  if (!std::isfinite(value)) Raise(ErrNo::Overflow);
  if (value == 0.0) return "0";
  // Whole numbers below 1E15 are written as their digits: the common case, made quick.
  if (std::fabs(value) < 1e15 && value == std::floor(value)) {
    char whole[24];
    auto end = std::to_chars(whole, whole + sizeof whole, static_cast<long long>(value)).ptr;
    return std::string(whole, end);
  }

  // d.dddddddddddddde+XX: the value rounded to 15 significant digits.
  char buf[64];
  auto res = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::scientific, 14);
  std::string_view sci(buf, static_cast<size_t>(res.ptr - buf));

  bool negative = sci.front() == '-';
  if (negative) sci.remove_prefix(1);
  size_t epos = sci.find('e');
  std::string digits;
  for (char c : sci.substr(0, epos))
    if (c != '.') digits += c;
  int exponent = std::atoi(std::string(sci.substr(epos + 1)).c_str());
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();

  std::string out = negative ? "-" : "";
  if (exponent >= 15 || exponent < -4) {
    out += digits[0];
    if (digits.size() > 1) {
      out += '.';
      out.append(digits, 1, std::string::npos);
    }
    out += exponent < 0 ? "E-" : "E+";
    int magnitude = std::abs(exponent);
    if (magnitude < 10) out += '0';
    out += std::to_string(magnitude);
  } else if (exponent >= 0) {
    size_t whole = static_cast<size_t>(exponent) + 1;
    if (digits.size() <= whole) {
      out += digits;
      out.append(whole - digits.size(), '0');
    } else {
      out.append(digits, 0, whole);
      out += '.';
      out.append(digits, whole, std::string::npos);
    }
  } else {
    out += '.';
    out.append(static_cast<size_t>(-exponent - 1), '0');
    out += digits;
  }
  return out;
}

double ReadNumber(std::string_view text) {
  size_t i = 0, n = text.size();
  while (i < n && text[i] == ' ') ++i;

  std::string canon;
  if (i < n && (text[i] == '-' || text[i] == '+')) {
    if (text[i] == '-') canon += '-';
    ++i;
  }
  bool anyDigit = false;
  std::string mantissa;
  while (i < n && text[i] >= '0' && text[i] <= '9') {
    mantissa += text[i++];
    anyDigit = true;
  }
  if (i < n && text[i] == '.') {
    mantissa += text[i++];
    while (i < n && text[i] >= '0' && text[i] <= '9') {
      mantissa += text[i++];
      anyDigit = true;
    }
  }
  if (!anyDigit) return 0.0;
  if (mantissa.front() == '.') mantissa.insert(0, "0");
  canon += mantissa;

  if (i < n && (text[i] == 'E' || text[i] == 'D')) {
    size_t j = i + 1;
    std::string exp = "e";
    if (j < n && (text[j] == '-' || text[j] == '+')) exp += text[j++];
    size_t firstDigit = j;
    while (j < n && text[j] >= '0' && text[j] <= '9') exp += text[j++];
    if (j > firstDigit) canon += exp;
  }

  double value = 0.0;
  auto res = std::from_chars(canon.data(), canon.data() + canon.size(), value);
  if (res.ec == std::errc::result_out_of_range) {
    // from_chars says the same for a number too small to tell from zero.
    size_t e = canon.find('e');
    bool tiny = e != std::string::npos && e + 1 < canon.size() && canon[e + 1] == '-';
    if (tiny) return 0.0;
    Raise(ErrNo::Overflow);
  }
  if (!std::isfinite(value)) Raise(ErrNo::Overflow);
  return value;
}

}  // namespace gandrel
