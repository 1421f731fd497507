// The variables and lists of one script run.
//
// All four arrays are 1-based: element 0 exists and is never used. Names are
// kept in lower case. The items of one list are joined by the character with
// code 0 into one string.
#pragma once

#include <string>
#include <vector>

namespace gandrel {

struct VarStore {
  std::vector<std::string> varNames{""};
  std::vector<double> varValues{0.0};
  std::vector<std::string> listNames{""};
  std::vector<std::string> listItems{""};
};

}  // namespace gandrel
