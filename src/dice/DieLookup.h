// What the dice procedures share when they look at a "d" in a text: whether a
// defined die type's name stands there, and the digit runs on either side.
//
// Each procedure keeps its own order of lookup (which table is asked first,
// whether a match ends the search); only the matching itself lives here.
// Positions are 1-based, as in the text helpers.
#pragma once

#include <string_view>

namespace gandrel {

// True when name, lower-cased, equals the characters of lower from p on, as
// many as the name is long. An empty name never matches: every die name
// carries its "d", and an empty one would stand everywhere. p below 1 raises
// "Invalid procedure call or argument".
bool NameMatchesAt(std::string_view name, std::string_view lower, long p);

// The index of the first record of Define (resp. DefSeq), in table order,
// whose name matches at p; 0 when none does.
long FindRangeAt(std::string_view lower, long p);
long FindListAt(std::string_view lower, long p);

// The length of the defined name that stands at p, as the expansion and
// BreakOutDice ask for it: Define first, DefSeq only without a Define match;
// 0 when none does.
long DefinedNameLengthAt(std::string_view lower, long p);

// The first position of the run of digits that ends right before p, or p when
// the character before p is not a digit (or p is 1). Yields per character.
long DigitRunStart(std::string_view text, long p);

// The last position of the run of digits that starts right after p, or p when
// no digit follows. Yields per character.
long DigitRunEnd(std::string_view text, long p);

// The bounds of the dice term whose "d" is at p, as a roll finds them: the
// count digits before it, the size digits after it, then a Define match sets
// the end, and a DefSeq match sets it again (so DefSeq wins).
void FindRolledTerm(std::string_view lower, long p, long& start, long& end);

// Positions and lengths of expressions are kept in 16 bits: a text longer
// than 32,767 characters raises "Overflow".
void CheckTextLength(std::string_view text);

}  // namespace gandrel
