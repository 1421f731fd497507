#include "calc/modGRCalcs.h"

#include <algorithm>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/Pump.h"

namespace gandrel {

namespace {

// The line and its lower-cased twin are rewritten together: case folding keeps
// positions, so one replacement at one position serves both.
struct Line {
  std::string& text;
  std::string lower;

  explicit Line(std::string& line) : text(line), lower(LCase(line)) {}

  // Replaces length characters from position p (1-based) by with.
  void Replace(long p, long length, std::string_view with) {
    size_t at = static_cast<size_t>(p - 1), count = static_cast<size_t>(length);
    text.replace(at, count, with);
    lower.replace(at, count, LCase(with));
  }
};

// A variable name is replaced until it no longer occurs. Nothing before the
// last match can hold the name, except where a match straddles the end of
// what was kept, so the search resumes just short of the replaced text.
void ReplaceVariable(Line& line, std::string_view name, double value) {
  if (name.empty()) return;
  const std::string valueText = FormatNumber(value);
  const long nameLength = Len(name);
  long from = 1;
  while (long p = Int16(InStr(from, line.lower, name))) {
    line.Replace(p, nameLength, valueText);
    from = p - nameLength + 1 < 1 ? 1 : p - nameLength + 1;
    // A value whose text holds the name ("e" holding 1E+20) never runs out
    // of matches: the user's break is the way out.
    YieldCheckBreak();
  }
}

// The item that an index picks: the first below 1, the last past the end.
const std::string& PickItem(const std::vector<std::string>& items, int16_t index) {
  long count = static_cast<long>(items.size()) - 1;
  if (index < 1) return items[1];
  if (index > count) return items[static_cast<size_t>(count)];
  return items[static_cast<size_t>(index)];
}

void ReplaceList(Line& line, std::string_view name, std::string_view contents) {
  const std::string reference = std::string(name) + "(";
  std::vector<std::string> items;
  for (;;) {
    long p = Int16(InStr(line.lower, reference));
    if (p == 0) return;
    int16_t q = Int16(InStr(p, line.lower, ")"));
    if (q != 0) {
      int16_t r = InStrLast(q, line.lower, "(");
      int16_t index = CInt(ReadNumber(Mid(line.text, r + 1, q - r - 1)));
      if (items.empty()) SplitText(contents, '\0', items);
      line.Replace(p, q - p + 1, PickItem(items, index));
    }
    // Without a closing ")" the line never changes and the search repeats;
    // an item that holds its own reference repeats as well.
    YieldCheckBreak();
  }
}

}  // namespace

void ReplaceVars(std::string& line, const VarStore& store) {
  Line work(line);
  for (size_t i = 1; i < store.varNames.size() && i < store.varValues.size(); ++i)
    ReplaceVariable(work, store.varNames[i], store.varValues[i]);
  for (size_t i = 1; i < store.listNames.size() && i < store.listItems.size(); ++i)
    ReplaceList(work, store.listNames[i], store.listItems[i]);
}

void SplitAssignment(std::string& line, std::string& left) {
  long p = Int16(InStr(line, "="));
  left = Trim(Left(line, p - 1));
  line = Trim(Mid(line, p + 1));
}

std::string StripWhitespace(std::string_view text) {
  std::string out(text);
  std::erase_if(out, [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
  return out;
}

void SplitText(std::string_view text, char delimiter, std::vector<std::string>& fields) {
  fields.assign(1, std::string());
  for (;;) {
    size_t p = text.find(delimiter);
    if (p == std::string_view::npos) {
      fields.emplace_back(text);
      return;
    }
    fields.emplace_back(text.substr(0, p));
    text.remove_prefix(p + 1);
  }
}

int16_t CountOccurrences(std::string_view text, std::string_view needle) {
  if (needle.size() == 1) {
    // One character cannot overlap itself: a plain count, with the positions
    // still held to 16 bits.
    size_t last = text.rfind(needle[0]);
    if (last != std::string_view::npos) Int16(static_cast<long>(last) + 1);
    return Int16(static_cast<long>(std::count(text.begin(), text.end(), needle[0])));
  }
  int16_t count = 0;
  for (long p = Int16(InStr(text, needle)); p > 0; p = Int16(InStr(p + 1, text, needle)))
    count = Int16(count + 1L);
  return count;
}

int16_t InStrLast(int16_t start, std::string_view text, std::string_view needle) {
  long length = start == -1 ? Len(text) : start;
  std::string head = Left(text, length);
  int16_t last = 0;
  for (long p = Int16(InStr(head, needle)); p > 0; p = Int16(InStr(p + 1, head, needle)))
    last = static_cast<int16_t>(p);
  return last;
}

}  // namespace gandrel
