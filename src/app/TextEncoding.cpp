// UTF-8 checked and cut, and Windows-1252 read as UTF-8.
#include "app/TextEncoding.h"

namespace gandrel {

size_t Utf8SequenceLength(std::string_view text, size_t i) {
  auto byte = [&](size_t k) { return static_cast<unsigned char>(text[k]); };
  unsigned char lead = byte(i);
  if (lead < 0x80) return 1;
  size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                  : lead >= 0xE0 && lead <= 0xEF ? 3
                  : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                 : 0;
  if (length == 0 || i + length > text.size()) return 0;
  // The second byte's range rules out overlong forms, surrogates and code
  // points past U+10FFFF.
  unsigned char low = 0x80, high = 0xBF;
  if (lead == 0xE0) low = 0xA0;
  if (lead == 0xED) high = 0x9F;
  if (lead == 0xF0) low = 0x90;
  if (lead == 0xF4) high = 0x8F;
  if (byte(i + 1) < low || byte(i + 1) > high) return 0;
  for (size_t k = 2; k < length; ++k)
    if (byte(i + k) < 0x80 || byte(i + k) > 0xBF) return 0;
  return length;
}

bool IsUtf8(std::string_view text) {
  for (size_t i = 0; i < text.size();) {
    size_t length = Utf8SequenceLength(text, i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

// Bytes 0x80..0x9F of Windows-1252; 0 marks the five it leaves undefined.
static const char16_t kWindows1252High[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

std::string Windows1252ToUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 4);
  for (char c : text) {
    auto byte = static_cast<unsigned char>(c);
    char32_t code = byte;
    if (byte >= 0x80 && byte <= 0x9F && kWindows1252High[byte - 0x80] != 0)
      code = kWindows1252High[byte - 0x80];
    if (code < 0x80) {
      out += static_cast<char>(code);
    } else if (code < 0x800) {
      out += static_cast<char>(0xC0 | (code >> 6));
      out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
      out += static_cast<char>(0xE0 | (code >> 12));
      out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return out;
}

size_t Utf8CharStart(std::string_view text, size_t at, size_t floor) {
  while (at > floor && at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80)
    --at;
  return at;
}

}  // namespace gandrel
