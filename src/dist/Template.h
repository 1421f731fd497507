// A text to be calculated, with slots where rolled or computed texts go:
// "\x01+2" for "3d6+2", the slot holding the total of 3d6.
//
// A template is what a roll writes into the evaluator's text, with every
// random part taken out. Its slots are independent of each other; when a
// part's reading depends on what is written before it (the total of "d6"
// becoming the count of the next "d6" in "d6d6"), the text is no template
// and is rolled term by term instead (Enumerate.h).
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "dist/ValueDist.h"

namespace gandrel {

class TermCache;
class Work;

// Where a slot stands in a template's text. Never part of what users type.
inline constexpr char kSlotMark = '\x01';

// Texts and their probabilities, and the probability left out of them.
struct TextDist {
  std::vector<std::pair<std::string, double>> texts;
  double truncated = 0;
};

struct Slot {
  enum class Kind {
    Term,    // a dice term: the text of its total; a failed roll makes the whole text "<error>"
    Number,  // an @ function's number: "4", "-2.5"
    Sum,     // an @ function's terms written out as a sum: "+6+5+4"
  };
  Kind kind = Kind::Term;
  // The number; for a sum, what its text adds up to where it stands in a
  // plain sum.
  ValueDist values;
  // Sum: the largest total of the magnitudes of the terms its text can hold.
  double magnitude = 0;
  // Sum: the texts themselves, worked out only when they are needed.
  std::function<TextDist()> texts;
  // Term: the length of the term's own text, which its total replaces.
  long length = 0;
};

struct Template {
  std::string text;  // kSlotMark where each slot stands, the slots in order
  std::vector<Slot> slots;
};

// The texts a slot can hold: a number's text for each value (a term's as
// GenerateAllDice writes it), or a sum's texts.
TextDist SlotTexts(const Slot& slot);

// Finds the dice terms of the template's text as GenerateAllDice finds them,
// from the left, and puts a Term slot in the place of each. False (and the
// template half done) when a term would read a text put in before it: a
// slot right before its count or right after it.
bool FindTerms(Template& tmpl, TermCache& cache);

// When the template is a plain sum (signs, and slots and decimal constants
// between them, blanks anywhere) whose evaluation is the sum for every
// combination of its slots, the distribution of that sum; otherwise nothing.
// A sum's slot must not follow a "-" (only its first term would be
// subtracted). The magnitudes must stay where every partial sum is written
// as plain digits: below 1E15 for whole numbers, below 1E12 with at most four
// decimals otherwise.
std::optional<ValueDist> PlainSum(const Template& tmpl, Work& work);

// True when sums of magnitude at most magnitude, with that many decimals,
// are written as plain digits at every step of the evaluator.
bool PlainDigits(double magnitude, int scale);

}  // namespace gandrel
