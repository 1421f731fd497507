// What the script fuzz targets share: the input as a script's raw lines,
// split as the editor splits its text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "script/modScript.h"

namespace gandrel::fuzzing {

// 1-based lines, as the editor's text is cut (SplitScriptLines).
inline std::vector<std::string> RawLines(const uint8_t* data, size_t size) {
  std::vector<std::string> lines =
      SplitScriptLines(std::string_view(reinterpret_cast<const char*>(data), size));
  lines.insert(lines.begin(), std::string());
  return lines;
}

}  // namespace gandrel::fuzzing
