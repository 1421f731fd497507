#include "cli/CliJson.h"

#include <cstdint>

namespace gandrel::cli {

static bool IsContinuation(unsigned char c) {
  return (c & 0xC0) == 0x80;
}

// The length of the valid UTF-8 sequence that starts at text[i], or 0.
static size_t Utf8Length(std::string_view text, size_t i) {
  auto at = [&](size_t k) { return static_cast<unsigned char>(text[k]); };
  unsigned char lead = at(i);
  size_t length;
  unsigned char low = 0x80, high = 0xBF;  // the allowed range of the second byte
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) low = 0xA0;   // no overlong forms
    if (lead == 0xED) high = 0x9F;  // no surrogates
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;  // nothing above U+10FFFF
  } else {
    return 0;
  }
  if (i + length > text.size()) return 0;
  if (at(i + 1) < low || at(i + 1) > high) return 0;
  for (size_t k = 2; k < length; ++k)
    if (!IsContinuation(at(i + k))) return 0;
  return length;
}

static void AppendEscaped(std::string& out, unsigned char c) {
  switch (c) {
    case '"':
      out += "\\\"";
      return;
    case '\\':
      out += "\\\\";
      return;
    case '\n':
      out += "\\n";
      return;
    case '\r':
      out += "\\r";
      return;
    case '\t':
      out += "\\t";
      return;
    case '\b':
      out += "\\b";
      return;
    case '\f':
      out += "\\f";
      return;
    default:
      break;
  }
  static const char* const hex = "0123456789abcdef";
  out += "\\u00";
  out += hex[c >> 4];
  out += hex[c & 15];
}

std::string JsonString(std::string_view text) {
  std::string out;
  out.reserve(text.size() + 2);
  out += '"';
  size_t i = 0;
  while (i < text.size()) {
    unsigned char c = static_cast<unsigned char>(text[i]);
    if (c < 0x20 || c == '"' || c == '\\') {
      AppendEscaped(out, c);
      ++i;
    } else if (c < 0x80) {
      out += static_cast<char>(c);
      ++i;
    } else if (size_t n = Utf8Length(text, i); n > 0) {
      out.append(text.substr(i, n));
      i += n;
    } else {
      out += "\\ufffd";
      ++i;
    }
  }
  out += '"';
  return out;
}

}  // namespace gandrel::cli
