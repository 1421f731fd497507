#include "cli/CliJson.h"

#include <cmath>
#include <cstdint>

#include "app/Calculator.h"
#include "app/TextEncoding.h"

namespace gandrel::cli {

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
    } else if (size_t n = Utf8SequenceLength(text, i); n > 0) {
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

std::string JsonNumber(double value) {
  return std::isfinite(value) ? RoundTripText(value) : "null";
}

}  // namespace gandrel::cli
