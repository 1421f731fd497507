#include "calc/NumberText.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
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
  while (digits.size() > 1 && digits.back() == '0')
    digits.pop_back();

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

static size_t SkipDigits(std::string_view text, size_t i) {
  while (i < text.size() && text[i] >= '0' && text[i] <= '9')
    ++i;
  return i;
}

double ReadNumber(std::string_view text) {
  size_t i = 0, n = text.size();
  while (i < n && text[i] == ' ')
    ++i;
  bool negative = false;
  if (i < n && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';

  // The number proper: digits, an optional point and fraction.
  size_t begin = i;
  i = SkipDigits(text, i);
  bool anyDigit = i > begin;
  if (i < n && text[i] == '.') {
    size_t fraction = i + 1;
    i = SkipDigits(text, fraction);
    anyDigit = anyDigit || i > fraction;
  }
  if (!anyDigit) return 0.0;

  // An exponent counts only when digits follow its marker (and sign).
  size_t end = i;
  if (i < n && (text[i] == 'E' || text[i] == 'D')) {
    size_t j = i + 1;
    if (j < n && (text[j] == '-' || text[j] == '+')) ++j;
    size_t digitsEnd = SkipDigits(text, j);
    if (digitsEnd > j) end = digitsEnd;
  }

  // from_chars knows only "E": copy the number (on the stack when it is short,
  // as nearly every number is) and write a "D" marker as "E".
  char shortCopy[64];
  std::string longCopy;
  size_t length = end - begin;
  char* number = shortCopy;
  if (length > sizeof shortCopy) {
    longCopy.assign(text.substr(begin, length));
    number = longCopy.data();
  } else {
    std::memcpy(shortCopy, text.data() + begin, length);
  }
  char* exponent = nullptr;
  for (size_t k = 0; k < length; ++k) {
    if (number[k] == 'D') number[k] = 'E';
    if (number[k] == 'E') exponent = number + k;
  }

  double value = 0.0;
  auto res = std::from_chars(number, number + length, value);
  if (res.ec == std::errc::result_out_of_range) {
    // from_chars says the same for a number too small to tell from zero.
    bool tiny = exponent && exponent + 1 < number + length && exponent[1] == '-';
    if (tiny) return 0.0;
    Raise(ErrNo::Overflow);
  }
  if (!std::isfinite(value)) Raise(ErrNo::Overflow);
  return negative ? -value : value;
}

}  // namespace gandrel
