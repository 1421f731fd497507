// Where a line is cut at its first double quote, as the notation and the
// calculation entry both cut it: text in double quotes is never expanded,
// rolled or calculated.
#pragma once

#include <string>
#include <string_view>

namespace gandrel {

struct QuoteCut {
  std::string before;  // the text before the first quote
  std::string quoted;  // from that quote through the next one, or to the end
  std::string after;   // the rest
};

// Cuts text at its first double quote; false (cut untouched) when it holds none.
inline bool CutAtQuote(std::string_view text, QuoteCut& cut) {
  size_t q1 = text.find('"');
  if (q1 == std::string_view::npos) return false;
  size_t q2 = text.find('"', q1 + 1);
  if (q2 == std::string_view::npos) q2 = text.size() - 1;
  cut.before = text.substr(0, q1);
  cut.quoted = text.substr(q1, q2 - q1 + 1);
  cut.after = text.substr(q2 + 1);
  return true;
}

}  // namespace gandrel
