// Small text and number helpers with classic BASIC semantics.
//
// Text is bytes (UTF-8) in std::string. Positions are 1-based and 0 means
// "not found". A start position below 1 or a negative length raises
// "Invalid procedure call or argument". Case folding maps A-Z / a-z only, so a
// lower-cased copy keeps every position of the original. Trimming removes
// blanks (character 32) only: TAB, CR, LF, NUL and character 255 are ordinary.
//
// Where the program keeps a position, length or counter in a 16-bit integer,
// the value goes through Int16(), which raises "Overflow" past 32,767: that is
// how texts longer than the design allows are refused.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace gandrel {

// The line end of every text the engine writes: logs, details, script files.
inline constexpr const char* kCrLf = "\r\n";

// Length of a text as the 32-bit count of its bytes.
inline long Len(std::string_view text) {
  return static_cast<long>(text.size());
}

// First occurrence of needle in text at or after start (1-based); 0 if none.
// An empty needle is found at start (when start <= Len + 1).
long InStr(long start, std::string_view text, std::string_view needle);
inline long InStr(std::string_view text, std::string_view needle) {
  return InStr(1, text, needle);
}

// The length characters of text from start on (all of the rest when length is
// omitted). Past the end gives "".
std::string Mid(std::string_view text, long start);
std::string Mid(std::string_view text, long start, long length);
std::string Left(std::string_view text, long length);
std::string Right(std::string_view text, long length);

std::string LCase(std::string_view text);
std::string UCase(std::string_view text);
char LCaseChar(char c);

std::string Trim(std::string_view text);
std::string LTrim(std::string_view text);
std::string RTrim(std::string_view text);

inline bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Conversions to whole numbers: round half to even, raise "Overflow" when the
// result does not fit (or the value is not finite).
int16_t CInt(double value);
int32_t CLng(double value);

// A position or count that the program keeps in 16 bits; "Overflow" past the range.
int16_t Int16(long value);

// Replaces every occurrence of find by with, scanning left to right.
std::string ReplaceAll(std::string_view text, std::string_view find, std::string_view with);

}  // namespace gandrel
