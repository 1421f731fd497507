// The one place where the distribution layer reads the engine's shared state:
// the die-type tables. Everything else it needs it gets by calling the
// engine's own procedures (ExpandDice reads the default die itself).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace gandrel {

// A die type as the distributions need it: a range Lo..Hi, or a list text.
struct DefinedDie {
  bool isRange = false;
  int32_t lo = 0;
  int32_t hi = 0;
  std::string items;  // a list type's items as written, separated by ","
  long nameLength = 0;
};

// The type whose name stands at p (1-based) of the lower-cased text, looked up
// as a roll looks it up: the range types first, the list types only when no
// range type matches. False when none does.
bool DefinedDieAt(std::string_view lower, long p, DefinedDie& die);

}  // namespace gandrel
