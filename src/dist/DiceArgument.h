// The dice argument of an @ function, read the way its handler cuts it.
//
// @best, @worst, the caps and the limits replace each dice term by its single
// dice (ReplaceDice, with BreakOutDice finding the terms) and work on the
// terms of that per-die text. They are followed exactly when the argument is
// a signed sum: one "+" or "-" between items (blanks around them allowed),
// each item a dice term or a decimal constant. @wild, @wilddice and @swwild
// put each term's total in its place and calculate the text; any argument
// whose terms do not read the totals put in before them will do.
#pragma once

#include <string>
#include <vector>

#include "dist/Template.h"
#include "dist/TermDist.h"

namespace gandrel {

struct DiceItem {
  bool subtracted = false;
  bool isTerm = false;
  std::string text;  // the term or the constant as written
  DieTerm term;      // a term's dice
  double constant = 0;
};

// The argument (default dice already given) as a signed sum of items. False
// when it is anything else; gives up (not exact) for a term that can fail.
bool ReadDiceItems(const std::string& dice, std::vector<DiceItem>& items);

// True when the per-die text of the items writes every single term as the
// text of its own value, so that the texts of a roll follow from its values:
// no blanks, constants written as results are written, and nothing
// subtracted that could be 0 or below (a subtracted negative die writes
// "--1", which splits into two terms).
bool ItemsWriteTheirValues(const std::string& dice, const std::vector<DiceItem>& items);

// The argument as @wild rolls it (recut: each term's total put in its place
// in the whole text, which is cut again from the start) or as @wilddice and
// @swwild roll it (the text after each term cut on its own): a template with
// one Term slot for each term, in order, their values left for the caller,
// and the terms' texts and the texts before them as BreakOutDice cut them.
// False when a term would read a total put in before it.
bool CutAtTerms(const std::string& dice, bool recut, Template& tmpl,
                std::vector<std::string>& terms, std::vector<std::string>& befores);

}  // namespace gandrel
