#include "dist/EngineAccess.h"

#include "dice/DieLookup.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

bool DefinedDieAt(std::string_view lower, long p, DefinedDie& die) {
  if (long r = FindRangeAt(lower, p)) {
    const RangeType& type = dieTypes.Define[static_cast<size_t>(r)];
    die = DefinedDie{true, type.Lo, type.Hi, {}, static_cast<long>(type.Name.size())};
    return true;
  }
  if (long s = FindListAt(lower, p)) {
    const ListType& type = dieTypes.DefSeq[static_cast<size_t>(s)];
    die = DefinedDie{false, 0, 0, type.Dice, static_cast<long>(type.Name.size())};
    return true;
  }
  return false;
}

}  // namespace gandrel
