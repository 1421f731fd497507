// What the script fuzz targets share: the input as a script's raw lines,
// split as the editor splits its text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "calc/Basic.h"

namespace gandrel::fuzzing {

// 1-based lines: cut at every LF (a CR before it dropped), trailing blanks
// removed, a blank rest left out, one empty line last.
inline std::vector<std::string> RawLines(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::vector<std::string> lines{""};
  size_t start = 0;
  for (size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
    std::string line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(RTrim(line));
  }
  std::string rest = RTrim(text.substr(start));
  if (!rest.empty()) lines.push_back(rest);
  lines.emplace_back();
  return lines;
}

}  // namespace gandrel::fuzzing
