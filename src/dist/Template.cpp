#include "dist/Template.h"

#include <algorithm>
#include <cmath>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/modGRCalcs.h"
#include "dice/DiceText.h"
#include "dice/DieLookup.h"
#include "dist/TermDist.h"
#include "dist/Work.h"

namespace gandrel {

namespace {

// The number of slots that stand before position at (0-based).
size_t SlotsBefore(std::string_view text, size_t at) {
  return static_cast<size_t>(
      std::count(text.begin(), text.begin() + static_cast<long>(at), kSlotMark));
}

// One item of a plain sum: a slot or a constant, added or subtracted.
struct SumItem {
  bool subtracted = false;
  const Slot* slot = nullptr;
  double constant = 0;
};

bool IsConstantChar(char c) {
  return IsDigit(c) || c == '.';
}

// A run of digits with at most one point, at least one digit.
bool ReadConstant(std::string_view text, size_t& i, double& value) {
  size_t from = i;
  while (i < text.size() && IsConstantChar(text[i]))
    ++i;
  std::string_view run = text.substr(from, i - from);
  if (std::count(run.begin(), run.end(), '.') > 1 || run == ".") return false;
  value = ReadNumber(run);
  return true;
}

// The items of a plain sum, read from the stripped text; false when it is
// none. After a "+" or at the start, a sum's slot may stand (it brings its
// own sign); after a "-" only a number.
bool ReadSumItems(std::string_view text, const std::vector<Slot>& slots,
                  std::vector<SumItem>& items) {
  enum class State { Start, AfterPlus, AfterMinus, AfterItem } state = State::Start;
  size_t slot = 0;
  for (size_t i = 0; i < text.size();) {
    char c = text[i];
    if (c == '+' || c == '-') {
      if (state == State::AfterPlus || state == State::AfterMinus) return false;
      state = c == '+' ? State::AfterPlus : State::AfterMinus;
      ++i;
      continue;
    }
    SumItem item;
    item.subtracted = state == State::AfterMinus;
    if (c == kSlotMark) {
      item.slot = &slots[slot++];
      bool isSum = item.slot->kind == Slot::Kind::Sum;
      if (isSum ? state == State::AfterMinus : state == State::AfterItem) return false;
      ++i;
    } else if (IsConstantChar(c)) {
      if (state == State::AfterItem || !ReadConstant(text, i, item.constant)) return false;
    } else {
      return false;
    }
    items.push_back(item);
    state = State::AfterItem;
  }
  return state == State::AfterItem;
}

// The largest magnitude a part of the sum can reach, and the finest scale.
double Magnitude(const SumItem& item) {
  if (!item.slot) return std::fabs(item.constant);
  if (item.slot->kind == Slot::Kind::Sum) return item.slot->magnitude;
  const ValueDist& v = item.slot->values;
  return static_cast<double>(v.MaxAbs()) / PowerOfTen(v.scale);
}

int ScaleOfItem(const SumItem& item) {
  return item.slot ? item.slot->values.scale : ScaleOf(item.constant);
}

}  // namespace

bool PlainDigits(double magnitude, int scale) {
  return scale == 0 ? magnitude < 1e15 : scale <= 4 && magnitude * PowerOfTen(scale) < 1e12;
}

TextDist SlotTexts(const Slot& slot) {
  if (slot.kind == Slot::Kind::Sum) return slot.texts();
  TextDist dist;
  dist.truncated = slot.values.truncated;
  for (size_t i = 0; i < slot.values.Size(); ++i)
    dist.texts.emplace_back(NumberText(slot.values.Value(i)), slot.values.probs[i]);
  return dist;
}

bool FindTerms(Template& tmpl, TermCache& cache) {
  std::string& text = tmpl.text;
  std::string lower = LCase(text);
  for (long p = InStr(lower, "d"); p > 0;) {
    long start = 0, end = 0;
    FindRolledTerm(lower, p, start, end);
    if (start > 1 && text[static_cast<size_t>(start - 2)] == kSlotMark) return false;
    if (end < Len(text) && text[static_cast<size_t>(end)] == kSlotMark) return false;
    Slot slot;
    slot.kind = Slot::Kind::Term;
    slot.length = end - start + 1;
    slot.values = cache.Total(Mid(text, start, slot.length));
    const auto at = static_cast<size_t>(start - 1), length = static_cast<size_t>(slot.length);
    tmpl.slots.insert(tmpl.slots.begin() + static_cast<long>(SlotsBefore(text, at)),
                      std::move(slot));
    text.replace(at, length, 1, kSlotMark);
    lower.replace(at, length, 1, kSlotMark);
    p = InStr(start, lower, "d");
  }
  return true;
}

std::optional<ValueDist> PlainSum(const Template& tmpl, Work& work) {
  std::vector<SumItem> items;
  if (!ReadSumItems(StripWhitespace(tmpl.text), tmpl.slots, items)) return std::nullopt;
  double magnitude = 0;
  int scale = 0;
  for (const SumItem& item : items) {
    int s = ScaleOfItem(item);
    if (s < 0) return std::nullopt;
    scale = std::max(scale, s);
    magnitude += Magnitude(item);
  }
  bool plainDigits =
      scale == 0 ? magnitude < 1e15 : scale <= 4 && magnitude * PowerOfTen(scale) < 1e12;
  if (!plainDigits) return std::nullopt;
  ValueDist sum = ValueDist::Constant(0, scale);
  for (const SumItem& item : items) {
    ValueDist part;
    if (item.slot) {
      part = item.slot->values;
    } else {
      int64_t scaled = 0;
      ToScaled(item.constant, scale, scaled);
      part = ValueDist::Constant(scaled, scale);
    }
    sum = Convolve(sum, item.subtracted ? Negated(part) : part, work);
  }
  return sum;
}

}  // namespace gandrel
