#include "dist/DiceArgument.h"

#include <algorithm>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "dice/DiceText.h"
#include "dice/DieLookup.h"
#include "dice/modDiceCalc.h"
#include "dist/Work.h"

namespace gandrel {

namespace {

bool IsDieLetter(char c) {
  return c == 'd' || c == 'D';
}

// The end (1-based) of the term whose "d" is at p, as BreakOutDice ends it: a
// range type's name, else a list type's, else the digits after the "d".
long BreakOutEnd(const std::string& lower, long p) {
  long named = DefinedNameLengthAt(lower, p);
  return named > 0 ? p + named - 1 : DigitRunEnd(lower, p);
}

// True when LongGenDice, cutting the term text again as a roll cuts it,
// rolls the whole term and nothing else.
bool RollsWhole(const std::string& term) {
  std::string lower = LCase(term);
  long p = InStr(lower, "d"), start = 0, end = 0;
  FindRolledTerm(lower, p, start, end);
  return start == 1 && end == Len(term);
}

void SkipBlanks(const std::string& text, size_t& i) {
  while (i < text.size() && text[i] == ' ')
    ++i;
}

// One item from position i: a term (digits, then "d") or a constant.
bool ReadItem(const std::string& dice, const std::string& lower, size_t& i, DiceItem& item) {
  size_t from = i;
  while (i < dice.size() && IsDigit(dice[i]))
    ++i;
  if (i < dice.size() && IsDieLetter(dice[i])) {
    long end = BreakOutEnd(lower, static_cast<long>(i) + 1);
    item.isTerm = true;
    item.text = dice.substr(from, static_cast<size_t>(end) - from);
    i = static_cast<size_t>(end);
    if (!RollsWhole(item.text)) return false;
    item.term = ReadDieTerm(item.text);
    if (item.term.fails || item.term.face.error > 0)
      GiveUp(NotExactReason::Unsupported, "a die that can fail inside a function");
    return true;
  }
  while (i < dice.size() && (IsDigit(dice[i]) || dice[i] == '.'))
    ++i;
  item.text = dice.substr(from, i - from);
  if (std::count(item.text.begin(), item.text.end(), '.') > 1 || item.text == "." ||
      item.text.empty())
    return false;
  item.constant = ReadNumber(item.text);
  return true;
}

}  // namespace

bool ReadDiceItems(const std::string& dice, std::vector<DiceItem>& items) {
  const std::string lower = LCase(dice);
  items.clear();
  size_t i = 0;
  bool signed_ = false;
  SkipBlanks(dice, i);
  while (i < dice.size()) {
    DiceItem item;
    if (dice[i] == '+' || dice[i] == '-') {
      item.subtracted = dice[i] == '-';
      ++i;
      SkipBlanks(dice, i);
    } else if (!items.empty()) {
      return false;  // two items with no sign between them
    }
    if (!ReadItem(dice, lower, i, item)) return false;
    items.push_back(std::move(item));
    SkipBlanks(dice, i);
    signed_ = true;
  }
  return signed_;
}

bool ItemsWriteTheirValues(const std::string& dice, const std::vector<DiceItem>& items) {
  if (dice.find(' ') != std::string::npos) return false;
  for (const DiceItem& item : items) {
    if (item.isTerm) {
      if (item.subtracted && item.term.dice > 0 && item.term.face.values.front() <= 0) return false;
    } else if (NumberText(item.constant) != item.text || (item.subtracted && item.constant <= 0)) {
      return false;
    }
  }
  return true;
}

bool CutAtTerms(const std::string& dice, bool recut, Template& tmpl,
                std::vector<std::string>& terms, std::vector<std::string>& befores) {
  std::string text = dice, rolled;
  while (text.find_first_of("dD") != std::string::npos) {
    std::string before, term, after;
    BreakOutDice(text, before, term, after);
    if (recut) {
      // The whole text is cut again: a count must not run into a total put in
      // before it, and the term must be rolled whole by GenerateAllDice.
      bool joins = !before.empty() && before.back() == kSlotMark;
      if ((joins && (IsDigit(term[0]) || IsDieLetter(term[0]))) || !RollsWhole(term)) return false;
      text = before + kSlotMark + after;
    } else {
      rolled += before + kSlotMark;
      text = after;
    }
    Slot slot;
    slot.kind = Slot::Kind::Term;
    slot.length = Len(term);
    tmpl.slots.push_back(std::move(slot));
    terms.push_back(term);
    befores.push_back(before);
  }
  tmpl.text = recut ? Trim(text) : rolled + text;
  return true;
}

}  // namespace gandrel
