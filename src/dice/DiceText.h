// The texts a roll writes: the value of a die or a total, and the list of the
// single dice ("+4+1+6").
//
// Both follow FormatNumber exactly. Dice are mostly whole numbers of a few
// digits, and a roll of millions of dice writes millions of them, so whole
// values below 1E15 (which FormatNumber writes as plain digits) take a fast
// path; every other value goes through FormatNumber.
#pragma once

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "calc/NumberText.h"
#include "calc/RuntimeError.h"

namespace gandrel {

// The longest list of single dice one term may write (256 MB; tests lower
// it, ResetEngineState puts it back). A longer one would only exhaust the
// memory of the machine; it is refused as "Out of memory". The details of
// one expression may hold twice as much.
inline constexpr size_t kMostDiceText = size_t{1} << 28;
inline size_t maxDiceText = kMostDiceText;

// Appends the FormatNumber text of value to out.
inline void AppendNumberText(std::string& out, double value) {
  if (std::fabs(value) < 1e15 && value == std::floor(value)) {
    char buf[24];
    auto res = std::to_chars(buf, buf + sizeof buf, static_cast<int64_t>(value));
    out.append(buf, res.ptr);
  } else {
    out += FormatNumber(value);
  }
}

// The FormatNumber text of value.
inline std::string NumberText(double value) {
  std::string text;
  AppendNumberText(text, value);
  return text;
}

// The list of single dice of one term, built die by die.
class DiceList {
 public:
  // Appends "+" and the value's text.
  void Add(double value) {
    if (text_.size() >= maxDiceText) [[unlikely]]
      Raise(ErrNo::OutOfMemory);
    text_ += '+';
    AppendNumberText(text_, value);
  }
  // The same for a whole value.
  void Add(int64_t value) {
    if (text_.size() >= maxDiceText) [[unlikely]]
      Raise(ErrNo::OutOfMemory);
    char buf[24];
    buf[0] = '+';
    auto res = std::to_chars(buf + 1, buf + sizeof buf, value);
    text_.append(buf, res.ptr);
  }
  std::string& Text() { return text_; }

 private:
  std::string text_;
};

}  // namespace gandrel
