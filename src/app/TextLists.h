// Looking a text up in a list of texts, ignoring letter case, as the history,
// the always-add items and the dialogs compare die values.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "calc/Basic.h"

namespace gandrel {

// The first index from 1 on (a 1-based list) whose entry equals value,
// ignoring case; 0 when none does.
inline long IndexIgnoringCase(const std::vector<std::string>& list, std::string_view value) {
  std::string wanted = LCase(value);
  for (size_t i = 1; i < list.size(); ++i)
    if (LCase(list[i]) == wanted) return static_cast<long>(i);
  return 0;
}

// True when any entry of a plain list equals value, ignoring case.
inline bool ContainsIgnoringCase(const std::vector<std::string>& list, std::string_view value) {
  std::string wanted = LCase(value);
  return std::any_of(list.begin(), list.end(),
                     [&](const std::string& item) { return LCase(item) == wanted; });
}

}  // namespace gandrel
